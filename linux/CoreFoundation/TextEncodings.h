#pragma once

// From bytes in an encoding to UTF-16 units and back. Internal to linux/.

#include <CoreFoundation/CFString.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// Reads UTF-8 strictly (Unicode 15, table 3-7) and appends its units; false at the first invalid
/// sequence.
bool AppendUTF8( std::string_view text, std::u16string& units );

/// What CFStringCreateWithBytes makes of the bytes; nothing where that answers null.
std::optional<std::u16string> DecodeText(
    std::string_view bytes, CFStringEncoding encoding, bool isExternal );

/// How CFStringGetBytes converts.
struct EncodingRequest
{
    CFStringEncoding encoding;
    UInt8 lossByte;
    bool isExternal;
    UInt8* buffer;
    std::size_t bufferLength;
};

struct EncodingResult
{
    std::size_t units = 0;
    std::size_t bytes = 0;
};

/// What CFStringGetBytes does.
EncodingResult EncodeText( std::u16string_view units, EncodingRequest const& request );

/// The same for units that are ASCII, one byte each.
EncodingResult EncodeText( std::string_view units, EncodingRequest const& request );
