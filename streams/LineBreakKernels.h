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

/// The portable kernel: asks the C library for each of the two bytes in turn.
LineBreakFunction LineBreaksByMemchr;

/// The plain form, best for a few bytes: from the byte at `from` on, before which `count` breaks
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
