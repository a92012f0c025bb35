#include "foundation/MakeAsciiNumeral.h"
#include "foundation/MakeString.h"
#include "foundation/Numeral.h"
#include "foundation/NumeralErrors.h"
#include "foundation/ReadAsciiNumeral.h"
#include "tests/support/AllocationFailure.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

using namespace std::string_view_literals;

namespace
{

/// One kind of numeral: how it is read and, if there is a maker, made.
template<typename Integer>
struct Kind
{
    Integer ( *read )( ConstData );
    bool ( *tryRead )( ConstData, Integer& );
    std::string ( *make )( Integer );
};

template<auto Maker, typename Integer>
std::string Make( Integer value )
{
    return MakeString( Maker( value ) );
}

std::string const kNone = NotANumeral().what(), kTooLarge = NumeralTooLarge().what();

/// What both readers make of `text`: the number in decimal or the name of the error.
template<typename Integer>
std::string Outcome( Kind<Integer> const& kind, std::string_view text )
{
    Integer value = 77;
    long const before = AllocationCount();
    bool const isRead = kind.tryRead( text, value );
    EXPECT_EQ( AllocationCount(), before );
    try
    {
        EXPECT_EQ( kind.read( text ), value );
        EXPECT_TRUE( isRead );
        return std::to_string( value );
    }
    catch ( DebuggableException const& error )
    {
        EXPECT_FALSE( isRead );
        EXPECT_EQ( value, Integer( 77 ) );
        return error.what();
    }
}

/// `belowSmallest` is "-0" for unsigned numbers, for which it is no numeral.
template<typename Integer>
void Check( Kind<Integer> const& kind, std::string const& belowSmallest,
    std::string const& smallest, std::string const& largest, std::string const& aboveLargest )
{
    using Limits = std::numeric_limits<Integer>;
    bool const isHex = kind.read( "10"sv ) == 16, isSigned = Limits::is_signed;
    std::string const min = std::to_string( Limits::min() ), max = std::to_string( Limits::max() );
    std::pair<std::string, std::string> const rows[] = { { smallest, min }, { largest, max },
        { std::string( 100, '0' ) + largest, max }, { std::string( 1000, '0' ), "0" },
        { belowSmallest, isSigned ? kTooLarge : kNone }, { aboveLargest, kTooLarge },
        { std::string( 1000, '9' ), kTooLarge }, { aboveLargest + "x", kNone },
        { "0aBcDeF", isHex ? "11259375" : kNone }, { "-0", isSigned ? "0" : kNone },
        { "-009", isSigned ? "-9" : kNone } };
    for ( auto const& [text, expected] : rows )
        EXPECT_EQ( Outcome( kind, text ), expected ) << text << " up to " << largest;
    for ( std::string_view const text : { ""sv, "-"sv, "+1"sv, " 1"sv, "1 "sv, "1\0"sv, "0x1"sv,
              "--1"sv, "1-"sv, "1.0"sv, "1,000"sv, "g"sv, "\xB2"sv, std::string_view() } )
        EXPECT_EQ( Outcome( kind, text ), kNone ) << text << " up to " << largest;
    if ( kind.make == nullptr )
        return;
    EXPECT_EQ( kind.make( Limits::min() ), smallest );
    EXPECT_EQ( kind.make( Limits::max() ), largest );
    for ( Integer value = Limits::max(); value != 0; value = static_cast<Integer>( value / 3 ) )
        EXPECT_EQ( kind.read( ConstData( kind.make( value ) ) ), value );
}

} // namespace

TEST( Numerals, AreReadAndMadeUpToTheEdgesOfTheirWidth )
{
    Check<std::uint32_t>(
        { ReadAsciiDecimalNumeral, TryReadAsciiDecimalNumeral, Make<MakeAsciiDecimalNumeral> },
        "-0", "0", "4294967295", "4294967296" );
    Check<std::int32_t>( { ReadAsciiSignedDecimalNumeral, TryReadAsciiSignedDecimalNumeral,
                             Make<MakeAsciiSignedDecimalNumeral> },
        "-2147483649", "-2147483648", "2147483647", "2147483648" );
    Check<std::uint32_t>(
        { ReadAsciiHexNumeral, TryReadAsciiHexNumeral, Make<MakeAsciiHexNumeral> }, "-0", "0",
        "ffffffff", "100000000" );
    Check<std::int32_t>( { ReadAsciiSignedHexNumeral, TryReadAsciiSignedHexNumeral, nullptr },
        "-80000001", "-80000000", "7fffffff", "80000000" );
    Check<std::uint64_t>( { ReadAsciiDecimalNumeral64, TryReadAsciiDecimalNumeral64,
                              Make<MakeAsciiDecimalNumeral64> },
        "-0", "0", "18446744073709551615", "18446744073709551616" );
    Check<std::int64_t>( { ReadAsciiSignedDecimalNumeral64, TryReadAsciiSignedDecimalNumeral64,
                             Make<MakeAsciiSignedDecimalNumeral64> },
        "-9223372036854775809", "-9223372036854775808", "9223372036854775807",
        "9223372036854775808" );
    Check<std::uint64_t>(
        { ReadAsciiHexNumeral64, TryReadAsciiHexNumeral64, Make<MakeAsciiHexNumeral64> }, "-0", "0",
        "ffffffffffffffff", "10000000000000000" );
    Check<std::int64_t>( { ReadAsciiSignedHexNumeral64, TryReadAsciiSignedHexNumeral64, nullptr },
        "-8000000000000001", "-8000000000000000", "7fffffffffffffff", "8000000000000000" );
    EXPECT_EQ( MakeString( Numeral( INT64_MIN ) ), "-9223372036854775808" );
    EXPECT_EQ( MakeString( Numeral( UINT64_MAX ) ), "18446744073709551615" );
}
