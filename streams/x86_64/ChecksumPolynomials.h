#pragma once

#include "streams/ChecksumKernels.h"

#include <array>
#include <immintrin.h>

// The bits of a message are the coefficients of a polynomial M over GF(2), the first bit's the
// highest; P is the generator, x^32 and kChecksumPolynomial. `length` bytes make of the register
//
//     ( register * x^(8 * length) + M * x^32 ) mod P.
//
// The second term does not depend on the register, nor on zeros in front of the message.
//
// A product a * b modulo P takes two multiplications, one after the other, if b is known before:
// with c = floor( b * x^64 / P ), exact enough for an a of up to 64 bits, the quotient is
// floor( a * c / x^64 ), and the low bits of a * b + quotient * P remain.

ChecksumFunction ChecksumByAVX512;
ChecksumFunction ChecksumByPCLMUL;
bool IsChecksumAVX512Supported();
bool IsChecksumPCLMULSupported();

/// P.
inline constexpr std::uint64_t kGenerator = 1ull << 32 | kChecksumPolynomial;

/// x^exponent mod P.
constexpr std::uint32_t PowerOfX( unsigned exponent )
{
    std::uint32_t power = 1;
    for ( unsigned i = 0; i < exponent; ++i )
        power = ( power << 1 ) ^ ( ( power >> 31 ) * kChecksumPolynomial );
    return power;
}

/// floor( value * x^exponent / P ).
constexpr std::uint64_t Quotient( std::uint32_t value, unsigned exponent )
{
    std::uint64_t quotient = 0;
    for ( unsigned i = 0; i < exponent; ++i )
    {
        quotient = quotient << 1 | value >> 31;
        value = ( value << 1 ) ^ ( ( value >> 31 ) * kChecksumPolynomial );
    }
    return quotient;
}

/// The longest piece, in bytes, that AdvanceRegister takes, and one more.
inline constexpr std::size_t kLongPiece = 256;

/// Entry n is floor( x^(8 * n) mod P * x^64 / P ).
inline constexpr auto kAdvances = []
{
    std::array<std::uint64_t, kLongPiece> advances{};
    std::uint32_t power = 1;
    for ( std::uint64_t& advance : advances )
    {
        advance = Quotient( power, 64 );
        for ( int bit = 0; bit < 8; ++bit )
            power = ( power << 1 ) ^ ( ( power >> 31 ) * kChecksumPolynomial );
    }
    return advances;
}();

/// What `length` bytes of zero, fewer than kLongPiece, make of the register. Nothing else that a
/// short piece needs waits for the piece before it, so this is all that counts if they come one
/// after the other.
///
/// For the 32 bits of the register, what lies behind the point of a * c / x^64 is exact enough to
/// be multiplied by P, which gives the remainder without a * b.
[[gnu::target( "pclmul,sse4.1" )]] inline std::uint32_t AdvanceRegister(
    std::uint32_t crc, std::size_t length )
{
    __m128i const generator = _mm_cvtsi64_si128( static_cast<long long>( kGenerator ) );
    __m128i const advance = _mm_cvtsi64_si128( static_cast<long long>( kAdvances[length] ) );
    __m128i const fraction =
        _mm_clmulepi64_si128( _mm_cvtsi32_si128( static_cast<int>( crc ) ), advance, 0x00 );
    __m128i const remainder = _mm_clmulepi64_si128( fraction, generator, 0x00 );
    return static_cast<std::uint32_t>( _mm_extract_epi32( remainder, 2 ) );
}
