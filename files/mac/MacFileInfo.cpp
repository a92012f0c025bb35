#include "files/mac/MacFileInfo.h"

#include "files/FileErrors.h"
#include "files/FileNameErrors.h"
#include "platform/FileError.h"
#include "platform/FSRefs.h"

#include <CoreServices/MacErrors.h>

#include <cstdint>

namespace MacintoshPlatform
{

MacFileInfo::MacFileInfo( FileLocation const& location )
{
    try
    {
        mRef = MakeFSRef( location.URL() );
    }
    catch ( ... )
    {
        return;
    }
    FSSpec spec;
    if ( FSGetCatalogInfo(
             &mRef, kFSCatInfoGettableInfo, &mCatalogInfo, nullptr, &spec, nullptr ) != noErr )
    {
        return;
    }
    HFileInfo& record = mParameterBlock.hFileInfo;
    record.ioVRefNum = spec.vRefNum;
    record.ioDirID = spec.parID;
    record.ioNamePtr = spec.name.c_str();
    record.ioFDirIndex = 0;
    OSErr const result = PBGetCatInfoSync( &mParameterBlock );
    record.ioNamePtr = nullptr;
    ThrowError( result );
    mExists = true;
}

void MacFileInfo::ThrowError( long code )
{
    switch ( code )
    {
    case noErr:
        return;
    case bdNamErr:
        throw BadFileNameError();
    case fnfErr:
        throw FileNotFoundError();
    case wPrErr:
        throw HardwareVolumeLockError( wPrErr );
    case fLckdErr:
        throw FileLockError( 0 );
    case vLckdErr:
        throw SoftwareVolumeLockError( vLckdErr );
    case dirNFErr:
        throw DirectoryNotFoundError( 0 );
    case afpAccessDenied:
        throw FilePermissionError( 0 );
    default:
        throw FileError( static_cast<std::int32_t>( code ) );
    }
}

bool operator==( MacFileInfo const& a, MacFileInfo const& b )
{
    FSCatalogInfo const& first = a.CatalogInfo();
    FSCatalogInfo const& second = b.CatalogInfo();
    return a.Exists() && b.Exists() && first.volume == second.volume &&
           first.parentDirID == second.parentDirID && first.nodeID == second.nodeID;
}

} // namespace MacintoshPlatform
