#pragma once

#include "files/mac/CopyItem.h"
#include "files/mac/FileLocation.h"

#include <sys/stat.h>

namespace MacintoshPlatform
{

/// Operations on an item with all that lies below it.
///
/// Below the location's own path every item is found by its name in an open folder: whatever other
/// processes put into the tree meanwhile, no link is followed and nothing outside the tree is
/// touched. Trees may be of any depth, and paths in them of any length: stack and descriptors are
/// bounded (some forty), memory grows with the depth and not with the number of items, but for
/// those with several hard links in a copy. Items that vanish meanwhile are skipped; one that is
/// replaced is looked at again, and FileBusyError if that never ends.
///
/// All throw EmptyFileLocationError for an empty location and FullPathFailed for a path that is too
/// long. Errors of the system are those of ThrowFileError, FileNotOpenError for what cannot be
/// read, and the class that each operation names. They name the item that failed with its full
/// path, first. A folder that is moved out of the tree while it is worked on is an error with
/// ENOENT's code.

/// Is told of what a walk meets. What it throws ends the walk. All arguments are lent.
class TreeVisitor
{
  public:
    virtual ~TreeVisitor() = default;

    /// A folder, before it is opened; false passes it by. The place has a descriptor of the folder
    /// above it; for the item that the walk begins with, AT_FDCWD and the whole path for a name.
    virtual bool FolderBegins( ItemPlace const& folder, struct stat const& status );

    /// An item that is no folder.
    virtual void VisitItem( ItemPlace const& item, struct stat const& status ) = 0;

    /// After the content of a folder that was not passed by. One that vanished between its two
    /// calls counts as empty; should something else have taken its place, that follows.
    virtual void FolderEnds( ItemPlace const& folder, struct stat const& status );
};

/// Visits the item and all below it, in the order in which the file system gives them, mounted file
/// systems too. FileNotFoundError if there is none.
void WalkTree( FileLocation const& location, TreeVisitor& visitor );

/// Deletes the item and all below it; that nothing is there is fine. A link is deleted itself.
///
/// The root is RootHasNoParent, by whatever path. A folder where a file system is mounted is
/// FileBusyError, and nothing in it is deleted. The first item that cannot be deleted ends the work
/// and leaves what was not reached. A folder into which others keep putting items is
/// DirectoryNotEmpty in the end. Throws FileDeleteFailed and DirectoryDeleteFailed.
void ForceDeleteRecursive( FileLocation const& location );

/// Deletes all that is in a folder, which stays. Something else, even a link to a folder, is
/// DirectoryNotFoundError, nothing is FileNotFoundError. The rest is as above; a file system may be
/// mounted at the folder itself.
void ForceDeleteContents( FileLocation const& location );

/// Copies a file, a link or a folder with all below it to where nothing stands; FileExists or
/// DirectoryExists otherwise, also when something comes to stand there meanwhile.
///
/// Links are copied as links, and hard links to one item within the tree are links to one copy.
/// Permissions and times are kept, of folders too, under the rules of CopyItem. Mounted file
/// systems are copied like folders. A special file is FileItemError. A folder copied into itself,
/// by whatever path, is FileCopyFailed with EINVAL's code before anything is made, or when the copy
/// meets itself in the tree.
///
/// The copy is made beside the target under a name that begins with "." and cannot be guessed. It
/// is on the disk before it takes its final name in one step; where the file system has no such
/// step, an empty folder has the name just before. When the copy fails, what was made is deleted,
/// unless there is no memory left for that either. A process that is killed leaves it. Throws
/// FileCopyFailed, naming the other end second, and CreateUniqueFileLocationFailed where the system
/// has no random bits for that name.
void CopyTree( FileLocation const& from, FileLocation const& to );

} // namespace MacintoshPlatform
