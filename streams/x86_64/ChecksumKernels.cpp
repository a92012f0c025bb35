#include "streams/ChecksumKernels.h"
#include "streams/x86_64/ChecksumPolynomials.h"

std::span<Kernel<ChecksumFunction> const> ChecksumKernels()
{
    static constexpr Kernel<ChecksumFunction> kKernels[] = {
        { "AVX-512", IsChecksumAVX512Supported, ChecksumByAVX512 },
        { "PCLMULQDQ", IsChecksumPCLMULSupported, ChecksumByPCLMUL },
        { "slicing", IsAlwaysSupported, ChecksumBySlicing },
    };
    return kKernels;
}
