#include "foundation/SearchKernels.h"

std::span<Kernel<SearchFunction> const> SearchKernels()
{
    static constexpr Kernel<SearchFunction> kKernels[] = {
        { "portable", IsAlwaysSupported, SearchPortably } };
    return kKernels;
}
