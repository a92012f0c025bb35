#pragma once

#include "files/mac/TreeWalk.h"

#include <sys/types.h>

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace MacintoshPlatform
{

/// Copies all that lies in the folder into which a walk has just gone into another, empty folder,
/// and gives that the permissions and times of the first, and likewise all folders below. Folders
/// are for their owner only until their content is complete.
///
/// Remembers where the copies of items with several hard links lie, until all of these were met.
class TreeCopy
{
  public:
    /// The walk is at its root and has the copy's final path for the other end; `copy` is the open
    /// folder to be filled. Both outlive this object. Throws what TreeWalk throws, and the errors
    /// of ThrowFileError with FileCopyFailed, as Run does.
    TreeCopy( TreeWalk& walk, int copy );

    /// Takes the walk to its end.
    void Run();

  private:
    /// A folder of the copy, and the number of the one above it.
    struct Folder
    {
        std::size_t above;
        std::string name;
    };

    /// A folder that is being filled; numbered once an item with several hard links was copied
    /// into it or below it.
    struct Level
    {
        std::string name;
        std::size_t number;
    };

    /// The copy of an item whose other hard links are still to be met.
    struct LinkedCopy
    {
        std::size_t folder;
        std::string name;
        nlink_t linksLeft;
    };

    using Identity = std::pair<dev_t, ino_t>;

    void BeginFolder();
    void EndFolder();
    void CopyOne();
    void CopyFirstLink();
    bool LinkToEarlierCopy();
    std::size_t NumberOfFolder();
    int OpenNumbered( std::size_t number );
    bool HasVanished() const;

    /// Throws when an errno value of a call about the copy is not 0.
    void RequireOfCopy( int error ) const;

    TreeWalk& mWalk;
    int const mRoot; // of the copy
    struct stat mRootStatus;
    FolderChain mCopies;
    std::vector<Level> mLevels;   // below the root
    std::vector<Folder> mFolders; // the first one has number 1; the root has 0
    std::size_t mOpenNumber = 0;  // of mOpenFolder, if that is open
    Descriptor mOpenFolder;
    std::map<Identity, LinkedCopy> mLinked;
};

} // namespace MacintoshPlatform
