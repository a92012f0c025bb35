#include "foundation/x86_64/Search.h"

#include <bit>
#include <immintrin.h>

// Two bytes of the needle are compared at their distance, at many positions at once: Wojciech Muła,
// "SIMD-friendly algorithms for substring searching". Here a third, the middle one, is compared
// with them: the first and the last often meet in natural text.

namespace
{

constexpr __mmask64 kAll = ~__mmask64( 0 );

struct Needle
{
    unsigned char const* begin;
    std::size_t length;
    std::size_t middle;
    __m512i firstByte;
    __m512i middleByte;
    __m512i lastByte;
    __m512i bytes;      ///< the whole needle
    __mmask64 occupied; ///< its bytes in there
};

/// The lowest `count` bits, at most 64.
__mmask64 Lowest( std::size_t count )
{
    return count >= 64 ? kAll : ( __mmask64( 1 ) << count ) - 1;
}

[[gnu::target( "avx512bw" )]] inline __m512i Repeated( unsigned char b )
{
    return _mm512_set1_epi8( static_cast<char>( b ) );
}

/// Those of `positions` at which `byte` is, counted from `from`.
[[gnu::target( "avx512bw" )]] inline __mmask64 Equal(
    unsigned char const* from, __m512i byte, __mmask64 positions, __mmask64 inRange )
{
    __m512i const bytes =
        inRange == kAll ? _mm512_loadu_si512( from ) : _mm512_maskz_loadu_epi8( inRange, from );
    return _mm512_mask_cmpeq_epi8_mask( positions, bytes, byte );
}

[[gnu::target( "avx512bw" )]] inline __mmask64 Candidates(
    Needle const& needle, unsigned char const* block, __mmask64 inRange )
{
    __mmask64 const first = Equal( block, needle.firstByte, inRange, inRange );
    __mmask64 const both = Equal( block + needle.length - 1, needle.lastByte, first, inRange );
    return Equal( block + needle.middle, needle.middleByte, both, inRange );
}

/// The first of the candidates at which the needle is, or null. Compares one candidate after the
/// other, or one byte of the needle after the other, whichever takes fewer comparisons.
[[gnu::target( "avx512bw,popcnt" )]] unsigned char const* Confirm(
    Needle const& needle, unsigned char const* block, __mmask64 candidates, __mmask64 inRange )
{
    if ( static_cast<std::size_t>( std::popcount( candidates ) ) >= needle.length )
    {
        for ( std::size_t i = 1; i < needle.length && candidates != 0; ++i )
            candidates = Equal( block + i, Repeated( needle.begin[i] ), candidates, inRange );
        return candidates == 0 ? nullptr : block + std::countr_zero( candidates );
    }
    for ( ; candidates != 0; candidates &= candidates - 1 )
    {
        unsigned char const* const candidate = block + std::countr_zero( candidates );
        __m512i const bytes = _mm512_maskz_loadu_epi8( needle.occupied, candidate );
        if ( _mm512_cmpneq_epi8_mask( bytes, needle.bytes ) == 0 )
            return candidate;
    }
    return nullptr;
}

} // namespace

[[gnu::target( "avx512bw,popcnt" )]] unsigned char const* SearchAVX512(
    ConstData range, ConstData text )
{
    std::size_t const length = text.Length();
    std::size_t const middle = length / 2;
    __mmask64 const occupied = Lowest( length );
    Needle const needle = { text.begin(), length, middle, Repeated( text.begin()[0] ),
        Repeated( text.begin()[middle] ), Repeated( text.begin()[length - 1] ),
        _mm512_maskz_loadu_epi8( occupied, text.begin() ), occupied };

    unsigned char const* block = range.begin();
    std::size_t positions = range.Length() - length + 1;
    for ( ; positions >= 256; positions -= 256, block += 256 )
    {
        __mmask64 const candidates[] = { Candidates( needle, block, kAll ),
            Candidates( needle, block + 64, kAll ), Candidates( needle, block + 128, kAll ),
            Candidates( needle, block + 192, kAll ) };
        if ( ( candidates[0] | candidates[1] | candidates[2] | candidates[3] ) == 0 )
            continue;
        for ( int i = 0; i < 4; ++i )
            if ( candidates[i] != 0 )
                if ( auto* const found = Confirm( needle, block + 64 * i, candidates[i], kAll ) )
                    return found;
    }
    for ( ;; positions -= 64, block += 64 )
    {
        __mmask64 const inRange = Lowest( positions );
        __mmask64 const candidates = Candidates( needle, block, inRange );
        if ( candidates != 0 )
            if ( auto* const found = Confirm( needle, block, candidates, inRange ) )
                return found;
        if ( positions <= 64 )
            return nullptr;
    }
}
