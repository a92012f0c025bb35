#pragma once

#include "foundation/ConstData.h"
#include "foundation/Kernel.h"

#include <cstring>

/// The most bytes of a needle that the kernels below take. Up to there a block of positions costs
/// them at most as many comparisons as the needle has bytes, whatever the text, so that nothing
/// needs to be counted to stay linear. Longer ones are left to memmem, which skips by about their
/// length and passes over most of the range unseen.
constexpr std::uint32_t kLongestKernelNeedle = 64;

/// Finds the first occurrence of `needle`, which has 1 to kLongestKernelNeedle bytes, in `range`,
/// which is at least as long; null if there is none. Computes no tables.
using SearchFunction = unsigned char const*( ConstData range, ConstData needle );

/// Best first.
std::span<Kernel<SearchFunction> const> SearchKernels();

/// For needles of any length but 0.
inline unsigned char const* SearchPortably( ConstData range, ConstData needle )
{
    return static_cast<unsigned char const*>(
        memmem( range.begin(), range.Length(), needle.begin(), needle.Length() ) );
}
