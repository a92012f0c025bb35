#include <CoreServices/Files.h>
#include <CoreServices/MacErrors.h>

#include "linux/CoreServices/CatalogItem.h"

namespace
{

OSErr ReadRecord( HFileInfo& record )
{
    if ( record.ioFDirIndex != 0 || record.ioNamePtr == nullptr || record.ioNamePtr[0] != '/' )
    {
        return paramErr;
    }
    CatalogItem item;
    OSErr const result =
        ReadItemInFolder( record.ioVRefNum, record.ioDirID, record.ioNamePtr, item );
    if ( result != noErr )
    {
        return result;
    }
    record.ioFlAttrib = static_cast<UInt8>( ( item.IsLocked() ? kioFlAttribLockedMask : 0 ) |
                                            ( item.IsFolder() ? kioFlAttribDirMask : 0 ) );
    record.ioFlParID = record.ioDirID;
    record.ioDirID = item.Node();
    record.ioFlLgLen = item.IsFolder() ? 0 : item.status.stx_size;
    record.ioFlPyLen = item.IsFolder() ? 0 : item.PhysicalSize();
    return noErr;
}

} // namespace

OSErr PBGetCatInfoSync( CInfoPBRec* parameters )
{
    if ( parameters == nullptr )
    {
        return paramErr;
    }
    HFileInfo& record = parameters->hFileInfo;
    record.ioResult = CodeOf( [&record] { return ReadRecord( record ); } );
    return record.ioResult;
}
