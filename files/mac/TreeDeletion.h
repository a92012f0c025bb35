#pragma once

#include "files/mac/CopyItem.h"

namespace MacintoshPlatform
{

enum class TreeDeletion
{
    Whole,       ///< the item and all below it
    ContentOnly, ///< all below a folder; what is no folder is DirectoryNotFoundError
    OwnContent   ///< ContentOnly, and folders are given the permissions that this needs
};

/// Deletes a tree as TreeOperations.h says, without a look at what the item is: not even the root
/// is refused.
void DeleteTree( ItemPlace const& root, TreeDeletion what );

} // namespace MacintoshPlatform
