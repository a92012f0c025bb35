#include "encoding/TranscodingKernels.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

namespace
{

/// How many of the lowest-addressed units of a word have no bit of `mask`, a word of equal units.
template<typename Unit>
std::size_t UnitsWithout( std::uint64_t mask, std::uint64_t word )
{
    int const zeros = std::endian::native == std::endian::little ? std::countr_zero( word & mask )
                                                                 : std::countl_zero( word & mask );
    return static_cast<std::size_t>( zeros ) / ( 8 * sizeof( Unit ) );
}

/// Copies ASCII characters, a word of them at a time, and stops before the first other one or when
/// less than a word is left.
template<typename To, typename From>
Transcoded<To, From> CopyAscii( typename From::Unit const* next, typename From::Unit const* end,
    typename To::Unit* out, typename To::Unit const* limit )
{
    constexpr std::size_t kUnits = sizeof( std::uint64_t ) / sizeof( typename From::Unit );
    constexpr std::uint64_t kNotAscii = kUnits == 8 ? 0x8080808080808080u : 0xFF80FF80FF80FF80u;
    while ( static_cast<std::size_t>( end - next ) >= kUnits && out < limit )
    {
        std::uint64_t word = 0;
        std::memcpy( &word, next, sizeof( word ) );
        for ( std::size_t i = 0; i < kUnits; ++i )
            out[i] = static_cast<typename To::Unit>( next[i] );
        std::size_t const count = UnitsWithout<typename From::Unit>( kNotAscii, word );
        next += count;
        out += count;
        if ( count != kUnits )
            break;
    }
    return { next, out };
}

bool IsAscii( char byte )
{
    return static_cast<unsigned char>( byte ) < 0x80;
}

/// The bits by which a form of several bytes is known, in the order in which bytes lie in memory.
struct Form
{
    consteval Form( std::array<unsigned char, 4> mask, std::array<unsigned char, 4> bits )
        : mMask( std::bit_cast<std::uint32_t>( mask ) ),
          mBits( std::bit_cast<std::uint32_t>( bits ) )
    {
    }

    constexpr bool Fits( std::uint32_t word ) const { return ( word & mMask ) == mBits; }

    std::uint32_t mMask;
    std::uint32_t mBits;
};

constexpr Form kTwo( { 0xE0, 0xC0, 0, 0 }, { 0xC0, 0x80, 0, 0 } );
constexpr Form kThree( { 0xF0, 0xC0, 0xC0, 0 }, { 0xE0, 0x80, 0x80, 0 } );
constexpr Form kFour( { 0xF8, 0xC0, 0xC0, 0xC0 }, { 0xF0, 0x80, 0x80, 0x80 } );

/// The next four bytes, with zeros behind the end.
std::uint32_t Peek( char const* next, char const* end )
{
    std::uint32_t word = 0;
    if ( end - next >= 4 )
        std::memcpy( &word, next, 4 );
    else
        std::memcpy( &word, next, static_cast<std::size_t>( end - next ) );
    return word;
}

/// The bits of one byte of a form.
std::uint32_t Bits( char byte, std::uint32_t mask, unsigned shift )
{
    return ( static_cast<unsigned char>( byte ) & mask ) << shift;
}

std::uint32_t DecodeTwo( char const* form )
{
    return Bits( form[0], 0x1F, 6 ) | Bits( form[1], 0x3F, 0 );
}

std::uint32_t DecodeThree( char const* form )
{
    return Bits( form[0], 0x0F, 12 ) | Bits( form[1], 0x3F, 6 ) | Bits( form[2], 0x3F, 0 );
}

std::uint32_t DecodeFour( char const* form )
{
    return Bits( form[0], 0x07, 18 ) | Bits( form[1], 0x3F, 12 ) | Bits( form[2], 0x3F, 6 ) |
           Bits( form[3], 0x3F, 0 );
}

/// Whether the form of a unit has two bytes.
bool IsOfTwo( std::uint32_t unit )
{
    return unit - 0x80u < 0x800u - 0x80u;
}

/// Whether the form of a unit has three bytes.
bool IsOfThree( std::uint32_t unit )
{
    return unit >= 0x800u && ( unit & 0xF800u ) != 0xD800u;
}

bool IsPair( std::uint32_t first, std::uint32_t second )
{
    return ( first & 0xFC00u ) == 0xD800u && ( second & 0xFC00u ) == 0xDC00u;
}

/// The lowest six bits of `bits >> shift` as a continuation byte.
char Continuation( std::uint32_t bits, unsigned shift )
{
    return static_cast<char>( 0x80u | ( bits >> shift & 0x3Fu ) );
}

char Lead( std::uint32_t mark, std::uint32_t bits )
{
    return static_cast<char>( mark | bits );
}

char* PutTwo( std::uint32_t unit, char* out )
{
    *out++ = Lead( 0xC0, unit >> 6 );
    *out++ = Continuation( unit, 0 );
    return out;
}

char* PutThree( std::uint32_t unit, char* out )
{
    *out++ = Lead( 0xE0, unit >> 12 );
    *out++ = Continuation( unit, 6 );
    *out++ = Continuation( unit, 0 );
    return out;
}

char* PutPair( std::uint32_t high, std::uint32_t low, char* out )
{
    std::uint32_t const codePoint = 0x10000u + ( ( high - 0xD800u ) << 10 ) + ( low - 0xDC00u );
    *out++ = Lead( 0xF0, codePoint >> 18 );
    *out++ = Continuation( codePoint, 12 );
    *out++ = Continuation( codePoint, 6 );
    *out++ = Continuation( codePoint, 0 );
    return out;
}

} // namespace

// Words of ASCII are tried only after two such characters in a row: texts that separate words of
// another script by spaces would lose by it. Characters of two and of three bytes come in runs.

Transcoded<UTF32, UTF8> TranscodePortably(
    UTF8::Unit const* next, UTF8::Unit const* end, UTF32::Unit* out, UTF32::Unit const* limit )
{
    while ( next != end && out < limit )
    {
        if ( IsAscii( *next ) )
        {
            *out++ = static_cast<unsigned char>( *next++ );
            if ( next != end && IsAscii( *next ) )
            {
                auto const [rest, place] = CopyAscii<UTF32, UTF8>( next, end, out, limit );
                next = rest;
                out = place;
            }
            continue;
        }
        std::uint32_t word = Peek( next, end );
        if ( kTwo.Fits( word ) )
            do
            {
                *out++ = DecodeTwo( next );
                next += 2;
                word = Peek( next, end );
            } while ( kTwo.Fits( word ) && out < limit );
        else if ( kThree.Fits( word ) )
            do
            {
                *out++ = DecodeThree( next );
                next += 3;
                word = Peek( next, end );
            } while ( kThree.Fits( word ) && out < limit );
        else if ( kFour.Fits( word ) )
        {
            *out++ = DecodeFour( next );
            next += 4;
        }
        else
            break;
    }
    return { next, out };
}

Transcoded<UTF8, UTF16> TranscodePortably(
    UTF16::Unit const* next, UTF16::Unit const* end, UTF8::Unit* out, UTF8::Unit const* limit )
{
    while ( next != end && out < limit )
    {
        std::uint32_t unit = *next;
        if ( unit < 0x80 )
        {
            *out++ = static_cast<char>( unit );
            if ( ++next == end || out >= limit )
                break;
            unit = *next;
            if ( unit < 0x80 )
            {
                auto const [rest, place] = CopyAscii<UTF8, UTF16>( next, end, out, limit );
                next = rest;
                out = place;
                continue;
            }
        }
        if ( IsOfTwo( unit ) )
            do
            {
                out = PutTwo( unit, out );
                unit = ++next != end ? *next : 0u;
            } while ( IsOfTwo( unit ) && out < limit );
        else if ( IsOfThree( unit ) )
            do
            {
                out = PutThree( unit, out );
                unit = ++next != end ? *next : 0u;
            } while ( IsOfThree( unit ) && out < limit );
        else if ( end - next >= 2 && IsPair( unit, next[1] ) )
        {
            out = PutPair( unit, next[1], out );
            next += 2;
        }
        else
            break;
    }
    return { next, out };
}
