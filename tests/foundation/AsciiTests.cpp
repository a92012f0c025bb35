#include "foundation/Ascii.h"
#include "foundation/DataOverflow.h"

#include <gtest/gtest.h>

#include <cctype>
#include <tuple>

using namespace std::string_view_literals;
using std::string_view;

// The C library classifies in the "C" locale here, where bytes from 128 on belong to no class.

TEST( AsciiSets, HoldTheirMembersAndNoOtherByte )
{
    using namespace Ascii;
    using Class = int ( * )( int );
    Class const isWhite = []( int c ) -> int { return c == 9 || c == 10 || c == 13 || c == 32; };
    Class const isLetter_ = []( int c ) -> int { return std::isalpha( c ) || c == '_'; };
    Class const isAlphanumeric_ = []( int c ) -> int { return std::isalnum( c ) || c == '_'; };
    Class const isNoGraph = []( int c ) -> int { return !std::isgraph( c ); };
    Class const isHigh = []( int c ) -> int { return !isascii( c ); };
    std::tuple<char const*, std::uint32_t const*, Class> const rows[] = {
        { "Uppercase", UppercaseAlphabet(), std::isupper }, { "Low", Low(), isascii },
        { "Lowercase", LowercaseAlphabet(), std::islower }, { "High", High(), isHigh },
        { "Alphabetic", Alphabetic(), std::isalpha }, { "Numeric", Numeric(), std::isdigit },
        { "Alphabetic_", Alphabetic_(), isLetter_ }, { "HexDigits", HexDigits(), std::isxdigit },
        { "Alphanumeric", Alphanumeric(), std::isalnum }, { "Control", Control(), std::iscntrl },
        { "Alphanumeric_", Alphanumeric_(), isAlphanumeric_ }, { "White", WhiteSpace(), isWhite },
        { "Punctuation", Punctuation(), std::ispunct }, { "Plain", PlainText(), std::isprint },
        { "Linear", LinearWhiteSpace(), std::isblank }, { "Printable", Printable(), std::isgraph },
        { "Unprintable", Unprintable(), isNoGraph } };
    for ( auto const& [name, set, isMember] : rows )
        for ( int c = 0; c < 256; ++c )
            EXPECT_EQ( IsMember( set, static_cast<unsigned char>( c ) ), isMember( c ) != 0 )
                << name << " " << c;
}

TEST( AsciiCase, MapsTheLettersAndNothingElse )
{
    EXPECT_TRUE( Ascii::CaseTablesAreCorrect() );
    for ( int c = 0; c < 256; ++c )
    {
        std::string const text{ '1', static_cast<char>( c ) };
        std::string const upper{ '1', static_cast<char>( std::toupper( c ) ) };
        std::string const lower{ '1', static_cast<char>( std::tolower( c ) ) };
        EXPECT_EQ( Ascii::RaiseCase( ConstData( text ) ), upper ) << c;
        EXPECT_EQ( Ascii::LowerCase( ConstData( text ) ), lower ) << c;
        EXPECT_EQ( Ascii::IsLowercase( ConstData( text ) ), lower == text ) << c;
        EXPECT_EQ( Ascii::IsUppercase( ConstData( text ) ), upper == text ) << c;
    }
    unsigned char bytes[] = "....";
    EXPECT_THROW( Ascii::RaiseCase( "abc"sv, Data( bytes, bytes + 2 ) ), DataOverflow );
    EXPECT_STREQ( reinterpret_cast<char*>( bytes ), "AB.." );
    Ascii::LowerCase( "XYZ"sv, Data( bytes, bytes + 3 ) );
    EXPECT_STREQ( reinterpret_cast<char*>( bytes ), "xyz." );
}

TEST( AsciiComparison, DecidesBetweenTheLettersAndAtTheEndOnPurpose )
{
    std::tuple<char const*, char const*, int, int, int> const rows[] = { { "", "", 0, 0, 0 },
        { "abC", "ABc", 0, 0, 0 }, { "_", "a", 95 - 65, 95 - 97, 95 - 97 },
        { "abc", "AB", 1, 1, 99 }, { "ab", "ABC", -1, -1, -67 },
        { "\xE9", "\xC9", 0x20, 0x20, 0x20 }, { "a", "\xFF", 65 - 255, 97 - 255, 97 - 255 },
        { "ab", "ab\xFF", -1, -1, 1 } };
    for ( auto const& [a, b, uppercase, lowercase, terminated] : rows )
    {
        string_view const x = a, y = b;
        EXPECT_EQ( Ascii::CompareUppercase( x, y ), uppercase ) << a << " / " << b;
        EXPECT_EQ( Ascii::CompareLowercase( x, y ), lowercase ) << a << " / " << b;
        EXPECT_EQ( Ascii::EqualIgnoringCase( x, y ), lowercase == 0 ) << a << " / " << b;
        EXPECT_EQ( Ascii::CompareLowercase( a, b ), terminated ) << a << " / " << b;
    }
}

TEST( AsciiHexDigits, HaveTheirValuesInBothCases )
{
    for ( unsigned value = 0; value < 16; ++value )
    {
        unsigned char const digit = Ascii::HexDigit( value );
        EXPECT_EQ( digit, "0123456789abcdef"[value] );
        EXPECT_EQ( Ascii::HexDigitValue( digit ), value );
        auto const upper = static_cast<unsigned char>( std::toupper( digit ) );
        EXPECT_EQ( Ascii::HexDigitValue( upper ), value );
    }
}
