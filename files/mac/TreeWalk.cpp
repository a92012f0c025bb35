#include "files/mac/TreeWalk.h"

#include "files/FileErrors.h"
#include "files/mac/OperationErrors.h"

#include <cerrno>
#include <fcntl.h>
#include <utility>

namespace MacintoshPlatform
{

namespace
{

constexpr unsigned kMostLooks = 16;

} // namespace

TreeWalk::TreeWalk( ItemPlace const& root, std::string const& otherRoot )
    : mRoot( root ), mPath( root.path ), mOtherPath( otherRoot ), mOtherLength( otherRoot.size() )
{
}

TreeWalk::Step TreeWalk::Next()
{
    if ( std::exchange( mLooksAtSame, false ) && Look() )
    {
        return StepOfItem();
    }
    while ( !mLengths.empty() )
    {
        GoBackToFolder();
        dirent const* const entry = mFolders.Stream().Next();
        if ( entry == nullptr )
        {
            return LeaveFolder();
        }
        Append( entry->d_name );
        mTimesLooked = 0;
        if ( Look() )
        {
            return StepOfItem();
        }
    }
    return Step::Done;
}

void TreeWalk::GoBackToFolder()
{
    mPath.resize( mLengths.back() );
    if ( mOtherLength > 0 )
    {
        mOtherPath.resize( mPath.size() - mRoot.path.size() + mOtherLength );
    }
}

void TreeWalk::Append( char const* name )
{
    if ( mPath.back() != '/' )
    {
        mPath += '/';
    }
    mPath += name;
    if ( mOtherLength > 0 )
    {
        ( mOtherPath += '/' ) += name;
    }
}

bool TreeWalk::Look()
{
    ItemPlace const item = Item();
    if ( fstatat( item.folder, item.name, &mStatus, AT_SYMLINK_NOFOLLOW ) == 0 )
    {
        return true;
    }
    if ( errno != ENOENT )
    {
        Fail( errno );
    }
    return false;
}

TreeWalk::Step TreeWalk::StepOfItem() const
{
    return S_ISDIR( mStatus.st_mode ) ? Step::Folder : Step::Item;
}

TreeWalk::Step TreeWalk::LeaveFolder()
{
    if ( errno != 0 )
    {
        Fail( errno );
    }
    mStatus = mFolders.Status();
    FolderStream left;
    if ( int const error = mFolders.Leave( left ); error != 0 )
    {
        Fail( error );
    }
    mLengths.pop_back();
    return Step::FolderEnds;
}

bool TreeWalk::Enter()
{
    ItemPlace const item = Item();
    int const error = mFolders.Enter( item.folder, item.name );
    if ( error == ENOENT || error == ENOTDIR || error == ELOOP )
    {
        LookAgain();
        return false;
    }
    if ( error != 0 )
    {
        Fail( error );
    }
    mLengths.push_back( mPath.size() );
    mStatus = mFolders.Status();
    return true;
}

void TreeWalk::LookAgain()
{
    if ( ++mTimesLooked > kMostLooks )
    {
        Fail( EBUSY );
    }
    mLooksAtSame = true;
}

ItemPlace TreeWalk::Item() const
{
    if ( mFolders.IsEmpty() )
    {
        return { mRoot.folder, mRoot.name, mPath };
    }
    return { mFolders.Number(), mPath.c_str() + mPath.rfind( '/' ) + 1, mPath };
}

void TreeWalk::Fail( int error ) const
{
    ThrowFileError<FileNotOpenError>( error, mPath, mOtherPath );
}

} // namespace MacintoshPlatform
