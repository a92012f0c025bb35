#pragma once

#include "files/mac/FileLocation.h"

#include <cstdint>

/// A four-character code, such as a type of folder in <CoreServices/Folders.h>.
using MacFileType = std::uint32_t;

namespace MacintoshPlatform
{

/// The location of a special folder of a domain, made first if it is missing and `createFolder` is
/// not 0 (see FSFindFolder). Throws CannotCreateSpecialFolder with code 0 when there is none, and
/// CFURLCreateFromFSRefFailed when it goes away at this moment.
FileLocation MakeFileLocation(
    MacFileType folderType, short domainOrVolume, unsigned char createFolder );

} // namespace MacintoshPlatform
