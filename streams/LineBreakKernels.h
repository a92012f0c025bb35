#pragma once

#include "foundation/Kernel.h"

#include <cstdint>

/// The most bytes that a kernel is given at once.
inline constexpr unsigned kLineBreakChunk = 4096;

/// A kernel may write so many elements more than it finds breaks.
inline constexpr unsigned kLineBreakSlack = 32;

using LineBreakOffsets = std::uint16_t[kLineBreakChunk + kLineBreakSlack];

/// Writes the offsets, ascending, of every CR and every LF among the `length` bytes at `text`, at
/// least one, and returns how many there are.
using LineBreakFunction = unsigned(
    unsigned char const* text, unsigned length, LineBreakOffsets& offsets );

/// The best first.
std::span<Kernel<LineBreakFunction> const> LineBreakKernels();

/// How many bytes LineBreakMask is given.
inline constexpr unsigned kFewestBytesForMask = 16;
inline constexpr unsigned kMostBytesForMask = 64;

/// A bit for each of the `length` bytes at `text`, the lowest for the first: whether it is a CR or
/// an LF. For so few bytes this is a shorter way than offsets.
std::uint64_t LineBreakMask( unsigned char const* text, unsigned length );

/// The same in the plain form, best for fewer bytes.
inline std::uint64_t LineBreakMaskByByte( unsigned char const* text, unsigned length )
{
    std::uint64_t mask = 0;
    while ( length-- > 0 )
        mask = mask << 1 | ( text[length] == '\r' || text[length] == '\n' );
    return mask;
}

/// The portable kernel: asks the C library for each of the two bytes in turn.
LineBreakFunction LineBreaksByMemchr;

/// The plain form, for the last few bytes: from the byte at `from` on, before which `count` breaks
/// have been found.
inline unsigned LineBreaksByByte( unsigned char const* text, unsigned from, unsigned length,
    LineBreakOffsets& offsets, unsigned count )
{
    for ( unsigned i = from; i < length; ++i )
    {
        offsets[count] = static_cast<std::uint16_t>( i );
        count += text[i] == '\r' || text[i] == '\n';
    }
    return count;
}
