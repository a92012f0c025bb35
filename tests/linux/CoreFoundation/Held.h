#pragma once

// Short forms for the tests of the Core Foundation-compatible layer.

#include "fuzz/PropertyListText.h"

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

std::string Bytes( CFDataRef data );

/// The XML element with that content.
std::string Element( std::string const& name, std::string const& content );

/// What an XML property list gives; null when it is refused.
Held<CFTypeRef> Parsed( std::string_view text, CFOptionFlags option = 0 );

/// An object as one element of a property list, or "null". Each object has one form: no short
/// forms, no blanks, keys in the order of their bytes.
std::string Describe( CFTypeRef object );
