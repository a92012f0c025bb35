#include "files/mac/FolderChain.h"

#include <cerrno>
#include <fcntl.h>
#include <utility>

namespace MacintoshPlatform
{

namespace
{

int OpenStream( int folder, char const* name, FolderStream& stream, struct stat& status )
{
    Descriptor opened = OpenFolderAt( folder, name );
    if ( !opened.IsOpen() || fstat( opened.Number(), &status ) != 0 )
    {
        return errno;
    }
    stream = FolderStream( std::move( opened ) );
    return stream.IsOpen() ? 0 : errno;
}

} // namespace

Descriptor OpenFolderAt( int folder, char const* name )
{
    return OpenAt( folder, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW );
}

bool IsSameItem( struct stat const& first, struct stat const& second )
{
    return first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

int FolderChain::Enter( int parent, char const* name )
{
    Level level{ .stream = {}, .position = 0, .status = {} };
    if ( int const error = OpenStream( parent, name, level.stream, level.status ); error != 0 )
    {
        return error;
    }
    mLevels.push_back( std::move( level ) );
    CloseOneAbove();
    return 0;
}

void FolderChain::CloseOneAbove()
{
    if ( mLevels.size() <= kMostOpen )
    {
        return;
    }
    Level& above = mLevels[mLevels.size() - kMostOpen - 1];
    if ( above.stream.IsOpen() )
    {
        above.position = above.stream.Position();
        above.stream = {};
    }
}

int FolderChain::Leave( FolderStream& left )
{
    left = std::move( mLevels.back().stream );
    mLevels.pop_back();
    if ( IsEmpty() || Stream().IsOpen() )
    {
        return 0;
    }
    Level& parent = mLevels.back();
    struct stat status;
    if ( int const error = OpenStream( left.Number(), "..", parent.stream, status ); error != 0 )
    {
        return error;
    }
    parent.stream.SetPosition( parent.position );
    return IsSameItem( status, parent.status ) ? 0 : ENOENT;
}

} // namespace MacintoshPlatform
