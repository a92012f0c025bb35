#pragma once

// One direction of iconv. Internal to linux/.

#include <iconv.h>
#include <optional>
#include <string>
#include <string_view>

/// Converts text between two encodings that the C library's iconv knows by name.
class TextConverter
{
  public:
    /// IsKnown answers false when there is no such conversion; then nothing else is called. Throws
    /// std::bad_alloc.
    TextConverter( char const* to, char const* from );
    ~TextConverter();
    TextConverter( TextConverter const& ) = delete;
    TextConverter& operator=( TextConverter const& ) = delete;

    bool IsKnown() const;

    /// A whole text, which begins and ends in the initial shift state; nothing when a part of it
    /// is invalid, incomplete or has no counterpart.
    std::optional<std::string> Convert( std::string_view text );

  private:
    iconv_t const mConversion;
};

/// iconv's names for the encodings of whole units in this machine's byte order.
char const* HostUTF16Name();
char const* HostUTF32Name();
