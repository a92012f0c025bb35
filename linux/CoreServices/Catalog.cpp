#include <CoreServices/Files.h>
#include <CoreServices/MacErrors.h>

#include "linux/CoreServices/CatalogItem.h"
#include "linux/CoreServices/ErrorCodes.h"

namespace
{

constexpr UInt64 kSecondsFrom1904To1970 = 2'082'844'800;

UTCDateTime FileTime( struct statx_timestamp const& time )
{
    UInt64 const seconds = static_cast<UInt64>( time.tv_sec ) + kSecondsFrom1904To1970;
    return { static_cast<UInt16>( seconds >> 32 ), static_cast<UInt32>( seconds ),
        static_cast<UInt16>( UInt64{ time.tv_nsec } * 65536 / 1'000'000'000 ) };
}

UInt16 NodeFlags( CatalogItem const& item )
{
    return static_cast<UInt16>( ( item.IsLocked() ? kFSNodeLockedMask : 0 ) |
                                ( item.IsFolder() ? kFSNodeIsDirectoryMask : 0 ) );
}

FSCatalogInfo CatalogInfo( CatalogItem const& item, CatalogItem const& folder )
{
    struct statx const& status = item.status;
    bool const knowsBirth = ( status.stx_mask & STATX_BTIME ) != 0;
    FSCatalogInfo info = {};
    info.nodeFlags = NodeFlags( item );
    info.volume = item.Volume();
    info.parentDirID = folder.Node();
    info.nodeID = item.Node();
    info.createDate = knowsBirth ? FileTime( status.stx_btime ) : UTCDateTime{};
    info.contentModDate = FileTime( status.stx_mtime );
    info.attributeModDate = FileTime( status.stx_ctime );
    info.accessDate = FileTime( status.stx_atime );
    info.permissions = { status.stx_uid, status.stx_gid, status.stx_mode };
    info.dataLogicalSize = item.IsFolder() ? 0 : status.stx_size;
    info.dataPhysicalSize = item.IsFolder() ? 0 : item.PhysicalSize();
    return info;
}

} // namespace

OSErr FSGetCatalogInfo( FSRef const* ref, FSCatalogInfoBitmap, FSCatalogInfo* catalogInfo,
    HFSUniStr255* outName, FSSpec* spec, FSRef* parentRef )
{
    return CodeOf(
        [&]() -> OSErr
        {
            if ( ref == nullptr || ref->path.empty() || outName != nullptr || parentRef != nullptr )
            {
                return paramErr;
            }
            CatalogItem item;
            int const error = ReadItem( ref->path, item );
            if ( error != 0 )
            {
                return ResultCodeForPath( error, ref->path );
            }
            if ( item.Identity() != ref->identity )
            {
                return fnfErr;
            }
            CatalogItem folder;
            int const folderError = ReadFolder( FolderPath( ref->path ), folder );
            if ( folderError != 0 )
            {
                return ResultCode( folderError, { .folderIsMissing = true } );
            }
            if ( spec != nullptr )
            {
                *spec = { folder.Volume(), folder.Node(), ref->path };
            }
            if ( catalogInfo != nullptr )
            {
                *catalogInfo = CatalogInfo( item, folder );
            }
            return noErr;
        } );
}
