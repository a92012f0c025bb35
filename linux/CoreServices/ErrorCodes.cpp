#include "linux/CoreServices/ErrorCodes.h"

#include <CoreServices/POSIXResults.h>

#include "linux/CoreServices/CatalogItem.h"

#include <cerrno>
#include <fstream>

namespace
{

bool FolderIsMissing( std::string const& path )
{
    CatalogItem folder;
    int const error = ReadFolder( FolderPath( path ), folder );
    return error == ENOENT || error == ENOTDIR;
}

bool ItemIsImmutable( std::string const& path )
{
    CatalogItem item;
    return ReadItem( path, item ) == 0 && item.IsLocked();
}

// Whether the block device under the item is read-only. An item that does not exist yet lies on
// the device of its folder.
bool DeviceIsReadOnly( std::string const& path )
{
    CatalogItem item;
    if ( ReadItem( path, item ) != 0 && ReadFolder( FolderPath( path ), item ) != 0 )
    {
        return false;
    }
    std::ifstream flag( "/sys/dev/block/" + std::to_string( item.status.stx_dev_major ) + ':' +
                        std::to_string( item.status.stx_dev_minor ) + "/ro" );
    return flag.get() == '1';
}

} // namespace

OSErr ResultCode( int error, ErrorCircumstances const& circumstances )
{
    switch ( error )
    {
    case 0:
        return noErr;
    case ENOENT:
        return circumstances.folderIsMissing ? dirNFErr : fnfErr;
    case ENOTDIR:
        return dirNFErr;
    case EACCES:
        return afpAccessDenied;
    case EPERM:
        return circumstances.itemIsImmutable ? fLckdErr : afpAccessDenied;
    case EEXIST:
        return dupFNErr;
    case EBUSY:
    case ETXTBSY:
    case ENOTEMPTY:
        return fBsyErr;
    case ENAMETOOLONG:
    case EILSEQ:
        return bdNamErr;
    case EROFS:
        return circumstances.deviceIsReadOnly ? wPrErr : vLckdErr;
    case ENOSPC:
    case EDQUOT:
        return dskFulErr;
    case ENOMEM:
        return memFullErr;
    case EMFILE:
    case ENFILE:
        return tmfoErr;
    default:
        return ioErr;
    }
}

OSErr ResultCodeForPath( int error, std::string const& path )
{
    return ResultCode(
        error, { .folderIsMissing = error == ENOENT && FolderIsMissing( path ),
                   .itemIsImmutable = error == EPERM && ItemIsImmutable( path ),
                   .deviceIsReadOnly = error == EROFS && DeviceIsReadOnly( path ) } );
}

OSErr FSResultOfError( int error, char const* path )
{
    return CodeOf( [=] { return ResultCodeForPath( error, path ); } );
}
