#pragma once

#include "files/FileLocation.h"
#include "files/mac/FileLoop.h"
#include "foundation/ConstData.h"

/// Goes through the items in a folder, in the order in which the file system gives them:
///
///     for ( FileLoop loop( folder, "*.txt" ); loop.Next(); )
///         Use( loop.Location() );
///
/// "." and ".." are left out. The memory needed is the same for any number of items. Items may come
/// and go meanwhile: one that is gone when its turn comes is left out, one that is new may come or
/// not, and what is there all the time comes once. Not safe for use by two threads at once.
class FileLoop
{
  public:
    /// Begins before the first item of `folder`, following a symbolic link there. With `pattern`,
    /// which is copied, only items come whose names it matches (FileName::MatchesWildCard); null is
    /// every item. Names that are not UTF-8 are matched too; a byte of theirs that belongs to no
    /// character counts as one.
    ///
    /// Throws EmptyFileLocationError; FullPathFailed; the errors of ThrowCommonFileError, so that a
    /// missing folder is FileNotFoundError and what is no folder DirectoryNotFoundError; and
    /// FSIteratorCreateError for the rest, such as too many open files.
    explicit FileLoop( FileLocation const& folder, char const* pattern = nullptr )
        : mPlatform( folder.Platform(), pattern )
    {
    }

    /// Goes to the next item; false after the last one. Throws MacintoshPlatform::FileLoopFailed
    /// when the folder can no longer be read, or an item in it not be looked at. A pattern cannot
    /// be tried on names of more than 255 UTF-16 units, which few file systems have:
    /// IllegalFileNameLength.
    bool Next() { return mPlatform.Next(); }

    /// The rest is about the item that Next went to.

    /// Its name in the file system's bytes, which need not be UTF-8. Valid until the next call of
    /// Next.
    ConstData Name() const { return mPlatform.Name(); }

    /// Made anew by each call. Its POSIXPath throws FullPathFailed when the item's path is too long
    /// although the folder's is not.
    FileLocation Location() const { return mPlatform.Location(); }

    /// What it was when Next went to it. A symbolic link is a link and nothing else.
    bool IsDirectory() const { return mPlatform.IsDirectory(); }

    bool IsLink() const { return mPlatform.IsLink(); }

  private:
    MacintoshPlatform::FileLoop mPlatform;
};
