#pragma once

#include <cstdint>

/// The encodings that text can be typed by. Each is an empty tag; `Unit` is one code unit and
/// `kLongestCharacter` the most units that one character takes.

/// Unicode in 8-bit units.
struct UTF8
{
    using Unit = char;
    static constexpr unsigned kLongestCharacter = 4;
};

/// Unicode in 16-bit units, in the machine's byte order.
struct UTF16
{
    using Unit = std::uint16_t;
    static constexpr unsigned kLongestCharacter = 2;
};

/// Unicode in 32-bit units, one code point each.
struct UTF32
{
    using Unit = std::uint32_t;
    static constexpr unsigned kLongestCharacter = 1;
};

/// The 8-bit encoding of the process's C locale.
struct Local8Bit
{
    using Unit = char;
};
