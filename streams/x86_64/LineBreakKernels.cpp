#include "streams/LineBreakKernels.h"

#include "streams/x86_64/LineBreakVectors.h"

std::span<Kernel<LineBreakFunction> const> LineBreakKernels()
{
    static constexpr Kernel<LineBreakFunction> kKernels[] = {
        { "AVX-512", IsLineBreakAVX512Supported, LineBreaksByAVX512 },
        { "AVX2", IsLineBreakAVX2Supported, LineBreaksByAVX2 },
        { "memchr", IsAlwaysSupported, LineBreaksByMemchr },
    };
    return kKernels;
}

std::uint64_t LineBreakMask( unsigned char const* text, unsigned length )
{
    std::uint64_t mask = 0;
    for ( unsigned i = 0; i + kSmallBlock <= length; i += kSmallBlock )
        mask |= std::uint64_t{ BreaksOf16( text + i ) } << i;
    unsigned const last = length - kSmallBlock; // may overlap the block before
    return mask | std::uint64_t{ BreaksOf16( text + last ) } << last;
}
