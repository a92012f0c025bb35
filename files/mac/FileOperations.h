#pragma once

#include "files/CreatingInfo.h"
#include "files/mac/FileLocation.h"

namespace MacintoshPlatform
{

/// Operations that change the file system, one item each.
///
/// A link is an item of its own: none of these follows one at the end of a path, but for
/// ForceDirectoryExistence. What is made takes its final name in one step; whatever ends the
/// process, no half item stands there.
///
/// All throw EmptyFileLocationError for an empty location, RootHasNoParent for the root, and
/// FullPathFailed for a path that is too long. Errors of the system are those of ThrowFileError
/// with the class that each operation names. They carry the code and the items: first the one that
/// the failing call was about, then the other end of a copy or move. Where the system has no
/// random bits for the temporary name of a copy, it is CreateUniqueFileLocationFailed.

/// Makes an empty file where nothing stands; FileExists or DirectoryExists otherwise. Without its
/// folder and without `makesParents` it is DirectoryNotFoundError. Parents get the permissions that
/// the umask leaves; they stay when the file cannot be made. An error that is about a parent names
/// it first. Throws FileCreateFailed.
void CreateFile( FileLocation const& location, FileCreatingInfo const& info = {} );

/// Makes an empty folder, under the same rules. Throws DirectoryCreateFailed.
void CreateDirectory( FileLocation const& location, DirectoryCreatingInfo const& info = {} );

/// Sees that a folder is there, or a link to one. Missing parents are always made, whatever `info`
/// says. Others may do the same at the same time. Something else there is FileExists. The root is
/// there. Throws DirectoryCreateFailed.
void ForceDirectoryExistence(
    FileLocation const& location, DirectoryCreatingInfo const& info = {} );

/// Deletes a file, a link or a special file. A folder is FileItemError. Throws FileDeleteFailed.
void DeleteFile( FileLocation const& location );

/// Deletes an empty folder. One with content is DirectoryNotEmpty; something else, even a link to
/// a folder, is DirectoryNotFoundError. Throws DirectoryDeleteFailed.
void DeleteDirectory( FileLocation const& location );

/// Sees that nothing is there: deletes a file, a link, a special file or an empty folder. A folder
/// with content is DirectoryNotEmpty and stays as it is. Throws FileDeleteFailed.
void ForceNonexistence( FileLocation const& location );

/// Copies a file or a link, as CopyItem does, to where nothing stands; FileExists or
/// DirectoryExists otherwise, also when something comes to stand there meanwhile. The copy is on
/// the disk when this returns. A folder or a special file is FileItemError. Throws FileCopyFailed.
void CopyFile( FileLocation const& from, FileLocation const& to );

/// The same, and replaces a file, a link or a special file: at any moment the old or the new item
/// stands there, whole. A folder there is DirectoryExists. To copy an item onto itself, by one path
/// or by two hard links, changes nothing.
void ForceCopyFile( FileLocation const& from, FileLocation const& to );

/// Renames an item of any kind; FileExists or DirectoryExists when something has the new name.
/// Into another file system it copies and then deletes: a file or a link as CopyFile does, a folder
/// as CopyTree and ForceDeleteRecursive do. Throws FileMoveFailed, also for a folder that would go
/// into itself, and what those throw.
///
/// When a source was copied but cannot be deleted, or was changed meanwhile, the error names it
/// first; it and the copy both stay, so that nothing is lost. If it was changed, that is
/// FileBusyError; FileDeleteFailed stands for other reasons of the system. Of a folder, only
/// changes of itself and its own entries are seen: what others change deeper in it goes with it,
/// and so does what they put into it while it is being deleted.
void MoveFile( FileLocation const& from, FileLocation const& to );

/// The same, and replaces a file, a link or a special file in one step, with the data of a source
/// that may be read on the disk before. A folder there is DirectoryExists, and a folder replaces
/// nothing. To move an item onto itself changes nothing, and nothing either, as with rename(2), if
/// the two are hard links to one item: both stay.
void ForceMoveFile( FileLocation const& from, FileLocation const& to );

} // namespace MacintoshPlatform
