#include "linux/CoreServices/CatalogItem.h"

#include "linux/CoreServices/ErrorCodes.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <string_view>
#include <sys/sysmacros.h>

namespace
{

int Read( std::string const& path, int flags, CatalogItem& item )
{
    return statx( AT_FDCWD, path.c_str(), flags | AT_NO_AUTOMOUNT, STATX_BASIC_STATS | STATX_BTIME,
               &item.status ) == 0
               ? 0
               : errno;
}

} // namespace

FSVolumeRefNum CatalogItem::Volume() const
{
    return makedev( status.stx_dev_major, status.stx_dev_minor );
}

FSItemIdentity CatalogItem::Identity() const
{
    FSItemIdentity identity{ Volume(), Node(), 0, 0 };
    if ( ( status.stx_mask & STATX_BTIME ) != 0 )
    {
        identity.birthSeconds = status.stx_btime.tv_sec;
        identity.birthNanoseconds = status.stx_btime.tv_nsec;
    }
    return identity;
}

int ReadItem( std::string const& path, CatalogItem& item )
{
    return Read( path, AT_SYMLINK_NOFOLLOW, item );
}

int ReadFolder( std::string const& path, CatalogItem& folder )
{
    int const error = Read( path, 0, folder );
    return error == 0 && !folder.IsFolder() ? ENOTDIR : error;
}

int ReadRealPath( std::string const& path, std::string& realPath )
{
    auto const release = []( char* text ) { std::free( text ); };
    std::unique_ptr<char, decltype( release )> const text( realpath( path.c_str(), nullptr ) );
    if ( text == nullptr )
    {
        return errno;
    }
    realPath = text.get();
    return 0;
}

std::string FolderPath( std::string const& path )
{
    std::size_t const slash = path.rfind( '/' );
    std::string_view const name = std::string_view( path ).substr( slash + 1 );
    if ( name == "." || name == ".." )
    {
        return path + "/..";
    }
    return slash == 0 ? "/" : path.substr( 0, slash );
}

OSErr ReadItemInFolder(
    FSVolumeRefNum volume, FSNodeID folder, std::string const& pathname, CatalogItem& item )
{
    std::string const folderPath = FolderPath( pathname );
    CatalogItem found;
    int const folderError = ReadFolder( folderPath, found );
    if ( folderError != 0 )
    {
        return ResultCode( folderError, { .folderIsMissing = true } );
    }
    if ( found.Volume() != volume || found.Node() != folder )
    {
        return dirNFErr;
    }
    return ResultCodeForPath( ReadItem( pathname, item ), pathname );
}
