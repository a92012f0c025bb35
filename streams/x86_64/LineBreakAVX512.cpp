// Geoff Langdale and Daniel Lemire, "Parsing Gigabytes of JSON per Second", The VLDB Journal 28,
// 2019: a mask of 64 bits for 64 bytes, and its bits made a list of offsets without a branch for
// each bit. Here an instruction makes the list: it moves those numbers of a vector to the front
// whose bits are set.

#include "streams/x86_64/LineBreakVectors.h"

#include <algorithm>
#include <array>
#include <immintrin.h>
#include <numeric>

namespace
{

constexpr unsigned kBlock = 64;
constexpr unsigned kBlocksAtOnce = 4;

alignas( 64 ) constexpr auto kAscending = []
{
    std::array<std::uint16_t, 32> numbers;
    std::iota( numbers.begin(), numbers.end(), std::uint16_t( 0 ) );
    return numbers;
}();

[[gnu::target( "avx512bw" )]] inline std::uint64_t Breaks( __m512i bytes )
{
    return _mm512_cmpeq_epi8_mask( bytes, _mm512_set1_epi8( '\r' ) ) |
           _mm512_cmpeq_epi8_mask( bytes, _mm512_set1_epi8( '\n' ) );
}

// Appends the offsets of 64 bytes, which begin at the offset `from`; returns the new count.
[[gnu::target( "avx512bw,avx512vbmi2,popcnt" )]] inline unsigned Append(
    std::uint64_t breaks, unsigned from, LineBreakOffsets& offsets, unsigned count )
{
    for ( unsigned const half : { 0u, 32u } )
    {
        auto const mask = static_cast<std::uint32_t>( breaks >> half );
        __m512i const places =
            _mm512_add_epi16( _mm512_set1_epi16( static_cast<short>( from + half ) ),
                _mm512_load_si512( kAscending.data() ) );
        _mm512_storeu_si512( offsets + count, _mm512_maskz_compress_epi16( mask, places ) );
        count += static_cast<unsigned>( _mm_popcnt_u32( mask ) );
    }
    return count;
}

} // namespace

[[gnu::target( "avx512bw,avx512vbmi2,popcnt" )]] unsigned LineBreaksByAVX512(
    unsigned char const* text, unsigned length, LineBreakOffsets& offsets )
{
    unsigned count = 0;
    unsigned i = 0;
    for ( ; i + kBlocksAtOnce * kBlock <= length; i += kBlocksAtOnce * kBlock )
    {
        std::uint64_t breaks[kBlocksAtOnce];
        for ( unsigned block = 0; block < kBlocksAtOnce; ++block )
            breaks[block] = Breaks( _mm512_loadu_si512( text + i + block * kBlock ) );
        if ( ( breaks[0] | breaks[1] | breaks[2] | breaks[3] ) == 0 )
            continue;
        for ( unsigned block = 0; block < kBlocksAtOnce; ++block )
            count = Append( breaks[block], i + block * kBlock, offsets, count );
    }
    for ( ; i < length; i += kBlock )
    {
        std::uint64_t const inside = ~0ull >> ( kBlock - std::min( length - i, kBlock ) );
        count = Append( Breaks( _mm512_maskz_loadu_epi8( inside, text + i ) ), i, offsets, count );
    }
    return count;
}

bool IsLineBreakAVX512Supported()
{
    __builtin_cpu_init();
    return __builtin_cpu_supports( "avx512bw" ) && __builtin_cpu_supports( "avx512vbmi2" ) &&
           __builtin_cpu_supports( "popcnt" );
}
