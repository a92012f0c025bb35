#include "files/mac/TreeDeletion.h"

#include "files/FileErrors.h"
#include "files/mac/OperationErrors.h"
#include "files/mac/TreeWalk.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace MacintoshPlatform
{

namespace
{

class Deletion
{
  public:
    Deletion( ItemPlace const& root, TreeDeletion what ) : mWalk( root ), mWhat( what ) {}

    void Run();

  private:
    /// Through a folder in which something is left, or comes into being meanwhile.
    static constexpr unsigned kMostPasses = 100;

    bool IsToStay() const { return mWhat != TreeDeletion::Whole && mWalk.Depth() == 0; }

    void DeleteItem();
    void DeleteFolder();
    void DeleteContent();

    template<class Failed>
    void Require( int result );

    TreeWalk mWalk;
    TreeDeletion const mWhat;
    std::vector<unsigned> mPasses; // through the folder of the last step and those above it
    bool mIsRootToPass = true;     // if it is to stay
};

void Deletion::Run()
{
    bool isThere = false;
    for ( ;; isThere = true )
    {
        switch ( mWalk.Next() )
        {
        case TreeWalk::Step::Folder:
            mPasses.resize( mWalk.Depth() );
            mPasses.push_back( 0 );
            DeleteFolder();
            break;
        case TreeWalk::Step::FolderEnds:
            mPasses.resize( mWalk.Depth() + 1 );
            DeleteFolder();
            break;
        case TreeWalk::Step::Item:
            DeleteItem();
            break;
        case TreeWalk::Step::Done:
            if ( !isThere && mWhat != TreeDeletion::Whole )
            {
                mWalk.Fail( ENOENT );
            }
            return;
        }
    }
}

/// Judges the result of an unlinkat, after which the place is free or is looked at again.
template<class Failed>
void Deletion::Require( int result )
{
    if ( result == 0 )
    {
        mIsRootToPass = true;
    }
    else if ( errno == ENOTDIR || errno == EISDIR )
    {
        mWalk.LookAgain();
    }
    else if ( errno != ENOENT )
    {
        ThrowFileError<Failed>( errno, mWalk.Path() );
    }
}

void Deletion::DeleteItem()
{
    if ( IsToStay() )
    {
        mWalk.Fail( ENOTDIR );
    }
    ItemPlace const item = mWalk.Item();
    Require<FileDeleteFailed>( unlinkat( item.folder, item.name, 0 ) );
}

// The system is asked to delete the folder before its content is: so one where a file system is
// mounted, or in a folder that may not be changed, loses nothing; and an empty one needs no
// reading.
void Deletion::DeleteFolder()
{
    if ( IsToStay() )
    {
        if ( std::exchange( mIsRootToPass, false ) )
        {
            DeleteContent();
        }
        return;
    }
    ItemPlace const item = mWalk.Item();
    int const result = unlinkat( item.folder, item.name, AT_REMOVEDIR );
    if ( result != 0 && ( errno == ENOTEMPTY || errno == EEXIST ) )
    {
        DeleteContent();
    }
    else
    {
        Require<DirectoryDeleteFailed>( result );
    }
}

void Deletion::DeleteContent()
{
    if ( ++mPasses.back() > kMostPasses )
    {
        ThrowFileError<DirectoryDeleteFailed>( ENOTEMPTY, mWalk.Path() );
    }
    if ( mWhat == TreeDeletion::OwnContent )
    {
        ItemPlace const item = mWalk.Item();
        [[maybe_unused]] int const outcome =
            fchmodat( item.folder, item.name, S_IRWXU, AT_SYMLINK_NOFOLLOW );
    }
    mWalk.Enter();
}

} // namespace

void DeleteTree( ItemPlace const& root, TreeDeletion what )
{
    Deletion( root, what ).Run();
}

} // namespace MacintoshPlatform
