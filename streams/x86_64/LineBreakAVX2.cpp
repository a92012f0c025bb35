// Geoff Langdale and Daniel Lemire, "Parsing Gigabytes of JSON per Second", The VLDB Journal 28,
// 2019: a mask of 64 bits for 64 bytes, and several of its bits made offsets without a branch for
// each, even if fewer are set.

#include "streams/x86_64/LineBreakVectors.h"

#include <immintrin.h>

namespace
{

constexpr unsigned kBlock = 64;
constexpr unsigned kBlocksAtOnce = 4;
constexpr unsigned kOffsetsAtOnce = 3;

[[gnu::target( "avx2" )]] inline std::uint32_t BreaksOf32( unsigned char const* text )
{
    __m256i const bytes = _mm256_loadu_si256( reinterpret_cast<__m256i const*>( text ) );
    __m256i const breaks = _mm256_or_si256( _mm256_cmpeq_epi8( bytes, _mm256_set1_epi8( '\r' ) ),
        _mm256_cmpeq_epi8( bytes, _mm256_set1_epi8( '\n' ) ) );
    return static_cast<std::uint32_t>( _mm256_movemask_epi8( breaks ) );
}

[[gnu::target( "avx2" )]] inline std::uint64_t BreaksOf64( unsigned char const* text )
{
    return BreaksOf32( text ) | std::uint64_t{ BreaksOf32( text + 32 ) } << 32;
}

// Appends the offsets of the bytes that begin at the offset `from`; returns the new count.
[[gnu::target( "avx2,bmi,popcnt" )]] inline unsigned Append(
    std::uint64_t breaks, unsigned from, LineBreakOffsets& offsets, unsigned count )
{
    std::uint16_t* next = offsets + count;
    count += static_cast<unsigned>( _mm_popcnt_u64( breaks ) );
    do
    {
        for ( unsigned i = 0; i < kOffsetsAtOnce; ++i )
        {
            *next++ = static_cast<std::uint16_t>( from + _tzcnt_u64( breaks ) );
            breaks = _blsr_u64( breaks );
        }
    } while ( breaks != 0 );
    return count;
}

} // namespace

[[gnu::target( "avx2,bmi,popcnt" )]] unsigned LineBreaksByAVX2(
    unsigned char const* text, unsigned length, LineBreakOffsets& offsets )
{
    unsigned count = 0;
    unsigned i = 0;
    for ( ; i + kBlocksAtOnce * kBlock <= length; i += kBlocksAtOnce * kBlock )
    {
        std::uint64_t breaks[kBlocksAtOnce];
        for ( unsigned block = 0; block < kBlocksAtOnce; ++block )
            breaks[block] = BreaksOf64( text + i + block * kBlock );
        if ( ( breaks[0] | breaks[1] | breaks[2] | breaks[3] ) == 0 )
            continue;
        for ( unsigned block = 0; block < kBlocksAtOnce; ++block )
            count = Append( breaks[block], i + block * kBlock, offsets, count );
    }
    for ( ; i + kSmallBlock <= length; i += kSmallBlock )
        count = Append( BreaksOf16( text + i ), i, offsets, count );
    return LineBreaksByByte( text, i, length, offsets, count );
}

bool IsLineBreakAVX2Supported()
{
    __builtin_cpu_init();
    return __builtin_cpu_supports( "avx2" ) && __builtin_cpu_supports( "bmi" ) &&
           __builtin_cpu_supports( "popcnt" );
}
