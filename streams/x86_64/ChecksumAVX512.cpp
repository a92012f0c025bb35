// Vinodh Gopal et al., "Fast CRC Computation for Generic Polynomials Using PCLMULQDQ Instruction",
// Intel, 2009, four lanes at a time.
//
// Instead of swapping the bytes of each lane, which would go through the same port of the processor
// as the multiplications, GFNI reverses the bits of each byte: then the first bit of the message is
// the lowest bit of the first lane. Of two polynomials that are kept reversed in 64 bits each, the
// multiplication makes the reverse, in 128 bits, of their product times x.

#include "streams/x86_64/ChecksumPolynomials.h"

namespace
{

constexpr unsigned kBitsPerVector = 512;
constexpr std::size_t kBytesPerVector = 64;
constexpr std::size_t kBytesPerStep = 4 * kBytesPerVector;
static_assert( kLongPiece >= kBytesPerStep );

// How far ahead the long loop asks for memory; the processor alone fetches too little in advance.
constexpr std::size_t kBytesAhead = 4096;

// In the order in which the multiplication wants it.
constexpr long long Reversed( std::uint64_t value )
{
    std::uint64_t reversed = 0;
    for ( int bit = 0; bit < 64; ++bit )
        reversed = reversed << 1 | ( value >> bit & 1 );
    return static_cast<long long>( reversed );
}

[[gnu::target( "avx512bw,gfni" )]] inline __m512i ReverseBits( __m512i bytes )
{
    return _mm512_gf2p8affine_epi64_epi8(
        bytes, _mm512_set1_epi64( static_cast<long long>( 0x8040201008040201 ) ), 0 );
}

[[gnu::target( "avx512bw,gfni" )]] inline __m512i Load( unsigned char const* bytes )
{
    return ReverseBits( _mm512_loadu_si512( bytes ) );
}

// 1 to 64 bytes, with zeros in front of them.
[[gnu::target( "avx512bw,avx512vbmi,vpclmulqdq,pclmul,gfni" )]] inline __m512i LoadPart(
    unsigned char const* bytes, std::size_t length )
{
    alignas( 64 ) static constexpr auto kPlaces = []
    {
        std::array<unsigned char, 64> places{};
        for ( unsigned i = 0; i < 64; ++i )
            places[i] = static_cast<unsigned char>( i );
        return places;
    }();
    __mmask64 const mask = ~0ull >> ( kBytesPerVector - length );
    __m512i const rotate = _mm512_add_epi8(
        _mm512_load_si512( kPlaces.data() ), _mm512_set1_epi8( static_cast<char>( length ) ) );
    return ReverseBits( _mm512_permutexvar_epi8( rotate, _mm512_maskz_loadu_epi8( mask, bytes ) ) );
}

// Adds `next`, which comes kDistance bits after `vector`. Both powers take one x less, see above.
template<unsigned kDistance>
[[gnu::target( "avx512bw,vpclmulqdq" )]] inline __m512i Fold( __m512i vector, __m512i next )
{
    constexpr long long kFirst = Reversed( PowerOfX( kDistance + 63 ) );
    constexpr long long kSecond = Reversed( PowerOfX( kDistance - 1 ) );
    __m512i const powers = _mm512_broadcast_i32x4( _mm_set_epi64x( kSecond, kFirst ) );
    return _mm512_ternarylogic_epi64( _mm512_clmulepi64_epi128( vector, powers, 0x00 ),
        _mm512_clmulepi64_epi128( vector, powers, 0x11 ), next, 0x96 );
}

// What `make` makes, for each half of a lane, of the power of x that takes it to its place.
template<typename Make>
constexpr std::array<long long, 8> ForEachHalf( Make make )
{
    std::array<long long, 8> factors{};
    for ( unsigned i = 0; i < 8; ++i )
        factors[i] = Reversed( make( PowerOfX( 32 + 64 * ( 7 - i ) ) ) );
    return factors;
}

// vector * x^32 mod P. The factor of each quotient takes one x less, for that of the
// multiplication; powers and P are shifted so that both products have the remainder in the same 32
// bits.
[[gnu::target( "avx512bw,avx512vbmi,vpclmulqdq,pclmul,gfni" )]] inline std::uint32_t Remainder(
    __m512i vector )
{
    alignas( 64 ) static constexpr auto kQuotients =
        ForEachHalf( []( std::uint32_t power ) { return Quotient( power, 63 ); } );
    alignas( 64 ) static constexpr auto kPowers =
        ForEachHalf( []( std::uint32_t power ) { return std::uint64_t{ power } << 31; } );

    __m512i const c = _mm512_load_si512( kQuotients.data() );
    __m512i const b = _mm512_load_si512( kPowers.data() );
    __m512i const quotients = _mm512_xor_si512(
        _mm512_clmulepi64_epi128( vector, c, 0x00 ), _mm512_clmulepi64_epi128( vector, c, 0x11 ) );
    __m512i const products = _mm512_xor_si512(
        _mm512_clmulepi64_epi128( vector, b, 0x00 ), _mm512_clmulepi64_epi128( vector, b, 0x11 ) );
    __m512i const both = _mm512_mask_blend_epi64( 0xAA, quotients, products );
    __m256i const half =
        _mm256_xor_si256( _mm512_castsi512_si256( both ), _mm512_extracti64x4_epi64( both, 1 ) );
    __m128i const sum =
        _mm_xor_si128( _mm256_castsi256_si128( half ), _mm256_extracti128_si256( half, 1 ) );
    __m128i const generator = _mm_cvtsi64_si128( Reversed( kGenerator << 31 ) );
    __m128i const remainder = _mm_xor_si128( sum, _mm_clmulepi64_si128( sum, generator, 0x00 ) );
    __m128i const bytes =
        _mm512_castsi512_si128( ReverseBits( _mm512_castsi128_si512( remainder ) ) );
    return __builtin_bswap32( static_cast<std::uint32_t>( _mm_extract_epi32( bytes, 2 ) ) );
}

// Asks for what a later step will load. That may lie behind the end of the piece, where asking does
// no harm, so the address is only a number.
inline void AskForStepAfter( unsigned char const* bytes )
{
    auto const address = reinterpret_cast<std::uintptr_t>( bytes ) + kBytesAhead;
    for ( std::size_t i = 0; i < kBytesPerStep; i += kBytesPerVector )
        _mm_prefetch( reinterpret_cast<char const*>( address + i ), _MM_HINT_T0 );
}

// A multiple of 64 bytes, at least kBytesPerStep.
[[gnu::target( "avx512bw,avx512vbmi,vpclmulqdq,pclmul,gfni" )]] std::uint32_t Long(
    std::uint32_t crc, unsigned char const* bytes, unsigned char const* end )
{
    auto const first = static_cast<int>( __builtin_bswap32( crc ) );
    __m512i a = ReverseBits( _mm512_xor_si512(
        _mm512_loadu_si512( bytes ), _mm512_zextsi128_si512( _mm_cvtsi32_si128( first ) ) ) );
    __m512i b = Load( bytes + 64 );
    __m512i c = Load( bytes + 128 );
    __m512i d = Load( bytes + 192 );
    for ( bytes += kBytesPerStep; end - bytes >= static_cast<std::ptrdiff_t>( kBytesPerStep );
          bytes += kBytesPerStep )
    {
        AskForStepAfter( bytes );
        a = Fold<4 * kBitsPerVector>( a, Load( bytes ) );
        b = Fold<4 * kBitsPerVector>( b, Load( bytes + 64 ) );
        c = Fold<4 * kBitsPerVector>( c, Load( bytes + 128 ) );
        d = Fold<4 * kBitsPerVector>( d, Load( bytes + 192 ) );
    }
    __m512i vector =
        Fold<3 * kBitsPerVector>( a, Fold<2 * kBitsPerVector>( b, Fold<kBitsPerVector>( c, d ) ) );
    for ( ; bytes != end; bytes += kBytesPerVector )
        vector = Fold<kBitsPerVector>( vector, Load( bytes ) );
    return Remainder( vector );
}

} // namespace

[[gnu::target( "avx512bw,avx512vbmi,vpclmulqdq,pclmul,gfni" )]] std::uint32_t ChecksumByAVX512(
    std::uint32_t crc, unsigned char const* bytes, std::size_t length )
{
    unsigned char const* const end = bytes + length;
    if ( length >= kLongPiece )
    {
        length %= kBytesPerVector;
        crc = Long( crc, bytes, end - length );
        if ( length == 0 )
            return crc;
        bytes = end - length;
    }
    std::size_t const part = ( length - 1 ) % kBytesPerVector + 1;
    __m512i vector = LoadPart( bytes, part );
    for ( bytes += part; bytes != end; bytes += kBytesPerVector )
        vector = Fold<kBitsPerVector>( vector, Load( bytes ) );
    return Remainder( vector ) ^ AdvanceRegister( crc, length );
}

bool IsChecksumAVX512Supported()
{
    __builtin_cpu_init();
    return __builtin_cpu_supports( "avx512bw" ) && __builtin_cpu_supports( "avx512vbmi" ) &&
           __builtin_cpu_supports( "vpclmulqdq" ) && __builtin_cpu_supports( "gfni" ) &&
           __builtin_cpu_supports( "pclmul" );
}
