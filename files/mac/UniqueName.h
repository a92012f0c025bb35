#pragma once

#include <string>
#include <string_view>

namespace MacintoshPlatform
{

/// A file name that cannot be guessed: `prefix` and 128 random bits of the system in 32 hexadecimal
/// digits. Throws CreateUniqueFileLocationFailed when the system has no random bits.
std::string MakeUniqueName( std::string_view prefix );

} // namespace MacintoshPlatform
