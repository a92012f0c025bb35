// Vinodh Gopal et al., "Fast CRC Computation for Generic Polynomials Using PCLMULQDQ Instruction",
// Intel, 2009. Four remainders run side by side.

#include "streams/x86_64/ChecksumPolynomials.h"

namespace
{

constexpr std::ptrdiff_t kBytesPerStep = 64;

constexpr auto kReversed = []
{
    std::array<signed char, 32> places{};
    for ( int i = 0; i < 16; ++i )
    {
        places[static_cast<std::size_t>( i )] = static_cast<signed char>( 15 - i );
        places[static_cast<std::size_t>( i ) + 16] = -1; // gives zero
    }
    return places;
}();

[[gnu::target( "ssse3" )]] inline __m128i LoadVector( void const* from )
{
    return _mm_loadu_si128( static_cast<__m128i const*>( from ) );
}

// 16 bytes as a polynomial.
[[gnu::target( "ssse3" )]] inline __m128i Load( unsigned char const* bytes )
{
    return _mm_shuffle_epi8( LoadVector( bytes ), LoadVector( kReversed.data() ) );
}

// The first `length` of 16 bytes, fewer than all of them.
[[gnu::target( "ssse3" )]] inline __m128i LoadPart( unsigned char const* bytes, std::size_t length )
{
    return _mm_shuffle_epi8( LoadVector( bytes ), LoadVector( kReversed.data() + 16 - length ) );
}

[[gnu::target( "pclmul" )]] inline __m128i MultiplyHalves(
    __m128i vector, std::uint64_t high, std::uint64_t low )
{
    __m128i const factors =
        _mm_set_epi64x( static_cast<long long>( high ), static_cast<long long>( low ) );
    return _mm_xor_si128( _mm_clmulepi64_si128( vector, factors, 0x00 ),
        _mm_clmulepi64_si128( vector, factors, 0x11 ) );
}

// Adds `next`, which comes kDistance bits after `vector`.
template<unsigned kDistance>
[[gnu::target( "pclmul" )]] inline __m128i Fold( __m128i vector, __m128i next )
{
    constexpr std::uint64_t kHigh = PowerOfX( kDistance + 64 );
    constexpr std::uint64_t kLow = PowerOfX( kDistance );
    return _mm_xor_si128( MultiplyHalves( vector, kHigh, kLow ), next );
}

// vector * x^32 mod P.
[[gnu::target( "pclmul,sse4.1" )]] inline std::uint32_t Remainder( __m128i vector )
{
    constexpr std::uint32_t kHigh = PowerOfX( 96 );
    constexpr std::uint32_t kLow = PowerOfX( 32 );
    constexpr std::uint64_t kHighQuotient = Quotient( kHigh, 64 );
    constexpr std::uint64_t kLowQuotient = Quotient( kLow, 64 );
    __m128i const quotient = MultiplyHalves( vector, kHighQuotient, kLowQuotient );
    __m128i const generator = _mm_cvtsi64_si128( static_cast<long long>( kGenerator ) );
    __m128i const remainder = _mm_xor_si128(
        MultiplyHalves( vector, kHigh, kLow ), _mm_clmulepi64_si128( quotient, generator, 0x01 ) );
    return static_cast<std::uint32_t>( _mm_cvtsi128_si32( remainder ) );
}

// The sum of four vectors of which each comes 128 bits after the one before it.
[[gnu::target( "pclmul" )]] inline __m128i Join( __m128i a, __m128i b, __m128i c, __m128i d )
{
    return Fold<384>( a, Fold<256>( b, Fold<128>( c, d ) ) );
}

// A multiple of 64 bytes, and at least that.
[[gnu::target( "pclmul,ssse3,sse4.1" )]] std::uint32_t Long(
    std::uint32_t crc, unsigned char const* bytes, unsigned char const* end )
{
    __m128i a = _mm_xor_si128(
        Load( bytes ), _mm_slli_si128( _mm_cvtsi32_si128( static_cast<int>( crc ) ), 12 ) );
    __m128i b = Load( bytes + 16 );
    __m128i c = Load( bytes + 32 );
    __m128i d = Load( bytes + 48 );
    for ( bytes += kBytesPerStep; bytes != end; bytes += kBytesPerStep )
    {
        a = Fold<512>( a, Load( bytes ) );
        b = Fold<512>( b, Load( bytes + 16 ) );
        c = Fold<512>( c, Load( bytes + 32 ) );
        d = Fold<512>( d, Load( bytes + 48 ) );
    }
    return Remainder( Join( a, b, c, d ) );
}

} // namespace

[[gnu::target( "pclmul,ssse3,sse4.1" )]] std::uint32_t ChecksumByPCLMUL(
    std::uint32_t crc, unsigned char const* bytes, std::size_t length )
{
    if ( length < 16 )
        return ChecksumBySlicing( crc, bytes, length );
    unsigned char const* const end = bytes + length;
    if ( length >= kLongPiece )
    {
        length = ( length - 16 ) % kBytesPerStep + 16;
        crc = Long( crc, bytes, end - length );
        bytes = end - length;
    }
    __m128i vector = LoadPart( bytes, length % 16 );
    bytes += length % 16;
    for ( ; end - bytes >= kBytesPerStep; bytes += kBytesPerStep )
        vector = Join( Fold<128>( vector, Load( bytes ) ), Load( bytes + 16 ), Load( bytes + 32 ),
            Load( bytes + 48 ) );
    for ( ; bytes != end; bytes += 16 )
        vector = Fold<128>( vector, Load( bytes ) );
    return Remainder( vector ) ^ AdvanceRegister( crc, length );
}

bool IsChecksumPCLMULSupported()
{
    __builtin_cpu_init();
    return __builtin_cpu_supports( "pclmul" ) && __builtin_cpu_supports( "ssse3" ) &&
           __builtin_cpu_supports( "sse4.1" );
}
