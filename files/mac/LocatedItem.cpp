#include "files/mac/LocatedItem.h"

#include "files/FileErrors.h"

#include <cerrno>
#include <fcntl.h>

namespace MacintoshPlatform
{

namespace
{

std::string PathOf( FileLocation const& location )
{
    std::string path = location.RequireNonEmpty().POSIXPath();
    if ( path == "/" )
    {
        throw RootHasNoParent( ConstData( path ), 0 );
    }
    return path;
}

} // namespace

LocatedItem::LocatedItem( FileLocation const& location )
    : mPath( PathOf( location ) ), mSlash( mPath.rfind( '/' ) )
{
}

int LocatedItem::OpenFolder()
{
    std::string const folder = mSlash == 0 ? "/" : mPath.substr( 0, mSlash );
    mFolder = OpenPath( folder.c_str(), O_RDONLY | O_DIRECTORY );
    return mFolder.IsOpen() || errno == EACCES ? 0 : errno;
}

ItemPlace LocatedItem::Place() const
{
    if ( !mFolder.IsOpen() )
    {
        return { AT_FDCWD, mPath.c_str(), mPath };
    }
    return { mFolder.Number(), mPath.c_str() + mSlash + 1, mPath };
}

int LocatedItem::ReadStatus( struct stat& status ) const
{
    ItemPlace const place = Place();
    return fstatat( place.folder, place.name, &status, AT_SYMLINK_NOFOLLOW ) == 0 ? 0 : errno;
}

} // namespace MacintoshPlatform
