#include "files/mac/TreeCopy.h"

#include "files/FileErrors.h"
#include "files/mac/OperationErrors.h"
#include "files/mac/Replacement.h"

#include <CoreServices/MacErrors.h>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace MacintoshPlatform
{

TreeCopy::TreeCopy( TreeWalk& walk, int copy ) : mWalk( walk ), mRoot( copy )
{
    RequireOfCopy( mCopies.Enter( mRoot, "." ) );
    mRootStatus = mCopies.Status();
}

void TreeCopy::Run()
{
    for ( ;; )
    {
        switch ( mWalk.Next() )
        {
        case TreeWalk::Step::Folder:
            BeginFolder();
            break;
        case TreeWalk::Step::Item:
            CopyOne();
            break;
        case TreeWalk::Step::FolderEnds:
            EndFolder();
            break;
        case TreeWalk::Step::Done:
            return;
        }
    }
}

void TreeCopy::BeginFolder()
{
    std::string const name = mWalk.Item().name;
    if ( !mWalk.Enter() )
    {
        return;
    }
    if ( IsSameItem( mWalk.Status(), mRootStatus ) )
    {
        ThrowFileError<FileCopyFailed>( EINVAL, mWalk.Path(), mWalk.OtherPath() );
    }
    RequireOfCopy( mkdirat( mCopies.Number(), name.c_str(), S_IRWXU ) == 0 ? 0 : errno );
    RequireOfCopy( mCopies.Enter( mCopies.Number(), name.c_str() ) );
    mLevels.push_back( { name, 0 } );
}

void TreeCopy::EndFolder()
{
    FolderStream copy;
    RequireOfCopy( mCopies.Leave( copy ) );
    if ( !mLevels.empty() )
    {
        mLevels.pop_back();
    }
    RequireOfCopy( CopyPermissionsAndTimes( mWalk.Status(), copy.Number() ) );
    RequireOfCopy( SyncFolderOf( { copy.Number(), ".", mWalk.OtherPath() } ) );
}

void TreeCopy::CopyOne()
{
    if ( mWalk.Status().st_nlink > 1 && LinkToEarlierCopy() )
    {
        return;
    }
    try
    {
        CopyFirstLink();
    }
    catch ( FileIOError const& error )
    {
        bool const isMissing = error.GetCode() == fnfErr || error.GetCode() == dirNFErr;
        if ( !isMissing || !HasVanished() )
        {
            throw;
        }
    }
}

void TreeCopy::CopyFirstLink()
{
    ItemPlace const from = mWalk.Item();
    ItemPlace const to{ mCopies.Number(), from.name, mWalk.OtherPath() };
    struct stat const copied = CopyItem( from, to );
    if ( copied.st_nlink > 1 )
    {
        mLinked.insert_or_assign( Identity( copied.st_dev, copied.st_ino ),
            LinkedCopy{ NumberOfFolder(), from.name, copied.st_nlink - 1 } );
    }
}

bool TreeCopy::HasVanished() const
{
    ItemPlace const item = mWalk.Item();
    struct stat status;
    return fstatat( item.folder, item.name, &status, AT_SYMLINK_NOFOLLOW ) != 0 && errno == ENOENT;
}

bool TreeCopy::LinkToEarlierCopy()
{
    auto const known = mLinked.find( Identity( mWalk.Status().st_dev, mWalk.Status().st_ino ) );
    if ( known == mLinked.end() )
    {
        return false;
    }
    int const folder = OpenNumbered( known->second.folder );
    char const* const name = known->second.name.c_str();
    if ( linkat( folder, name, mCopies.Number(), mWalk.Item().name, 0 ) != 0 )
    {
        // The copy's file system may allow fewer links: then the next ones share another copy.
        RequireOfCopy( errno == EMLINK ? 0 : errno );
        return false;
    }
    if ( --known->second.linksLeft == 0 )
    {
        mLinked.erase( known );
    }
    return true;
}

/// The number of the folder that is being filled; it and those above it get one if they have none.
std::size_t TreeCopy::NumberOfFolder()
{
    std::size_t first = mLevels.size();
    while ( first > 0 && mLevels[first - 1].number == 0 )
    {
        --first;
    }
    std::size_t number = first == 0 ? 0 : mLevels[first - 1].number;
    for ( ; first < mLevels.size(); ++first )
    {
        mFolders.push_back( { number, mLevels[first].name } );
        number = mLevels[first].number = mFolders.size();
    }
    return number;
}

int TreeCopy::OpenNumbered( std::size_t number )
{
    if ( mOpenFolder.IsOpen() && mOpenNumber == number )
    {
        return mOpenFolder.Number();
    }
    mOpenNumber = number;
    std::vector<char const*> names;
    for ( ; number != 0; number = mFolders[number - 1].above )
    {
        names.push_back( mFolders[number - 1].name.c_str() );
    }
    names.push_back( "." );
    int above = mRoot;
    for ( ; !names.empty(); names.pop_back() )
    {
        mOpenFolder = OpenFolderAt( above, names.back() );
        RequireOfCopy( mOpenFolder.IsOpen() ? 0 : errno );
        above = mOpenFolder.Number();
    }
    return above;
}

void TreeCopy::RequireOfCopy( int error ) const
{
    if ( error != 0 )
    {
        ThrowFileError<FileCopyFailed>( error, mWalk.OtherPath(), mWalk.Path() );
    }
}

} // namespace MacintoshPlatform
