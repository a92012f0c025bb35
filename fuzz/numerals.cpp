// Numerals read in both bases and all widths against schoolbook arithmetic, and made against the C
// library's.

#include "foundation/MakeAsciiNumeral.h"
#include "foundation/MakeString.h"
#include "foundation/Numeral.h"
#include "foundation/NumeralErrors.h"
#include "foundation/ReadAsciiNumeral.h"
#include "fuzz/FuzzInput.h"

#include <cinttypes>
#include <limits>
#include <string>

namespace
{

__extension__ typedef __int128 Wide;

constexpr Wide kFarTooLarge = Wide{ 1 } << 70;

// The number that `text` stands for, from where on it is too large for any type kFarTooLarge with
// its sign; false if it is no numeral.
bool ReadBySchoolbook( std::string_view text, int base, bool isSigned, Wide& value )
{
    bool const isNegative = isSigned && text.starts_with( '-' );
    text.remove_prefix( isNegative );
    value = 0;
    for ( char const c : text )
    {
        std::size_t const digit = std::string_view( "0123456789abcdefABCDEF" ).find( c );
        if ( digit == std::string_view::npos || ( base == 10 && digit > 9 ) )
            return false;
        value = value * base + static_cast<int>( digit < 16 ? digit : digit - 6 );
        value = std::min( value, kFarTooLarge );
    }
    value = isNegative ? -value : value;
    return !text.empty();
}

template<class Integer>
void CheckRead( ConstData text, int base, Integer ( *read )( ConstData ),
    bool ( *tryRead )( ConstData, Integer& ), bool mayThrow )
{
    using Limits = std::numeric_limits<Integer>;
    Wide expected = 0;
    bool const isNumeral =
        ReadBySchoolbook( { reinterpret_cast<char const*>( text.begin() ), text.Length() }, base,
            Limits::is_signed, expected );
    bool const fits = isNumeral && expected >= Limits::min() && expected <= Limits::max();
    Integer value = 77;
    Require( tryRead( text, value ) == fits, "whether it is read" );
    Require( value == ( fits ? static_cast<Integer>( expected ) : Integer{ 77 } ), "tried" );
    if ( !fits && !mayThrow )
        return;
    try
    {
        Require( read( text ) == value && fits, "what is read" );
    }
    catch ( NotANumeral const& )
    {
        Require( !isNumeral, "no numeral" );
    }
    catch ( NumeralTooLarge const& )
    {
        Require( isNumeral && !fits, "too large" );
    }
}

// Exceptions take long; an input asks for them.
void CheckReads( std::string_view bytes, bool mayThrow )
{
    std::vector<char> const copy = ExactCopy( bytes );
    ConstData const text( std::string_view( copy.data(), copy.size() ) );
    CheckRead( text, 10, ReadAsciiDecimalNumeral, TryReadAsciiDecimalNumeral, mayThrow );
    CheckRead(
        text, 10, ReadAsciiSignedDecimalNumeral, TryReadAsciiSignedDecimalNumeral, mayThrow );
    CheckRead( text, 16, ReadAsciiHexNumeral, TryReadAsciiHexNumeral, mayThrow );
    CheckRead( text, 16, ReadAsciiSignedHexNumeral, TryReadAsciiSignedHexNumeral, mayThrow );
    CheckRead( text, 10, ReadAsciiDecimalNumeral64, TryReadAsciiDecimalNumeral64, mayThrow );
    CheckRead(
        text, 10, ReadAsciiSignedDecimalNumeral64, TryReadAsciiSignedDecimalNumeral64, mayThrow );
    CheckRead( text, 16, ReadAsciiHexNumeral64, TryReadAsciiHexNumeral64, mayThrow );
    CheckRead( text, 16, ReadAsciiSignedHexNumeral64, TryReadAsciiSignedHexNumeral64, mayThrow );
}

template<class... Arguments>
void CheckMade( ConstData made, char const* format, Arguments... arguments )
{
    char text[32];
    std::snprintf( text, sizeof text, format, arguments... );
    Require( MakeString( made ) == text && *made.end() == 0, format );
}

void CheckMakes( std::uint64_t value )
{
    auto const value32 = static_cast<std::uint32_t>( value );
    auto const signedValue = static_cast<std::int64_t>( value );
    auto const signed32 = static_cast<std::int32_t>( value32 );
    CheckMade( MakeAsciiDecimalNumeral( value32 ), "%" PRIu32, value32 );
    CheckMade( MakeAsciiSignedDecimalNumeral( signed32 ), "%" PRId32, signed32 );
    CheckMade( MakeAsciiHexNumeral( value32 ), "%" PRIx32, value32 );
    CheckMade( MakeAsciiDecimalNumeral64( value ), "%" PRIu64, value );
    CheckMade( MakeAsciiSignedDecimalNumeral64( signedValue ), "%" PRId64, signedValue );
    CheckMade( MakeAsciiHexNumeral64( value ), "%" PRIx64, value );
    CheckMade( Numeral( value ), "%" PRIu64, value );
    CheckMade( Numeral( signedValue ), "%" PRId64, signedValue );
}

} // namespace

int LLVMFuzzerTestOneInput( std::uint8_t const* data, std::size_t size )
{
    FuzzInput input( data, size );
    unsigned const choice = input.Take<std::uint8_t>();
    bool const mayThrow = choice >= 0xF0;
    auto const value = input.Take<std::uint64_t>() >> input.TakeUpTo( 63 );
    CheckMakes( value );
    CheckMakes( 0 - value );
    std::string digits( choice / 4 % 2, '-' );
    if ( choice % 4 == 0 ) // a number near an edge
        digits += std::to_string( value + input.Take<std::uint8_t>() % 4 );
    else if ( choice % 4 == 1 ) // digits, most of them, up to a few more than numbers have
        for ( std::size_t left = input.TakeUpTo( 24 ); left > 0; --left )
            digits += "0123456789abcdefABCDEF999fff00-x"[input.TakeUpTo( 31 )];
    else
        digits += input.TakeRest();
    CheckReads( digits, mayThrow );
    return 0;
}
