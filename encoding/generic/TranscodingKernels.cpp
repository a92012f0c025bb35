#include "encoding/TranscodingKernels.h"

template<>
std::span<Kernel<TranscodeFunction<UTF32, UTF8>> const> TranscodingKernels<UTF32, UTF8>()
{
    static constexpr Kernel<TranscodeFunction<UTF32, UTF8>> kKernels[] = {
        { "portable", IsAlwaysSupported, TranscodePortably } };
    return kKernels;
}

template<>
std::span<Kernel<TranscodeFunction<UTF8, UTF16>> const> TranscodingKernels<UTF8, UTF16>()
{
    static constexpr Kernel<TranscodeFunction<UTF8, UTF16>> kKernels[] = {
        { "portable", IsAlwaysSupported, TranscodePortably } };
    return kKernels;
}
