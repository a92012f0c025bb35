#pragma once

#include "files/mac/FolderStream.h"

#include <sys/stat.h>

#include <cstddef>
#include <vector>

namespace MacintoshPlatform
{

/// The folders on the way from one folder down to another below it, however long that way is, with
/// few of them open: only the deepest kMostOpen levels are. A higher one is closed, and opened
/// again as the ".." of its child once the way leads back to it. It then goes on where its stream
/// was.
///
/// No link is followed, and nothing is found by its path, so it does not matter what becomes of the
/// names of the folders in the chain. Takes some 200 bytes for each level, and a stream's buffer
/// for each open one.
class FolderChain
{
  public:
    static constexpr std::size_t kMostOpen = 16;

    bool IsEmpty() const { return mLevels.empty(); }

    /// Goes down into the folder `name` in the folder with the descriptor `parent`, the innermost
    /// one unless the chain is empty. Answers 0, or an errno value, and is then where it was:
    /// ENOTDIR or ELOOP for what is no folder, even if it is a link to one.
    int Enter( int parent, char const* name );

    /// Goes up again and hands over the folder that was left, which stays open. Answers 0, or an
    /// errno value, and is then of no more use: ENOENT when that folder was moved elsewhere.
    int Leave( FolderStream& left );

    /// The innermost folder; none of these is for an empty chain.
    FolderStream& Stream() { return mLevels.back().stream; }

    int Number() const { return mLevels.back().stream.Number(); }

    /// What the folder's descriptor said when it was entered.
    struct stat const& Status() const { return mLevels.back().status; }

  private:
    struct Level
    {
        FolderStream stream; // not open in the levels above the deepest ones
        long position;       // of a stream that was closed
        struct stat status;
    };

    void CloseOneAbove();

    std::vector<Level> mLevels;
};

/// OpenAt for a folder, which must not be a link, to be read.
Descriptor OpenFolderAt( int folder, char const* name );

/// Whether both tell of the same item.
bool IsSameItem( struct stat const& first, struct stat const& second );

} // namespace MacintoshPlatform
