// After Robert Clausecker and Daniel Lemire, "Transcoding Unicode Characters with AVX-512
// Instructions", Software: Practice and Experience 53 (2023): each character gets a lane with room
// for its longest form, and the bytes that it does not need are compressed away.

#include "encoding/x86_64/TranscodingAVX512.h"

#include <bit>
#include <cstdint>
#include <immintrin.h>

namespace
{

/// Puts those bytes of the vector that `bytesToKeep` names and returns where the next byte goes.
[[gnu::target( "avx512bw,avx512vbmi2,popcnt" )]] char* PutKept(
    __m512i bytes, std::uint64_t bytesToKeep, char* out )
{
    _mm512_storeu_si512( out, _mm512_maskz_compress_epi8( bytesToKeep, bytes ) );
    return out + std::popcount( bytesToKeep );
}

/// Encodes 32 units below 0x800.
[[gnu::target( "avx512bw,avx512vbmi2,popcnt" )]] char* PutShort(
    __m512i units, __mmask32 notAscii, char* out )
{
    __m512i const last =
        _mm512_slli_epi16( _mm512_and_si512( units, _mm512_set1_epi16( 0x3F ) ), 8 );
    __m512i const lead = _mm512_srli_epi16( units, 6 );
    __m512i const tags = _mm512_set1_epi16( static_cast<short>( 0x80C0 ) );
    // 0xFE is the or of all three.
    __m512i const pairs = _mm512_ternarylogic_epi32( last, lead, tags, 0xFE );
    __m512i const forms = _mm512_mask_mov_epi16( units, notAscii, pairs );
    std::uint64_t const everyFirst = 0x5555555555555555;
    return PutKept( forms, _mm512_movepi8_mask( forms ) | everyFirst, out );
}

[[gnu::target( "avx512bw" )]] __mmask16 AreFrom( __m512i codePoints, int lowest )
{
    return _mm512_cmpge_epu32_mask( codePoints, _mm512_set1_epi32( lowest ) );
}

/// Encodes those of 16 code points that `toEncode` names.
[[gnu::target( "avx512bw,avx512vbmi2,avx512vbmi,popcnt" )]] char* PutAny(
    __m512i codePoints, __mmask16 toEncode, char* out )
{
    // A form ends at the highest byte of its lane; the marks have the top bit of each of its bytes.
    __mmask16 const notAscii = AreFrom( codePoints, 0x80 );
    __m512i marks = _mm512_maskz_set1_epi32( toEncode, static_cast<int>( 0x80000000 ) );
    marks = _mm512_mask_set1_epi32( marks, notAscii & toEncode, static_cast<int>( 0x80C00000 ) );
    marks = _mm512_mask_set1_epi32(
        marks, AreFrom( codePoints, 0x800 ) & toEncode, static_cast<int>( 0x8080E000 ) );
    marks = _mm512_mask_set1_epi32(
        marks, AreFrom( codePoints, 0x10000 ) & toEncode, static_cast<int>( 0x808080F0 ) );

    // Bits 18, 12, 6 and 0 upward of both code points of a quarter.
    __m512i const groups =
        _mm512_multishift_epi64_epi8( _mm512_set1_epi64( 0x20262C3200060C12 ), codePoints );
    // 0xF8 is the first, or the second and the third.
    __m512i const forms =
        _mm512_ternarylogic_epi32( marks, groups, _mm512_set1_epi8( 0x3F ), 0xF8 );
    __m512i const ascii = _mm512_slli_epi32( codePoints, 24 );
    return PutKept(
        _mm512_mask_mov_epi32( ascii, notAscii, forms ), _mm512_movepi8_mask( marks ), out );
}

/// Adds the low surrogate that follows to each high one, which makes it a code point.
[[gnu::target( "avx512bw,avx512vbmi2,avx512vbmi" )]] __m512i Join(
    __m512i codePoints, __m512i following, __mmask16 highs )
{
    __m512i const sum = _mm512_add_epi32( _mm512_slli_epi32( codePoints, 10 ), following );
    constexpr int kSurplus = ( 0xD800 << 10 ) + 0xDC00 - 0x10000;
    return _mm512_mask_sub_epi32( codePoints, highs, sum, _mm512_set1_epi32( kSurplus ) );
}

[[gnu::target( "avx512bw,avx512vbmi2" )]] __m512i Widen( __m512i units, int half )
{
    return _mm512_cvtepu16_epi32(
        half == 0 ? _mm512_castsi512_si256( units ) : _mm512_extracti64x4_epi64( units, 1 ) );
}

/// Which of 32 units are surrogates from `first` on, by the bits that `mask` leaves.
[[gnu::target( "avx512bw" )]] std::uint32_t Surrogates( __m512i units, int first, int mask )
{
    __m512i const kinds =
        _mm512_and_si512( units, _mm512_set1_epi16( static_cast<short>( mask ) ) );
    return _mm512_cmpeq_epi16_mask( kinds, _mm512_set1_epi16( static_cast<short>( first ) ) );
}

[[gnu::target( "avx512bw" )]] std::uint32_t UnitsFrom( int lowest, __m512i units )
{
    return _mm512_cmpge_epu16_mask( units, _mm512_set1_epi16( static_cast<short>( lowest ) ) );
}

/// The last unit of a block might be the first of a pair; it is left to the next block.
constexpr int kStride = 31;
constexpr std::uint32_t kOwnUnits = ( std::uint32_t( 1 ) << kStride ) - 1;

/// Encodes the characters that begin in a block with surrogates. `begun` is the first unit if it
/// belongs to a character of the block before, and afterwards the same for the next block. Returns
/// null if the block is malformed.
[[gnu::target( "avx512bw,avx512vbmi2,avx512vbmi,popcnt" )]] char* PutPairs(
    __m512i units, std::uint32_t& begun, char* out )
{
    std::uint32_t const highs = Surrogates( units, 0xD800, 0xFC00 ) & kOwnUnits;
    std::uint32_t const lows = Surrogates( units, 0xDC00, 0xFC00 );
    std::uint32_t const expected = begun | highs << 1;
    if ( lows != expected )
        return nullptr;
    begun = expected >> kStride;
    std::uint32_t const starts = kOwnUnits & ~lows;
    __m512i const nextQuarters = _mm512_alignr_epi32( units, units, 4 );
    __m512i const following = _mm512_alignr_epi8( nextQuarters, units, 2 );
    auto const low16 = []( std::uint32_t bits ) { return static_cast<__mmask16>( bits ); };
    out = PutAny(
        Join( Widen( units, 0 ), Widen( following, 0 ), low16( highs ) ), low16( starts ), out );
    return PutAny( Join( Widen( units, 1 ), Widen( following, 1 ), low16( highs >> 16 ) ),
        low16( starts >> 16 ), out );
}

} // namespace

[[gnu::target( "avx512bw,avx512vbmi2,avx512vbmi,popcnt" )]] Transcoded<UTF8, UTF16>
TranscodeByAVX512(
    UTF16::Unit const* next, UTF16::Unit const* end, UTF8::Unit* out, UTF8::Unit const* limit )
{
    std::uint32_t begun = 0;
    while ( end - next >= 32 && out < limit )
    {
        __m512i const units = _mm512_loadu_si512( next );
        std::uint32_t const notAscii = UnitsFrom( 0x80, units );
        if ( notAscii == 0 )
        {
            _mm256_storeu_si256( reinterpret_cast<__m256i*>( out ), _mm512_cvtepi16_epi8( units ) );
            out += 32;
        }
        else if ( UnitsFrom( 0x800, units ) == 0 )
            out = PutShort( units, notAscii, out );
        else if ( Surrogates( units, 0xD800, 0xF800 ) == 0 )
        {
            out = PutAny( Widen( units, 0 ), 0xFFFF, out );
            out = PutAny( Widen( units, 1 ), 0xFFFF, out );
        }
        else
        {
            char* const endOfPairs = PutPairs( units, begun, out );
            if ( endOfPairs == nullptr )
                break;
            out = endOfPairs;
            next += kStride;
            continue;
        }
        next += 32;
    }
    return TranscodePortably( next + begun, end, out, limit );
}
