#include "streams/LineBreakKernels.h"

std::span<Kernel<LineBreakFunction> const> LineBreakKernels()
{
    static constexpr Kernel<LineBreakFunction> kKernels[] = {
        { "memchr", IsAlwaysSupported, LineBreaksByMemchr },
    };
    return kKernels;
}
