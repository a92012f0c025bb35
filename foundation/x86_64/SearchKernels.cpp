#include "foundation/SearchKernels.h"

#include "foundation/x86_64/Search.h"

namespace
{

bool HasAVX512()
{
    __builtin_cpu_init();
    return __builtin_cpu_supports( "avx512bw" ) && __builtin_cpu_supports( "popcnt" );
}

bool HasAVX2()
{
    __builtin_cpu_init();
    return __builtin_cpu_supports( "avx2" ) && __builtin_cpu_supports( "popcnt" );
}

} // namespace

std::span<Kernel<SearchFunction> const> SearchKernels()
{
    static constexpr Kernel<SearchFunction> kKernels[] = { { "AVX-512", HasAVX512, SearchAVX512 },
        { "AVX2", HasAVX2, SearchAVX2 }, { "portable", IsAlwaysSupported, SearchPortably } };
    return kKernels;
}
