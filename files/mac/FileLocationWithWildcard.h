#pragma once

#include "files/mac/FileLocation.h"

namespace MacintoshPlatform
{

/// The form of ::MakeFileLocationWithWildcard for a path in a CFStringEncoding and a
/// CFURLPathStyle.
char const* MakeFileLocationWithWildcard(
    char const* path, FileLocation& out, unsigned long encoding, long pathStyle );

} // namespace MacintoshPlatform
