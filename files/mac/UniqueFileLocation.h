#pragma once

#include "files/mac/FileLocation.h"

#include <string_view>

namespace MacintoshPlatform
{

/// What files/UniqueFileLocation.h says, over the platform's locations.
FileLocation CreateUniqueFile( FileLocation const& folder, std::string_view prefix );
FileLocation CreateUniqueDirectory( FileLocation const& folder, std::string_view prefix );
FileLocation CreateTemporaryFile( std::string_view prefix );
FileLocation CreateTemporaryDirectory( std::string_view prefix );

} // namespace MacintoshPlatform
