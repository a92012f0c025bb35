#pragma once

#include "files/mac/CopyItem.h"

#include <string>

namespace MacintoshPlatform
{

/// A new item that is made whole under a temporary name beside its final one and takes the final
/// name in one step, so that no half of it ever stands there. Unless it was published, it is
/// removed again with this object.
///
/// The temporary name begins with "." and cannot be guessed. A process that is killed leaves it.
class Replacement
{
  public:
    /// Chooses the temporary name; the caller makes the item at Place(), exclusively. `target` is
    /// not touched, and what it refers to outlives this object. Throws
    /// CreateUniqueFileLocationFailed when the system has no random bits.
    explicit Replacement( ItemPlace const& target );

    Replacement( Replacement const& ) = delete;
    Replacement& operator=( Replacement const& ) = delete;

    /// Removes an item that was not published: a file, a link or an empty folder. Whoever fills a
    /// folder empties it.
    ~Replacement();

    /// The temporary place. It has the path of the target, so that errors name the item that the
    /// user knows.
    ItemPlace Place() const { return { mTarget.folder, mName.c_str(), mTarget.path }; }

    /// Gives the item the final name, which must be free (FileExists or DirectoryExists otherwise),
    /// and syncs the folder. Throws the errors of ThrowFileError with FileCopyFailed, naming the
    /// target and `source`, the item that this one is a copy of. If only the sync fails, the item
    /// stands under its final name.
    void PublishAsNew( std::string const& source );

    /// The same, and replaces a file or link that has the name. A folder there is DirectoryExists.
    void PublishReplacing( std::string const& source );

  private:
    void Finish( int error, std::string const& source );

    ItemPlace mTarget;
    std::string mName;
    bool mIsPublished = false;
};

/// Renames an item if the new name is free; answers 0 or an errno value, EEXIST if it is not.
/// Where the file system cannot do that in one step, a file or link gets the new name before it
/// loses the old one, and a folder replaces an empty one that is made for it.
int RenameExclusively( ItemPlace const& from, ItemPlace const& to );

/// Syncs the entries of the folder that `place` is in; answers 0 or an errno value. A folder that
/// cannot be synced (it may not be read, or its file system has nothing to sync) counts as synced.
int SyncFolderOf( ItemPlace const& place );

} // namespace MacintoshPlatform
