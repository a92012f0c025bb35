#pragma once

#include <sys/stat.h>

#include <string>

namespace MacintoshPlatform
{

/// An item by a name in an open folder. All of it is lent.
struct ItemPlace
{
    int folder;              ///< a descriptor, or AT_FDCWD with a path for a name
    char const* name;        ///< one component; never followed if it leads to a link
    std::string const& path; ///< what errors call the item
};

/// Copies a regular file or a symbolic link under a name that must be free (FileExists otherwise;
/// DirectoryExists). What stands under the new name is the new item from the first moment, so
/// callers copy to a temporary name and rename.
///
/// A file is copied with its content, permissions and times, and synced to the disk. Nobody else
/// can open the copy before it is whole. It gets the owner and group of the source as
/// far as the user may give them; the set-user, set-group and sticky bits only if both are the
/// same, and another group no more than what everybody may. Access control lists and extended
/// attributes are not copied. A link is copied as a link, with its times. Everything else (a
/// folder, a FIFO, a socket, a device) is refused with FileItemError naming it, and never waited
/// for.
///
/// When it fails, what was made of the copy is deleted again. Throws the errors of ThrowFileError
/// with FileCopyFailed, naming both items, the one that the failing call was about first.
///
/// Answers what was copied, as the source said before.
struct stat CopyItem( ItemPlace const& from, ItemPlace const& to );

/// Gives the open copy of a file or folder the permissions and times in `status`, under the rules
/// above. Answers 0 or an errno value.
int CopyPermissionsAndTimes( struct stat const& status, int copy );

} // namespace MacintoshPlatform
