#include "files/mac/OperationErrors.h"

#include "files/FileErrors.h"

#include <CoreServices/MacErrors.h>
#include <CoreServices/POSIXResults.h>

#include <cerrno>
#include <sys/stat.h>

namespace MacintoshPlatform
{

namespace
{

bool IsFolder( std::string const& path )
{
    struct stat status;
    return lstat( path.c_str(), &status ) == 0 && S_ISDIR( status.st_mode );
}

} // namespace

std::int32_t FileErrorCode( int error, std::string const& name )
{
    return FSResultOfError( error, name.c_str() );
}

void ThrowCommonFileError( int error, std::string const& name1, std::string const& name2 )
{
    std::int32_t const code = FileErrorCode( error, name1 );
    ConstData const first( name1 );
    ConstData const second( name2 );
    switch ( code )
    {
    case dskFulErr:
        throw DiskFullError( first, second, code );
    case fnfErr:
        throw FileNotFoundError( first, second, code );
    case fLckdErr:
        throw FileLockError( first, second, code );
    case fBsyErr:
        if ( error == ENOTEMPTY )
        {
            throw DirectoryNotEmpty( first, second, code );
        }
        throw FileBusyError( first, second, code );
    case dupFNErr:
        if ( IsFolder( name1 ) )
        {
            throw DirectoryExists( first, second, code );
        }
        throw FileExists( first, second, code );
    case dirNFErr:
        throw DirectoryNotFoundError( first, second, code );
    case afpAccessDenied:
        throw FilePermissionError( first, second, code );
    default:
        return;
    }
}

} // namespace MacintoshPlatform
