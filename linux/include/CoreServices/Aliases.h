#pragma once

/// Aliases: items that stand for another item. Here they are the symbolic links.

#include <CoreFoundation/CFBase.h>
#include <CoreServices/Files.h>

extern "C"
{

    /// Makes `theRef` refer to the item that the alias it refers to stands for: with
    /// `resolveAliasChains` the one at the end of the chain, by its path without any link;
    /// otherwise the next one, which may be an alias again. Tells whether the target is a folder,
    /// and whether there was an alias; an item of another kind is its own target.
    ///
    /// fnfErr when the item is gone or another one has taken its path, and when the alias leads
    /// nowhere or round in circles; other codes when the way to the target is barred. Then nothing
    /// is changed.
    OSErr FSResolveAliasFile(
        FSRef* theRef, Boolean resolveAliasChains, Boolean* targetIsFolder, Boolean* wasAliased );
}
