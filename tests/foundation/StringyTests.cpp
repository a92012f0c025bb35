#include "foundation/MakeString.h"
#include "foundation/Stringy.h"
#include "foundation/StringyLengthTooLong.h"
#include "foundation/TrimAsciiWhitespace.h"
#include "tests/support/AllocationFailure.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <compare>
#include <cstdint>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <sys/mman.h>
#include <tuple>
#include <utility>
#include <vector>

using namespace std::string_view_literals;
using std::string_view;

// The linker sends the program's calls of malloc here; operator new comes by with the size it was
// asked for.
extern "C"
{
    std::size_t gLastSizeAskedFor = 0;
    void* __real_malloc( std::size_t size );
    void* __wrap_malloc( std::size_t size );

    void* __wrap_malloc( std::size_t size )
    {
        gLastSizeAskedFor = size;
        return __real_malloc( size );
    }
}

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

bool IsInline( Stringy const& text )
{
    auto const* const object = reinterpret_cast<char const*>( &text );
    return std::less_equal<>()( object, text.Text() ) &&
           std::less<>()( text.Text(), object + sizeof text );
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
    Stringy const null, empty( "" ), a( "a" ), abc( "abc" ), fields( "a:b: \t c\n" );
    auto const lower = []( Stringy& text ) { text.MakeLower(); };
    auto const upper = []( Stringy& text ) { text.MakeUpper(); };
    unsigned char const byte = 'a';
    ConstData const none;
    auto const trim = []( Stringy& text ) { text.TrimLeft(); };
    auto const strip = []( Stringy& text ) { text.StripLeadingAndTrailingWhite(); };
    std::tuple<char const*, Stringy, char const*> const rows[] = { { "default", null, kNull },
        { "null pointer", Stringy( kNull ), kNull }, { "empty text", empty, "" },
        { "empty range", Stringy( ""sv ), kNull }, { "null range", Stringy( none ), kNull },
        { "no chars", Stringy( "a", 0 ), kNull }, { "no bytes", Stringy( &byte, 0 ), kNull },
        { "a byte", Stringy( &byte, 1 ), "a" }, { "copy of null", Stringy( null ), kNull },
        { "copy of empty", Stringy( empty ), "" }, { "int", Stringy( INT32_MIN ), "-2147483648" },
        { "zero", Stringy( 0 ), "0" }, { "unsigned", Stringy( 4294967295u ), "4294967295" },
        { "unsigned long long", Stringy( ~0ull ), "18446744073709551615" },
        { "= null", Stringy( a ) = null, kNull }, { "= empty", Stringy( a ) = empty, kNull },
        { "= null pointer", Stringy( a ) = kNull, kNull },
        { "= empty text", Stringy( a ) = "", "" },
        { "empty = itself", After( empty, [&]( auto& s ) { s = *&s; } ), "" },
        { "null += zero", Stringy( null ) += '\0', kNull },
        { "null += char", Stringy( null ) += 'b', "b" },
        { "null += null pointer", Stringy( null ) += kNull, kNull },
        { "null += empty text", Stringy( null ) += "", kNull },
        { "null += empty", Stringy( null ) += empty, kNull },
        { "null += range", Stringy( null ) += none, kNull },
        { "empty += null", Stringy( empty ) += null, "" }, { "null + null", null + null, kNull },
        { "empty + null", empty + null, "" }, { "a + b", a + "b" + 'c', "abc" },
        { "left of null", null.Left( 1 ), kNull }, { "left of empty", empty.Left( 1 ), kNull },
        { "left none", abc.Left( 0 ), kNull }, { "left negative", abc.Left( -1 ), kNull },
        { "right none", abc.Right( 0 ), kNull }, { "right negative", abc.Right( -5 ), kNull },
        { "right least", abc.Right( INT32_MIN ), kNull }, { "mid none", abc.Mid( 1, 0 ), kNull },
        { "mid negative", abc.Mid( 1, -1 ), kNull }, { "mid beyond", abc.Mid( 10, 3 ), kNull },
        { "mid from beyond", abc.Mid( 10 ), kNull }, { "mid from end", abc.Mid( 3 ), kNull },
        { "mid to the end", abc.Mid( 1, INT32_MAX ), "bc" },
        { "mid early", abc.Mid( -5, 2 ), "ab" }, { "mid from least", abc.Mid( INT32_MIN ), "abc" },
        { "last field", fields.SubstringAfterLastSeparator( ':' ), "c" },
        { "white last", Stringy( "a: " ).SubstringAfterLastSeparator( ':' ), kNull },
        { "no separator", abc.SubstringAfterLastSeparator( ':' ), kNull },
        { "lower", After( "[aZ\xC4\xFF{", lower ), "[az\xC4\xFF{" },
        { "upper", After( "[aZ\xE4\xFF{", upper ), "[AZ\xE4\xFF{" },
        { "lower empty", After( empty, lower ), "" }, { "upper null", After( null, upper ), kNull },
        { "trimmed null", After( null, trim ), kNull },
        { "trimmed empty", After( empty, trim ), "" },
        { "trimmed white", After( " \t\r\n", trim ), kNull },
        { "trimmed x", After( "x ", trim ), "x " }, { "trimmed", After( " \n x ", trim ), "x " },
        { "stripped null", After( null, strip ), kNull },
        { "stripped empty", After( empty, strip ), kNull },
        { "stripped white", After( " \t\r\n", strip ), kNull },
        { "stripped", After( "\r\n\va\xA0\f \t", strip ), "\va\xA0\f" } };
    for ( auto const& [name, actual, expected] : rows )
    {
        SCOPED_TRACE( name );
        Expect( actual, expected );
    }
}

TEST( Stringy, KeepsShortTextsInsideAndLongOnesInExactlyTheirSize )
{
    using Maker = std::function<void( Stringy&, char const* )>;
    std::tuple<char const*, std::uint32_t, Maker> const rows[] = {
        { "= text", 129, []( auto& s, auto t ) { s = t; } },
        { "= Stringy", 129, []( auto& s, auto t ) { s = Stringy( t ); } },
        { "range", 129, []( auto& s, auto t ) { s = Stringy( ConstData( t ) ); } },
        { "null += range", 129, []( auto& s, auto t ) { s += ConstData( t ); } },
        { "null += text", 128, []( auto& s, auto t ) { s += t; } },
        { "null += Stringy", 128, []( auto& s, auto t ) { s += Stringy( t ); } },
        { "empty += text", 129, []( auto& s, auto t ) { ( s = "" ) += t; } },
        { "copy of what null got", 129, []( auto& s, auto t ) { s = Stringy() + Stringy( t ); } },
        { "null += chars", 129,
            []( auto& s, auto t )
            { std::ranges::for_each( string_view( t ), [&]( char c ) { s += c; } ); } },
        { "a += text", 129, []( auto& s, auto t ) { ( s = "a" ) += t + 1; } },
        { "a += Stringy", 129, []( auto& s, auto t ) { ( s = "a" ) += Stringy( t + 1 ); } },
        { "trimmed", 129, []( auto& s, auto t ) { ( s = Stringy( " " ) + t ).TrimLeft(); } },
        { "stripped", 129, []( auto& s, auto t ) {
             ( s = Stringy( " " ) + t + '\n' ).StripLeadingAndTrailingWhite();
         } } };
    for ( auto const& [name, firstHeapSize, make] : rows )
        for ( std::uint32_t const size : { 2u, 3u, 126u, 127u, 128u, 129u, 130u, 131u, 1000u } )
        {
            SCOPED_TRACE( testing::Message() << name << ", size " << size );
            std::string const text( size - 1, 'a' );
            long const before = LiveAllocations();
            {
                Stringy string;
                make( string, text.c_str() );
                std::size_t const askedFor = gLastSizeAskedFor;
                bool const isOnHeap = LiveAllocations() == before + 1;
                EXPECT_EQ( isOnHeap, size >= firstHeapSize );
                EXPECT_EQ( IsInline( string ), !isOnHeap );
                EXPECT_EQ( isOnHeap ? askedFor : size, size );
                Expect( string, text.c_str() );
                EXPECT_EQ( IsInline( Stringy( string ) ), size <= 128 );
            }
            EXPECT_EQ( LiveAllocations(), before );
        }
}

TEST( Stringy, FollowsAStandardStringThroughRandomChanges )
{
    std::mt19937 random( 1 );
    Stringy string;
    std::string model, added;
    int a = 0, b = 0;
    std::size_t start = 0, count = 0; // a and b cut to what there is
    std::function<void()> const changes[] = { [&]
        { string = string.Left( b ), model.resize( count ); },
        [&] { string = string.Right( b ), model.erase( 0, model.size() - count ); },
        [&] { string = string.Mid( a, b ), model = model.substr( start, count ); },
        [&] { string = string.Mid( a ), model.erase( 0, start ); },
        [&] { string = string.IsNull() ? kNull : string.Text() + start, model.erase( 0, start ); },
        [&] { string.TrimLeft(), model.erase( 0, model.find_first_not_of( " \t\r\n" ) ); },
        [&] { string.Replace( 'a', 'b' ), std::ranges::replace( model, 'a', 'b' ); },
        [&] { string += added.c_str(), model += added; },
        [&] { string += Stringy( ConstData( added ) ), model += added; },
        [&] { string += ConstData( added ), model += added; }, [&] { string += 'x', model += 'x'; },
        [&] { string += string, model += std::string( model ); },
        [&]
        {
            string.StripLeadingAndTrailingWhite();
            model = MakeString( TrimAsciiWhitespace( ConstData( model ) ) );
        } };
    for ( int step = 0; step < 20000; ++step )
    {
        string_view const alphabet = "ab \tZ\xC4";
        added.assign( random() % 60, alphabet[random() % alphabet.size()] );
        a = static_cast<int>( random() % 300 ) - 20;
        b = static_cast<int>( random() % 300 );
        start = std::min( model.size(), std::size_t( std::max( a, 0 ) ) );
        count = std::min( model.size(), std::size_t( b ) );
        auto const change = random() % ( model.size() > 400 ? 7 : std::size( changes ) );
        SCOPED_TRACE( testing::Message() << "step " << step << ", change " << change );
        changes[change]();
        ASSERT_EQ( MakeString( string ), model );
        ASSERT_EQ( string.IsNull() ? '\0' : string.Text()[model.size()], '\0' );
        ASSERT_TRUE( string.IsNull() || string.Size() == 128 ||
                     IsInline( string ) == ( string.Size() < 128 ) );
        ASSERT_EQ( string.FindFromRight( 'b' ), static_cast<int>( model.rfind( 'b' ) ) );
        ASSERT_EQ( string.Find( ' ' ), static_cast<int>( model.find( ' ' ) ) );
    }
}

TEST( Stringy, Compares )
{
    std::tuple<Stringy, Stringy, int, int> const rows[] = { { kNull, kNull, 0, 0 },
        { "", kNull, 0, 1 }, { "", "", 0, 0 }, { "a", kNull, 1, 1 }, { "a", "", 1, 1 },
        { "a", "a", 0, 0 }, { "ab", "a", 1, 1 }, { "a", "A", 1, 0 }, { "_", "a", -1, 1 },
        { "\xE9", "z", 1, 1 }, { "\xE9", "\xC9", 1, 1 }, { Stringy( "a\0b"sv ), "a", 0, 1 } };
    auto const answers = []( auto const& a, auto const& b ) {
        return std::vector<bool>{ a == b, a != b, ( a < b ), a <= b, ( a > b ), a >= b };
    };
    for ( auto const& [x, y, compared, withoutCase] : rows )
        for ( int const sign : { 1, -1 } )
        {
            Stringy const& a = sign == 1 ? x : y;
            Stringy const& b = sign == 1 ? y : x;
            SCOPED_TRACE( testing::Message() << MakeString( a ) << " / " << MakeString( b ) );
            EXPECT_EQ( a.Compare( b ) <=> 0, sign * compared <=> 0 );
            EXPECT_EQ( a.CompareNoCase( b ) <=> 0, sign * withoutCase <=> 0 );
            EXPECT_EQ( a.EqualIgnoringCase( b ), withoutCase == 0 && !a.IsNull() );
            EXPECT_EQ( answers( a, b ), answers( sign * compared, 0 ) );
            EXPECT_EQ( answers( a, b.Text() ), answers( a, b ) );
            EXPECT_EQ( answers( a.Text(), b ), answers( a, b ) );
        }
    EXPECT_EQ( Stringy().Compare( "z" ), -1 );
    EXPECT_EQ( Stringy( "z" ).Compare( "" ), 1 );
    EXPECT_EQ( Stringy( "" ).CompareNoCase( Stringy() ), 1 );
}

TEST( Stringy, FindsReplacesAndIndexes )
{
    Stringy const abc( "abc" ), null;
    std::tuple<Stringy, char const*, bool, bool> const prefixes[] = { { abc, kNull, true, true },
        { abc, "", true, true }, { abc, "ab", true, true }, { abc, "aB", false, true },
        { abc, "abc", true, true }, { abc, "abcd", false, false }, { abc, "b", false, false },
        { null, kNull, true, true }, { null, "", true, true }, { null, "a", false, false } };
    for ( auto const& [text, prefix, startsWith, startsIgnoringCase] : prefixes )
    {
        SCOPED_TRACE( MakeString( Stringy( prefix ) ) );
        EXPECT_EQ( text.StartsWith( prefix ), startsWith );
        EXPECT_EQ( text.StartsWithIgnoringCase( prefix ), startsIgnoringCase );
        EXPECT_EQ( text.StartsWithIgnoringCase( Stringy( prefix ) ), startsIgnoringCase );
    }
    EXPECT_EQ( abc.Find( '\0' ), -1 );
    EXPECT_EQ( null.Find( 'a' ), -1 );
    EXPECT_EQ( null.FindFromRight( '\0' ), -1 );
    EXPECT_TRUE( abc.Contains( "bc" ) && abc.Contains( "" ) && null.Contains( kNull ) );
    EXPECT_FALSE( abc.Contains( "d" ) || null.Contains( "" ) || abc.Contains( kNull ) );
    EXPECT_EQ( Stringy().Replace( '\0', 'a' ) + Stringy( "" ).Replace( '\0', 'a' ), 0u );
    EXPECT_EQ( Stringy( "abca" ).Replace( 'a', 'b' ), 2u );

    Stringy shortened( "a\xE9z" ); // assigning "a" leaves the z where it is, behind the terminator
    EXPECT_EQ( shortened[1], static_cast<signed char>( 0xE9 ) );
    shortened = "a";
    EXPECT_EQ( std::make_tuple( shortened[0], shortened[1], shortened[2], shortened[3] ),
        std::make_tuple( 'a', 0, 'z', 0 ) );
    EXPECT_EQ( null[0], 0 );
    Stringy withZero( "a\0b"sv );
    withZero = withZero.Text(); // its own text is no other text, so it is not read up to the zero
    EXPECT_EQ( withZero.Size(), 4u );
}

TEST( Stringy, SplitsIntoFields )
{
    using Fields = std::vector<char const*>;
    std::tuple<char const*, char, unsigned int, bool, Fields> const rows[] = {
        { "a,,b,", ',', 99, false, { "a", kNull, "b", kNull } },
        { "a,,b,", ',', 2, false, { "a", kNull } }, { "a", ',', 1, false, { "a" } },
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

TEST( Stringy, KeepsItsTextWhenAChangeThrows )
{
    std::string const longText( 300, 'x' );
    Stringy const other( longText.c_str() );
    std::tuple<char const*, bool, std::function<void( Stringy& )>> const rows[] = {
        { "= Stringy", false, [&]( auto& s ) { s = other; } },
        { "= text", true, [&]( auto& s ) { s = longText.c_str(); } },
        { "+= char", true, [&]( auto& s ) { s += 'a'; } },
        { "+= text", true, [&]( auto& s ) { s += "a"; } },
        { "+= Stringy", true, [&]( auto& s ) { s += other; } },
        { "+= range", true, [&]( auto& s ) { s += ConstData( longText ); } },
        { "trim", true, [&]( auto& s ) { s.TrimLeft(); } },
        { "strip", true, [&]( auto& s ) { s.StripLeadingAndTrailingWhite(); } } };
    std::string const before = " " + longText;
    for ( auto const& [name, keepsText, change] : rows )
    {
        SCOPED_TRACE( name );
        Stringy string( before.c_str() );
        {
            AllocationFailure const failure( 1 );
            EXPECT_THROW( change( string ), std::bad_alloc );
        }
        Expect( string, keepsText ? before.c_str() : kNull );
    }
    auto const splitAndAdd = [&]
    {
        std::vector<Stringy> fields;
        Stringy::SplitSeparatedStringsIntoArray( longText.c_str(), ',', fields, 9, false );
        Stringy const sum = fields[0] + other;
    };
    EXPECT_EQ( FailEachAllocation( splitAndAdd ), 5 );
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
