#pragma once

#include "encoding/Encodings.h"
#include "encoding/UStringRef.h"
#include "foundation/ConstData.h"
#include "platform/AutoCFString.h"

#include <CoreFoundation/CFURL.h>

#include <string>

/// The text of `string` in `encoding`, up to the first character that the encoding lacks, or, if
/// `lossByte` is not 0, with that byte for each UTF-16 unit of such a character.
/// Empty when the platform has no memory for the conversion (see CFStringGetBytes).
std::string MakeString( CFStringRef string, CFStringEncoding encoding, unsigned char lossByte );

/// These make a string of a text. All throw CFStringCreateError when it is not valid in its
/// encoding, or the encoding is unknown.
AutoCFString MakeCFString( UStringRef<UTF8> text );
AutoCFString MakeCFString( UniChar const* units, CFIndex count );
AutoCFString MakeCFString( char const* text, CFStringEncoding encoding );
AutoCFString MakeCFString( ConstData text, CFStringEncoding encoding );
AutoCFString MakeCFString( std::string const& text, CFStringEncoding encoding );

/// A share of the URL's text. Throws CFStringCreateError for a null URL.
AutoCFString MakeCFString( CFURLRef url );

/// A share of the one empty string of the process. Throws CFStringCreateError when it cannot be
/// made; the next call then tries again. Safe from any thread.
AutoCFString EmptyCFString();
