#pragma once

// Ownership and short forms for the tests of the Core Foundation-compatible layer.

#include <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

struct CallCFRelease
{
    void operator()( CFTypeRef object ) const { CFRelease( object ); }
};

/// Owns the reference that a "Create" or "Copy" function gave.
template<class Reference>
using Held = std::unique_ptr<std::remove_pointer_t<Reference>, CallCFRelease>;

/// The object as one of its own type, which may be that of a mutable object.
template<class Reference>
Reference As( CFTypeRef object )
{
    return static_cast<Reference>( const_cast<void*>( object ) );
}

/// A string of UTF-8 text.
Held<CFStringRef> String( std::string_view text );

/// A string as UTF-8 text.
std::string Text( CFStringRef string );

Held<CFDataRef> Data( std::string_view bytes );

std::string Bytes( CFDataRef data );

/// The XML element with that content.
std::string Element( std::string const& name, std::string const& content );

/// What an XML property list gives; null when it is refused.
Held<CFTypeRef> Parsed( std::string_view text, CFOptionFlags option = 0 );

/// An object as text: {"key"="value"} with sorted keys, ["a","b"], i5 for integers, r2.5 for reals,
/// true, @seconds for dates, <bytes> for data. Strings are written in UTF-8 between quotes.
std::string Describe( CFTypeRef object );
