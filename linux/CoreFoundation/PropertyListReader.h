#pragma once

// From the bytes of an XML property list to its elements. Internal to linux/.

#include "linux/CoreFoundation/PropertyListBuilder.h"

#include <string_view>

/// Reads a property list as CFPropertyListCreateFromXMLData describes it. Throws PropertyListError
/// with the line and the reason; std::bad_alloc when memory runs out.
Owned<CFObject const> ReadPropertyList(
    std::string_view document, CFStringObject::Mutability strings );
