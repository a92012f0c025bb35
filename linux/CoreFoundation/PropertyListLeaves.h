#pragma once

// The text of a property list's leaf elements. Internal to linux/.

#include <CoreFoundation/CFDate.h>

#include "linux/CoreFoundation/CFNumberObject.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

/// The text of <integer>, <real> or <date>; nothing for text that is none. The forms are those
/// described at CFPropertyListCreateFromXMLData.
std::optional<WideInteger> ParseInteger( std::string_view text );
std::optional<double> ParseReal( std::string_view text );
std::optional<CFAbsoluteTime> ParseDate( std::string_view text );

/// Whether there is nothing but XML's white space.
bool IsBlank( std::string_view text );

/// Decodes base64 (RFC 4648, section 4) piece by piece; blanks are skipped, padding is required,
/// and unused bits before the padding are ignored.
class Base64Decoder
{
  public:
    /// False when the text can be no base64; the decoder is of no further use then.
    bool Append( std::string_view text );

    /// The bytes, after which the decoder is as new; nothing when the text ended too early.
    std::optional<std::vector<std::uint8_t>> Finish();

  private:
    std::vector<std::uint8_t> mBytes;
    std::uint32_t mBits = 0;
    unsigned mCharacters = 0; // of the group of four
    unsigned mPadding = 0;    // of which
};
