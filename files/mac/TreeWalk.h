#pragma once

#include "files/mac/CopyItem.h"
#include "files/mac/FolderChain.h"

#include <sys/stat.h>

#include <cstddef>
#include <string>
#include <vector>

namespace MacintoshPlatform
{

/// Goes step by step through an item and all that lies below it, a folder's content between its
/// two steps, in the order in which the file system gives it.
///
/// Every item is found by its name in an open folder, never by its path: whatever another process
/// puts into the tree meanwhile, no link is followed and nothing outside is met. Items that vanish
/// are left out. Mounted file systems are entered.
///
/// Any depth goes with bounded stack and descriptors, see FolderChain; the memory grows with the
/// depth and not with the number of items.
class TreeWalk
{
  public:
    enum class Step
    {
        Folder,     ///< a folder is met; without Enter it is passed by
        Item,       ///< anything else
        FolderEnds, ///< all of a folder was met; it may be entered once more
        Done        ///< the whole tree was; the only step if nothing is there
    };

    /// Begins at `root`, where a link is an item as well; what it refers to outlives the walk.
    /// `otherRoot` is the other end of a copy, or empty: errors name it as well.
    explicit TreeWalk( ItemPlace const& root, std::string const& otherRoot = {} );

    /// The next step; those above tell what it is about. Throws the errors of Fail.
    Step Next();

    /// Goes into the folder of the last step, so that its content follows and then FolderEnds.
    /// False when it has vanished or is no folder any more, and then it is looked at again. Throws
    /// the errors of Fail.
    bool Enter();

    /// Lets the next step be about the same place, because what is there has changed. When that
    /// happens too often in a row, throws FileBusyError.
    void LookAgain();

    /// The item of the last step, until Enter or Next.
    ItemPlace Item() const;

    /// The path of that item, or of the folder that was entered.
    std::string const& Path() const { return mPath; }

    /// What belongs to that path at the other end; empty if there is none.
    std::string const& OtherPath() const { return mOtherPath; }

    /// What was found there; for a folder that was entered, what its descriptor said then.
    struct stat const& Status() const { return mStatus; }

    /// How many folders were entered and not left: 0 at the root.
    std::size_t Depth() const { return mLengths.size(); }

    /// Throws ThrowFileError's errors with FileNotOpenError, naming both paths.
    [[noreturn]] void Fail( int error ) const;

  private:
    bool Look();
    Step StepOfItem() const;
    void GoBackToFolder();
    void Append( char const* name );
    Step LeaveFolder();

    ItemPlace const mRoot;
    std::string mPath;
    std::string mOtherPath;
    std::size_t const mOtherLength; // of the other root's path
    struct stat mStatus = {};
    FolderChain mFolders;
    std::vector<std::size_t> mLengths; // of the paths of the folders in the chain
    bool mLooksAtSame = true;          // the next step is about mPath
    unsigned mTimesLooked = 0;
};

} // namespace MacintoshPlatform
