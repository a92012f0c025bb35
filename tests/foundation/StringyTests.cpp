#include "foundation/MakeString.h"
#include "foundation/Stringy.h"
#include "foundation/StringyLengthTooLong.h"
#include "tests/support/AllocationFailure.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <string>
#include <sys/mman.h>
#include <tuple>

using namespace std::string_view_literals;
using std::string_view;

namespace
{

constexpr char const* kNull = nullptr;

/// Expects the text, null for a null pointer, and Size() to go with it.
void Expect( Stringy const& actual, char const* expected )
{
    ASSERT_EQ( actual.IsNull(), expected == nullptr );
    EXPECT_EQ( actual.IsNull(), actual.Size() == 0 );
    if ( expected == nullptr )
        return;
    EXPECT_STREQ( actual.Text(), expected );
    EXPECT_EQ( actual.Size(), std::strlen( expected ) + 1 );
}

template<typename Change>
Stringy After( Stringy text, Change change )
{
    change( text );
    return text;
}

} // namespace

TEST( Stringy, GivesATextNullOrEmptyInTheWayOfEachOperation )
{
    Stringy const null, empty( "" ), abc( "abc" ), fields( "a:b: \t c\n" );
    auto const lower = []( Stringy& text ) { text.MakeLower(); };
    auto const upper = []( Stringy& text ) { text.MakeUpper(); };
    auto const trim = []( Stringy& text ) { text.TrimLeft(); };
    auto const strip = []( Stringy& text ) { text.StripLeadingAndTrailingWhite(); };
    std::tuple<char const*, Stringy, char const*> const rows[] = { { "default", null, kNull },
        { "null pointer", Stringy( kNull ), kNull }, { "empty text", empty, "" },
        { "empty range", Stringy( ""sv ), kNull }, { "copy of empty", Stringy( empty ), "" },
        { "int", Stringy( INT32_MIN ), "-2147483648" },
        { "unsigned", Stringy( 4294967295u ), "4294967295" },
        { "unsigned long long", Stringy( ~0ull ), "18446744073709551615" },
        { "= null", Stringy( abc ) = null, kNull }, { "= empty", Stringy( abc ) = empty, kNull },
        { "= null pointer", Stringy( abc ) = kNull, kNull },
        { "= empty text", Stringy( abc ) = "", "" },
        { "empty = itself", After( empty, []( Stringy& s ) { s = *&s; } ), "" },
        { "null += zero", Stringy( null ) += '\0', kNull },
        { "null += null pointer", Stringy( null ) += kNull, kNull },
        { "null += empty text", Stringy( null ) += "", kNull },
        { "null += empty", Stringy( null ) += empty, kNull },
        { "null += empty range", Stringy( null ) += ConstData(), kNull },
        { "empty + null", empty + null, "" }, { "a + b", Stringy( "a" ) + "b" + 'c', "abc" },
        { "= own tail", After( abc, []( Stringy& s ) { s = s.Text() + 1; } ), "bc" },
        { "left", abc.Left( 2 ), "ab" }, { "right", abc.Right( 2 ), "bc" },
        { "mid", abc.Mid( 1, 1 ), "b" }, { "left of empty", empty.Left( 1 ), kNull },
        { "left negative", abc.Left( -1 ), kNull },
        { "right least", abc.Right( INT32_MIN ), kNull }, { "mid beyond", abc.Mid( 10, 3 ), kNull },
        { "mid to the end", abc.Mid( 1, INT32_MAX ), "bc" },
        { "mid from least", abc.Mid( INT32_MIN ), "abc" },
        { "last field", fields.SubstringAfterLastSeparator( ':' ), "c" },
        { "white last", Stringy( "a: " ).SubstringAfterLastSeparator( ':' ), kNull },
        { "no separator", abc.SubstringAfterLastSeparator( ':' ), kNull },
        { "lower", After( "[aZ\xC4\xFF{", lower ), "[az\xC4\xFF{" },
        { "upper", After( "[aZ\xE4\xFF{", upper ), "[AZ\xE4\xFF{" },
        { "trimmed empty", After( empty, trim ), "" },
        { "trimmed white", After( " \t\r\n", trim ), kNull },
        { "stripped empty", After( empty, strip ), kNull },
        { "stripped white", After( " \t\r\n", strip ), kNull },
        { "stripped", After( "\r\n\va\xA0\f \t", strip ), "\va\xA0\f" } };
    for ( auto const& [name, actual, expected] : rows )
    {
        SCOPED_TRACE( name );
        Expect( actual, expected );
    }
}

TEST( Stringy, KeepsShortTextsInside )
{
    using Maker = std::function<void( Stringy&, char const* )>;
    std::tuple<char const*, std::uint32_t, Maker> const rows[] = {
        { "= text", 129, []( auto& s, auto t ) { s = t; } },
        { "null += range", 129, []( auto& s, auto t ) { s += ConstData( t ); } },
        { "null += text", 128, []( auto& s, auto t ) { s += t; } },
        { "null += Stringy", 128, []( auto& s, auto t ) { s += Stringy( t ); } },
        { "empty += text", 129, []( auto& s, auto t ) { ( s = "" ) += t; } },
        { "a += Stringy", 129, []( auto& s, auto t ) { ( s = "a" ) += Stringy( t + 1 ); } },
        { "null += chars", 129, []( auto& s, auto t ) {
             std::ranges::for_each( string_view( t ), [&]( char c ) { s += c; } );
         } } };
    for ( auto const& [name, firstHeapSize, make] : rows )
        for ( std::uint32_t const size : { 2u, 127u, 128u, 129u, 1000u } )
        {
            SCOPED_TRACE( testing::Message() << name << ", size " << size );
            std::string const text( size - 1, 'a' );
            Stringy string;
            long const before = LiveAllocations();
            make( string, text.c_str() );
            EXPECT_EQ( LiveAllocations() - before, size >= firstHeapSize );
            Expect( string, text.c_str() );
        }
}

TEST( Stringy, Compares )
{
    std::tuple<Stringy, Stringy, int, int> const rows[] = { { kNull, kNull, 0, 0 },
        { "", kNull, 0, 1 }, { "", "", 0, 0 }, { "z", kNull, 1, 1 }, { "z", "", 1, 1 },
        { "ab", "a", 1, 1 }, { "a", "A", 1, 0 }, { "_", "a", -1, 1 }, { "\xE9", "\xC9", 1, 1 },
        { Stringy( "a\0b"sv ), "a", 0, 1 } };
    auto const signOf = []( int number ) { return ( number > 0 ) - ( number < 0 ); };
    for ( auto const& [a, b, compared, withoutCase] : rows )
    {
        SCOPED_TRACE( testing::Message() << MakeString( a ) << " / " << MakeString( b ) );
        EXPECT_EQ( signOf( a.Compare( b ) ), compared );
        EXPECT_EQ( signOf( b.Compare( a ) ), -compared );
        EXPECT_EQ( signOf( a.CompareNoCase( b ) ), withoutCase );
        EXPECT_EQ( signOf( b.CompareNoCase( a ) ), -withoutCase );
        EXPECT_EQ( a.EqualIgnoringCase( b ), withoutCase == 0 && !a.IsNull() );
        EXPECT_EQ( a == b.Text(), compared == 0 );
        EXPECT_EQ( a.Text() < b, compared < 0 );
    }
    EXPECT_EQ( Stringy( "z" ).Compare( "" ), 1 );
    EXPECT_EQ( Stringy( "z" ).CompareNoCase( Stringy() ), 1 );
}

TEST( Stringy, FindsReplacesAndIndexes )
{
    Stringy const abc( "abc" ), null;
    std::tuple<Stringy, char const*, bool, bool> const prefixes[] = { { abc, kNull, true, true },
        { abc, "", true, true }, { abc, "aB", false, true }, { abc, "abc", true, true },
        { abc, "abcd", false, false }, { abc, "b", false, false }, { null, kNull, true, true },
        { null, "", true, true }, { null, "a", false, false } };
    for ( auto const& [text, prefix, startsWith, startsIgnoringCase] : prefixes )
    {
        SCOPED_TRACE( MakeString( Stringy( prefix ) ) );
        EXPECT_EQ( text.StartsWith( prefix ), startsWith );
        EXPECT_EQ( text.StartsWithIgnoringCase( prefix ), startsIgnoringCase );
        EXPECT_EQ( text.StartsWithIgnoringCase( Stringy( prefix ) ), startsIgnoringCase );
    }
    EXPECT_EQ( abc.Find( '\0' ) + null.FindFromRight( '\0' ), -2 );
    EXPECT_EQ( Stringy( "abcb" ).Find( 'b' ), 1 );
    EXPECT_TRUE( abc.Contains( "bc" ) && abc.Contains( "" ) && null.Contains( kNull ) );
    EXPECT_FALSE( abc.Contains( "d" ) || null.Contains( "" ) || abc.Contains( kNull ) );
    EXPECT_EQ( Stringy().Replace( '\0', 'a' ) + Stringy( "" ).Replace( '\0', 'a' ), 0u );
    EXPECT_EQ( Stringy( "abca" ).Replace( 'a', 'b' ), 2u );

    Stringy shortened( "a\xE9z" ); // assigning "a" leaves the z where it is, behind the terminator
    EXPECT_EQ( shortened[1], static_cast<signed char>( 0xE9 ) );
    shortened = "a";
    EXPECT_EQ( shortened[2], 'z' );
    EXPECT_EQ( shortened[3] + null[0], 0 );
    Stringy withZero( "a\0b"sv );
    withZero = withZero.Text(); // its own text is no other text, so it is not read up to the zero
    EXPECT_EQ( withZero.Size(), 4u );
}

TEST( Stringy, SplitsIntoFields )
{
    using Fields = std::vector<char const*>;
    std::tuple<char const*, char, unsigned int, bool, Fields> const rows[] = {
        { "a,,b,", ',', 99, false, { "a", kNull, "b", kNull } },
        { "a,,b,", ',', 2, false, { "a", kNull } },
        { " a , \t,b", ',', 99, true, { "a", kNull, "b" } },
        { " ,", ',', 9, false, { " ", kNull } }, { ",", ',', 9, true, { kNull, kNull } },
        { "a,b", ',', 0, false, {} }, { "", ',', 9, false, {} }, { kNull, ',', 9, false, {} },
        { "a\0\0bc\0d", '\0', 3, false, { "a", kNull, "bc" } } };
    for ( auto const& [text, separator, maxCount, strip, expected] : rows )
    {
        SCOPED_TRACE( text != nullptr ? text : "null" );
        std::vector<Stringy> fields = { "before" };
        ASSERT_EQ(
            Stringy::SplitSeparatedStringsIntoArray( text, separator, fields, maxCount, strip ),
            expected.size() );
        ASSERT_EQ( fields.size(), expected.size() + 1 );
        for ( std::size_t i = 0; i < expected.size(); ++i )
            Expect( fields[i + 1], expected[i] );
    }
}

TEST( Stringy, AppendsItself )
{
    std::string const text = " " + std::string( 300, 'x' );
    Stringy doubled( text.c_str() );
    Expect( doubled += doubled, ( text + text ).c_str() );
}

TEST( Stringy, RefusesLengthsBeyond32Bits )
{
    std::size_t const size = UINT32_MAX;
    void* const bytes = mmap( nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0 );
    auto const* const begin = static_cast<unsigned char const*>( bytes );
    ConstData const tooLong( begin, begin + size ), tooLongBehindA( begin, begin + size - 1 );
    Stringy a( "a" );
    long const before = AllocationCount();
    EXPECT_THROW( Stringy( "", UINT32_MAX ), StringyLengthTooLong );
    EXPECT_THROW( Stringy( begin, UINT32_MAX ), StringyLengthTooLong );
    EXPECT_THROW( Stringy{ tooLong }, StringyLengthTooLong );
    EXPECT_THROW( a += tooLong, StringyLengthTooLong );
    EXPECT_THROW( a += tooLongBehindA, StringyLengthTooLong );
    EXPECT_EQ( AllocationCount(), before );
    Expect( a, "a" );
    munmap( bytes, size );
}
