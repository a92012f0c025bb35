#pragma once

#include "files/FileLocation.h"

/// Both go by the text of the paths and never ask the disk. They throw EmptyFileLocationError with
/// code 0 when either location is empty, and FullPathFailed.

/// Whether going up from `item`, itself included, comes by `ancestor`. The text counts as it
/// stands: a path that does not get shorter on the way up, such as one that ends in "." or "..",
/// ends the search.
bool EqualOrDescendant( FileLocation const& ancestor, FileLocation const& item );

/// The same, but not for the two being Equal.
bool IsDescendant( FileLocation const& ancestor, FileLocation const& item );
