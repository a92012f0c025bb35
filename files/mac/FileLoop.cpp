#include "files/mac/FileLoop.h"

#include "files/mac/FileErrors.h"
#include "files/mac/FileName.h"
#include "files/mac/MakeFileLocation.h"
#include "files/mac/OperationErrors.h"

#include <cerrno>
#include <fcntl.h>
#include <utility>

namespace MacintoshPlatform
{

namespace
{

FolderStream OpenFolder( std::string const& path )
{
    Descriptor folder = OpenPath( path.c_str(), O_RDONLY | O_DIRECTORY );
    if ( !folder.IsOpen() )
    {
        ThrowCommonFileError( errno, path, {} );
        throw FSIteratorCreateError();
    }
    FolderStream stream( std::move( folder ) );
    if ( !stream.IsOpen() )
    {
        throw FSIteratorCreateError();
    }
    return stream;
}

} // namespace

FileLoop::FileLoop( FileLocation const& folder, char const* pattern )
    : mFolderPath( folder.RequireNonEmpty().POSIXPath() ),
      mPattern( pattern != nullptr ? std::optional<std::string>( pattern ) : std::nullopt ),
      mStream( OpenFolder( mFolderPath ) )
{
}

bool FileLoop::Next()
{
    do
    {
        mEntry = mStream.Next();
        if ( mEntry == nullptr )
        {
            if ( errno != 0 )
            {
                throw FileLoopFailed();
            }
            return false;
        }
    } while ( !Matches() || !LookAtEntry() );
    return true;
}

ConstData FileLoop::Name() const
{
    return ConstData( mEntry->d_name );
}

FileLocation FileLoop::Location() const
{
    std::string path = mFolderPath;
    if ( path.back() != '/' )
    {
        path += '/';
    }
    path += mEntry->d_name;
    return MakeFileLocationOfBytes( ConstData( path ) );
}

bool FileLoop::Matches() const
{
    return !mPattern || FileName::FromFileSystem( Name() ).MatchesWildCard( mPattern->c_str() );
}

// Whether the item is still there. Where the folder may be listed but not searched, the entry
// itself says what it is.
bool FileLoop::LookAtEntry()
{
    struct stat status;
    if ( fstatat( mStream.Number(), mEntry->d_name, &status, AT_SYMLINK_NOFOLLOW ) == 0 )
    {
        mMode = status.st_mode;
        return true;
    }
    if ( errno == ENOENT )
    {
        return false;
    }
    if ( mEntry->d_type == DT_UNKNOWN )
    {
        throw FileLoopFailed();
    }
    mMode = static_cast<mode_t>( DTTOIF( mEntry->d_type ) );
    return true;
}

} // namespace MacintoshPlatform
