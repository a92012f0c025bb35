#include "files/mac/FileLocation.h"

#include "files/mac/MacFileInfo.h"
#include "platform/CFErrors.h"
#include "platform/CFURLs.h"
#include "platform/FSRefs.h"

#include <utility>

namespace MacintoshPlatform
{

FileLocation::FileLocation( CFURLRef url ) : mURL( Duplicate( url ) ) {}

FileLocation::FileLocation( FSRef const& ref ) : mURL( MakeURL( ref ) ) {}

FileLocation::FileLocation( FileLocation const& other )
    : mURL( Duplicate( other.mURL.Get() ) ), mPOSIXPath( other.mPOSIXPath )
{
}

FileLocation& FileLocation::operator=( FileLocation const& other )
{
    std::string path = other.mPOSIXPath;
    mURL = Duplicate( other.mURL.Get() );
    mPOSIXPath.swap( path );
    return *this;
}

bool FileLocation::Exists() const
{
    if ( URL() == nullptr )
    {
        return false;
    }
    try
    {
        MakeFSRef( URL() );
        return true;
    }
    catch ( CFURLGetFSRefFailed const& )
    {
        return false;
    }
}

bool FileLocation::IsFile() const
{
    MacFileInfo const info( *this );
    return info.Exists() && ( info.CatalogInfo().nodeFlags & kFSNodeIsDirectoryMask ) == 0;
}

bool FileLocation::IsDirectory() const
{
    MacFileInfo const info( *this );
    return info.Exists() && ( info.CatalogInfo().nodeFlags & kFSNodeIsDirectoryMask ) != 0;
}

} // namespace MacintoshPlatform
