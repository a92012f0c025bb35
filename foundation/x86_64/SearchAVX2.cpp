#include "foundation/x86_64/Search.h"

#include <bit>
#include <immintrin.h>

// Two bytes of the needle are compared at their distance, at many positions at once: Wojciech Muła,
// "SIMD-friendly algorithms for substring searching". Here a third, the middle one, is compared
// with them: the first and the last often meet in natural text.

namespace
{

struct Needle
{
    unsigned char const* begin;
    std::size_t length;
    std::size_t middle;
    __m256i firstByte;
    __m256i middleByte;
    __m256i lastByte;
};

[[gnu::target( "avx2" )]] inline __m256i Repeated( unsigned char b )
{
    return _mm256_set1_epi8( static_cast<char>( b ) );
}

/// All bits set in each of the 32 bytes from `from` on that is `byte`.
[[gnu::target( "avx2" )]] inline __m256i Equal( unsigned char const* from, __m256i byte )
{
    return _mm256_cmpeq_epi8(
        _mm256_loadu_si256( reinterpret_cast<__m256i const*>( from ) ), byte );
}

[[gnu::target( "avx2" )]] inline std::uint32_t Bits( __m256i equal )
{
    return static_cast<std::uint32_t>( _mm256_movemask_epi8( equal ) );
}

[[gnu::target( "avx2" )]] inline __m256i Candidates(
    Needle const& needle, unsigned char const* block )
{
    __m256i const outer = _mm256_and_si256(
        Equal( block, needle.firstByte ), Equal( block + needle.length - 1, needle.lastByte ) );
    return _mm256_and_si256( outer, Equal( block + needle.middle, needle.middleByte ) );
}

/// The first of the candidates at which the needle is, or null. Compares one candidate after the
/// other if they are few, or else one byte of the needle after the other.
[[gnu::target( "avx2,popcnt" )]] unsigned char const* Confirm(
    Needle const& needle, unsigned char const* block, std::uint32_t candidates )
{
    if ( std::popcount( candidates ) > 4 )
    {
        for ( std::size_t i = 1; i < needle.length && candidates != 0; ++i )
            candidates &= Bits( Equal( block + i, Repeated( needle.begin[i] ) ) );
        return candidates == 0 ? nullptr : block + std::countr_zero( candidates );
    }
    for ( ; candidates != 0; candidates &= candidates - 1 )
    {
        unsigned char const* const candidate = block + std::countr_zero( candidates );
        if ( std::memcmp( candidate, needle.begin, needle.length ) == 0 )
            return candidate;
    }
    return nullptr;
}

/// For ranges with fewer positions than a block, in which loads of 32 bytes could reach outside.
unsigned char const* SearchShort( ConstData range, ConstData text )
{
    std::uint32_t const last = text.Length() - 1;
    for ( unsigned char const* p = range.begin(); p + last != range.end(); ++p )
        if ( *p == text[0] && p[last] == text[last] &&
             std::memcmp( p, text.begin(), text.Length() ) == 0 )
            return p;
    return nullptr;
}

} // namespace

[[gnu::target( "avx2,popcnt" )]] unsigned char const* SearchAVX2( ConstData range, ConstData text )
{
    std::size_t const length = text.Length();
    std::size_t const middle = length / 2;
    std::size_t positions = range.Length() - length + 1;
    if ( positions < 32 )
        return SearchShort( range, text );
    Needle const needle = { text.begin(), length, middle, Repeated( text.begin()[0] ),
        Repeated( text.begin()[middle] ), Repeated( text.begin()[length - 1] ) };

    unsigned char const* block = range.begin();
    for ( ; positions >= 64; positions -= 64, block += 64 )
    {
        __m256i const low = Candidates( needle, block );
        __m256i const high = Candidates( needle, block + 32 );
        if ( Bits( _mm256_or_si256( low, high ) ) == 0 )
            continue;
        if ( auto* const found = Confirm( needle, block, Bits( low ) ) )
            return found;
        if ( auto* const found = Confirm( needle, block + 32, Bits( high ) ) )
            return found;
    }
    while ( positions != 0 )
    {
        // The last block overlaps the one before it: what is seen again is known not to match.
        if ( positions < 32 )
        {
            block -= 32 - positions;
            positions = 32;
        }
        if ( auto* const found = Confirm( needle, block, Bits( Candidates( needle, block ) ) ) )
            return found;
        positions -= 32;
        block += 32;
    }
    return nullptr;
}
