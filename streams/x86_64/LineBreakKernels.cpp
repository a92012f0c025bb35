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
