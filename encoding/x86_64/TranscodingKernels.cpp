#include "encoding/TranscodingKernels.h"

#include "encoding/x86_64/TranscodingAVX512.h"

namespace
{

bool HasAVX512()
{
    __builtin_cpu_init();
    return __builtin_cpu_supports( "avx512bw" ) && __builtin_cpu_supports( "avx512cd" ) &&
           __builtin_cpu_supports( "avx512vbmi" ) && __builtin_cpu_supports( "avx512vbmi2" ) &&
           __builtin_cpu_supports( "popcnt" );
}

} // namespace

template<>
std::span<Kernel<TranscodeFunction<UTF32, UTF8>> const> TranscodingKernels<UTF32, UTF8>()
{
    static constexpr Kernel<TranscodeFunction<UTF32, UTF8>> kKernels[] = {
        { "AVX-512", HasAVX512, TranscodeByAVX512 },
        { "portable", IsAlwaysSupported, TranscodePortably } };
    return kKernels;
}

template<>
std::span<Kernel<TranscodeFunction<UTF8, UTF16>> const> TranscodingKernels<UTF8, UTF16>()
{
    static constexpr Kernel<TranscodeFunction<UTF8, UTF16>> kKernels[] = {
        { "AVX-512", HasAVX512, TranscodeByAVX512 },
        { "portable", IsAlwaysSupported, TranscodePortably } };
    return kKernels;
}
