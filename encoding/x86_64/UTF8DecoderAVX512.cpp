// After Robert Clausecker and Daniel Lemire, "Transcoding Unicode Characters with AVX-512
// Instructions", Software: Practice and Experience 53 (2023): a block's bytes are sorted out by
// masks and compressed, and each character's bytes gathered into a lane of their own.

#include "encoding/x86_64/TranscodingAVX512.h"

#include <bit>
#include <cstdint>
#include <immintrin.h>

namespace
{

/// A character that starts later in a block might end behind it.
constexpr int kStride = 61;
constexpr std::uint64_t kOwnBytes = ( std::uint64_t( 1 ) << kStride ) - 1;

/// What the bytes of a block are, a bit for each.
struct Block
{
    std::uint64_t continuations;
    std::uint64_t leads;     ///< of two bytes or more, among its own bytes
    std::uint64_t longLeads; ///< of three bytes or more
    std::uint64_t expected;  ///< where continuations must be
    bool isWellFormed;
};

[[gnu::target( "avx512bw" )]] std::uint64_t OwnBytesFrom( unsigned char lowest, __m512i bytes )
{
    return kOwnBytes &
           _mm512_cmpge_epu8_mask( bytes, _mm512_set1_epi8( static_cast<char>( lowest ) ) );
}

/// `begun` are the bytes at the front that belong to a character of the block before.
[[gnu::target( "avx512bw" )]] Block Classify( __m512i bytes, std::uint64_t begun )
{
    std::uint64_t const two = OwnBytesFrom( 0xC0, bytes );
    std::uint64_t const three = OwnBytesFrom( 0xE0, bytes );
    std::uint64_t const four = OwnBytesFrom( 0xF0, bytes );
    std::uint64_t const continuations =
        _mm512_cmplt_epi8_mask( bytes, _mm512_set1_epi8( static_cast<char>( 0xC0 ) ) );
    std::uint64_t const expected = begun | two << 1 | three << 2 | four << 3;
    std::uint64_t const wrong = ( continuations & ~expected & kOwnBytes ) |
                                ( expected & ~continuations ) | OwnBytesFrom( 0xF8, bytes );
    return { continuations, two, three, expected, wrong == 0 };
}

[[gnu::target( "avx512bw,avx512vbmi2" )]] void PutAscii( __m512i bytes, UTF32::Unit* out )
{
    _mm512_storeu_si512( out, _mm512_cvtepu8_epi32( _mm512_castsi512_si128( bytes ) ) );
    _mm512_storeu_si512( out + 16, _mm512_cvtepu8_epi32( _mm512_extracti32x4_epi32( bytes, 1 ) ) );
    _mm512_storeu_si512( out + 32, _mm512_cvtepu8_epi32( _mm512_extracti32x4_epi32( bytes, 2 ) ) );
    _mm512_storeu_si512( out + 48, _mm512_cvtepu8_epi32( _mm512_extracti32x4_epi32( bytes, 3 ) ) );
}

/// Joins the bits of 32 lead bytes with those of the bytes that follow them.
[[gnu::target( "avx512bw" )]] void PutJoined( __m256i leads, __m256i lasts, UTF32::Unit* out )
{
    __m512i const units = _mm512_or_si512(
        _mm512_cvtepu8_epi16( lasts ), _mm512_slli_epi16( _mm512_cvtepu8_epi16( leads ), 6 ) );
    _mm512_storeu_si512( out, _mm512_cvtepu16_epi32( _mm512_castsi512_si256( units ) ) );
    _mm512_storeu_si512( out + 16, _mm512_cvtepu16_epi32( _mm512_extracti64x4_epi64( units, 1 ) ) );
}

/// Puts the characters of one and, where there are `leads`, two bytes that begin at `starts`.
[[gnu::target( "avx512bw,avx512vbmi2" )]] void PutShort(
    __m512i bytes, std::uint64_t leads, std::uint64_t starts, UTF32::Unit* out )
{
    __m512i const nextQuarters = _mm512_alignr_epi32( bytes, bytes, 4 );
    __m512i const following = _mm512_alignr_epi8( nextQuarters, bytes, 1 );
    __m512i const bitsOfLast = _mm512_and_si512( following, _mm512_set1_epi8( 0x3F ) );
    __m512i const bitsOfLead = _mm512_and_si512( bytes, _mm512_maskz_set1_epi8( leads, 0x1F ) );
    __m512i const lasts =
        _mm512_maskz_compress_epi8( starts, _mm512_mask_mov_epi8( bytes, leads, bitsOfLast ) );
    __m512i const firsts = _mm512_maskz_compress_epi8( starts, bitsOfLead );
    PutJoined( _mm512_castsi512_si256( firsts ), _mm512_castsi512_si256( lasts ), out );
    PutJoined(
        _mm512_extracti64x4_epi64( firsts, 1 ), _mm512_extracti64x4_epi64( lasts, 1 ), out + 32 );
}

/// Decodes 16 characters of any length, each in its lane with the lead byte highest. What comes
/// after the bytes of a shorter one does not matter.
[[gnu::target( "avx512bw,avx512vbmi2,avx512cd" )]] __m512i Decode( __m512i characters )
{
    // Both are looked up by the number of one bits at the front of the lead byte.
    static constexpr std::int32_t kShifts[16] = { 18, 0, 12, 6, 0 };
    static constexpr std::int32_t kMasks[16] = { 0x7F, 0, 0x7FF, 0xFFFF, 0x1FFFFF };
    __m512i const inverted = _mm512_xor_si512( characters, _mm512_set1_epi32( -1 ) );
    __m512i const ones = _mm512_lzcnt_epi32( inverted );
    __m512i const groups =
        _mm512_and_si512( characters, _mm512_set1_epi32( static_cast<int>( 0xFF3F3F3F ) ) );
    __m512i const pairs = _mm512_maddubs_epi16( groups, _mm512_set1_epi16( 1 << 14 | 1 ) );
    __m512i const bits = _mm512_madd_epi16( pairs, _mm512_set1_epi32( 1 << 28 | 1 ) );
    __m512i const shifts = _mm512_permutexvar_epi32( ones, _mm512_loadu_si512( kShifts ) );
    __m512i const masks = _mm512_permutexvar_epi32( ones, _mm512_loadu_si512( kMasks ) );
    return _mm512_and_si512( _mm512_srlv_epi32( bits, shifts ), masks );
}

/// Puts the `count` characters that begin at `starts`.
[[gnu::target( "avx512bw,avx512vbmi2,avx512vbmi,avx512cd" )]] void PutAny(
    __m512i bytes, std::uint64_t starts, std::ptrdiff_t count, UTF32::Unit* out )
{
    __m512i const places = _mm512_maskz_compress_epi8(
        starts, _mm512_set_epi64( 0x3F3E3D3C3B3A3938, 0x3736353433323130, 0x2F2E2D2C2B2A2928,
                    0x2726252423222120, 0x1F1E1D1C1B1A1918, 0x1716151413121110, 0x0F0E0D0C0B0A0908,
                    0x0706050403020100 ) );
    __m512i lanes = _mm512_setr_epi32( 0, 0x01010101, 0x02020202, 0x03030303, 0x04040404,
        0x05050505, 0x06060606, 0x07070707, 0x08080808, 0x09090909, 0x0A0A0A0A, 0x0B0B0B0B,
        0x0C0C0C0C, 0x0D0D0D0D, 0x0E0E0E0E, 0x0F0F0F0F );
    for ( std::ptrdiff_t i = 0; i < count; i += 16 )
    {
        __m512i const starting = _mm512_permutexvar_epi8( lanes, places );
        __m512i const indices = _mm512_add_epi8( starting, _mm512_set1_epi32( 0x00010203 ) );
        _mm512_storeu_si512( out + i, Decode( _mm512_permutexvar_epi8( indices, bytes ) ) );
        lanes = _mm512_add_epi8( lanes, _mm512_set1_epi8( 16 ) );
    }
}

} // namespace

[[gnu::target( "avx512bw,avx512vbmi2,avx512vbmi,avx512cd,popcnt" )]] Transcoded<UTF32, UTF8>
TranscodeByAVX512(
    UTF8::Unit const* next, UTF8::Unit const* end, UTF32::Unit* out, UTF32::Unit const* limit )
{
    std::uint64_t begun = 0;
    while ( end - next >= 64 && out < limit )
    {
        __m512i const bytes = _mm512_loadu_si512( next );
        if ( _mm512_movepi8_mask( bytes ) == 0 )
        {
            PutAscii( bytes, out );
            next += 64;
            out += 64;
            continue;
        }
        Block const block = Classify( bytes, begun );
        if ( !block.isWellFormed )
            break;
        std::uint64_t const starts = kOwnBytes & ~block.continuations;
        if ( block.longLeads == 0 )
            PutShort( bytes, block.leads, starts, out );
        else
            PutAny( bytes, starts, std::popcount( starts ), out );
        out += std::popcount( starts );
        next += kStride;
        begun = block.expected >> kStride;
    }
    return TranscodePortably( next + std::popcount( begun ), end, out, limit );
}
