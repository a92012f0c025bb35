#include "streams/LineBreakKernels.h"

std::span<Kernel<LineBreakFunction> const> LineBreakKernels()
{
    static constexpr Kernel<LineBreakFunction> kKernels[] = {
        { "memchr", IsAlwaysSupported, LineBreaksByMemchr },
    };
    return kKernels;
}

std::uint64_t LineBreakMask( unsigned char const* text, unsigned length )
{
    return LineBreakMaskByByte( text, length );
}
