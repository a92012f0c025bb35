#include "streams/ChecksumKernels.h"

std::span<Kernel<ChecksumFunction> const> ChecksumKernels()
{
    static constexpr Kernel<ChecksumFunction> kKernels[] = {
        { "slicing", IsAlwaysSupported, ChecksumBySlicing },
    };
    return kKernels;
}
