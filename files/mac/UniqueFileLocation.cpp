#include "files/mac/UniqueFileLocation.h"

#include "files/FileErrors.h"
#include "files/FileNameErrors.h"
#include "files/mac/Descriptor.h"
#include "files/mac/MakeFileLocation.h"
#include "files/mac/OperationErrors.h"
#include "files/mac/SpecialFolders.h"
#include "files/mac/UniqueName.h"

#include <CoreServices/Folders.h>

#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>

namespace MacintoshPlatform
{

namespace
{

// More than enough: names that are random do not meet.
constexpr int kAttempts = 16;

std::string MakeName( std::string_view prefix )
{
    if ( prefix.find( '/' ) != prefix.npos || prefix.find( '\0' ) != prefix.npos )
    {
        throw IllegalFileName();
    }
    std::string name = MakeUniqueName( prefix );
    if ( name.size() > NAME_MAX )
    {
        throw IllegalFileNameLength();
    }
    return name;
}

/// Both return whether they made an item of that path that was not there before; errno says why
/// not.
bool MakeFile( char const* path )
{
    return OpenPath( path, O_WRONLY | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR ).IsOpen();
}

bool MakeDirectory( char const* path )
{
    return mkdir( path, S_IRWXU ) == 0;
}

/// Nothing can fail once the item is made: the location was made before, and its copies need no
/// memory because it never learned its path.
FileLocation CreateUnique(
    FileLocation const& folder, std::string_view prefix, bool ( *make )( char const* ) )
{
    std::string const folderPath = folder.RequireNonEmpty().POSIXPath();
    std::string const before = folderPath == "/" ? folderPath : folderPath + "/";
    for ( int attempt = 1;; ++attempt )
    {
        std::string const bytes = before + MakeName( prefix );
        FileLocation const location = MakeFileLocationOfBytes( ConstData( bytes ) );
        std::string const path = FileLocation( location ).POSIXPath();
        if ( make( path.c_str() ) )
        {
            return location;
        }
        if ( errno != EEXIST )
        {
            ThrowFileError<CreateUniqueFileLocationFailed>( errno, folderPath );
        }
        if ( attempt == kAttempts )
        {
            throw CreateUniqueFileLocationFailed(
                ConstData( folderPath ), FileErrorCode( EEXIST, folderPath ) );
        }
    }
}

FileLocation TemporaryFolder()
{
    return MakeFileLocation( kTemporaryFolderType, kUserDomain, true );
}

} // namespace

FileLocation CreateUniqueFile( FileLocation const& folder, std::string_view prefix )
{
    return CreateUnique( folder, prefix, MakeFile );
}

FileLocation CreateUniqueDirectory( FileLocation const& folder, std::string_view prefix )
{
    return CreateUnique( folder, prefix, MakeDirectory );
}

FileLocation CreateTemporaryFile( std::string_view prefix )
{
    return CreateUniqueFile( TemporaryFolder(), prefix );
}

FileLocation CreateTemporaryDirectory( std::string_view prefix )
{
    return CreateUniqueDirectory( TemporaryFolder(), prefix );
}

} // namespace MacintoshPlatform
