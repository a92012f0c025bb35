#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct CallCFRelease
{
    void operator()( CFTypeRef object ) const { CFRelease( object ); }
};

/// Owns the reference that a "Create" or "Copy" function gave.
template<class Reference>
using Held = std::unique_ptr<std::remove_pointer_t<Reference>, CallCFRelease>;

/// What a document holds; null when it is refused.
Held<CFTypeRef> ReadPropertyList( std::string_view document, CFOptionFlags option );

/// A property list as XML, in one way only: keys are in the order of their bytes, every value has
/// one form. Nothing for a date before the year 1 or after 9999, which has no form.
std::optional<std::string> PropertyListText( CFTypeRef root );
