#include "foundation/AutoNullTerminated.h"
#include "foundation/Buffer.h"
#include "foundation/ConstDataOfCapacity.h"
#include "foundation/MakeString.h"
#include "foundation/SearchKernels.h"
#include "foundation/TrimAsciiWhitespace.h"
#include "tests/support/AllocationFailure.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <sys/mman.h>
#include <tuple>

using namespace std::string_view_literals;
using std::string_view;

TEST( ConstData, ComparesForwardsAndBackwards )
{
    std::tuple<string_view, string_view, int, int> const rows[] = { { string_view(), "", 0, 0 },
        { "abc", "abc", 0, 0 }, { "abc", "abd", -1, -1 }, { "ab", "abc", -1, -1 },
        { "", "a", -1, -1 }, { "abc", "ab", 1, 1 }, { "bc", "c", -1, 1 }, { "b", "ab", 1, -1 },
        { "xc", "bc", 'x' - 'b', 'x' - 'b' }, { "\xFF", "\0"sv, 255, 255 } };
    for ( auto const& [a, b, forwards, backwards] : rows )
    {
        SCOPED_TRACE( testing::Message() << a << " / " << b );
        EXPECT_EQ( Compare( a, b ), forwards );
        EXPECT_EQ( CompareReversed( a, b ), backwards );
        EXPECT_EQ( ConstData( a ) < ConstData( b ), forwards < 0 );
        EXPECT_EQ( ConstData( a ) == ConstData( b ), forwards == 0 );
    }
    std::size_t const size = std::size_t( 1 ) << 32; // one byte more than a range holds
    void* const bytes = mmap( nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0 );
    string_view const text( static_cast<char*>( bytes ), size );
    EXPECT_THROW( ConstData{ text }, std::length_error );
    munmap( bytes, size );
}

TEST( ConstData, FindsNeedles )
{
    using Offsets = std::vector<std::uint32_t>;
    std::tuple<string_view, string_view, Offsets, bool, bool> const rows[] = {
        { "aaaaa", "aa", { 0, 2 }, true, true }, { "abc", "abcd", {}, false, false },
        { "abc", "", {}, true, true }, { "", "", {}, true, true }, { "", "a", {}, false, false },
        { "ab\xE9\0b\0"sv, "\0"sv, { 3, 5 }, false, true }, { "b\xE9", "\xE9", { 1 }, false, true },
        { "abcdef", "ce", {}, false, false } };
    for ( auto const& [text, needle, positions, starts, ends] : rows )
    {
        ConstData const range( text );
        unsigned char const byte = needle.empty() ? 'x' : static_cast<unsigned char>( needle[0] );
        SCOPED_TRACE( testing::Message() << text << " / " << needle );
        int const first = positions.empty() ? -1 : static_cast<int>( positions[0] );
        EXPECT_EQ( range.PositionOf( ConstData( needle ) ), first );
        EXPECT_EQ( range.PositionsOf( needle ), positions );
        EXPECT_EQ( range.Contains( ConstData( needle ) ), needle.empty() || first >= 0 );
        EXPECT_EQ( range.StartsWith( needle ), starts );
        EXPECT_EQ( range.EndsWith( needle ), ends );
        EXPECT_EQ( range.PositionOf( byte ), static_cast<int>( text.find( char( byte ) ) ) );
        EXPECT_EQ( range.Contains( byte ), text.find( char( byte ) ) != text.npos );
    }
}

TEST( ConstData, FindsNeedlesInTheSamePlacesWithEveryKernel )
{
    std::mt19937 random( 1 );
    for ( unsigned round = 0; round < 30000; ++round )
    {
        // Few different bytes: much almost matches. The range lies between others like it, and in
        // a block of its own, in which no byte but its own may be read.
        std::size_t const length = 1 + random() % ( round % 8 == 0 ? 700 : 301 );
        std::vector<unsigned char> bytes( length );
        for ( unsigned char& b : bytes )
            b = random() % ( round % 7 + 2 ) == 0 ? 'b' : 'a';
        std::size_t const before = random() % std::min<std::size_t>( length, 64 );
        ConstData const range( bytes.data() + before, bytes.data() + length );
        std::size_t const most = std::min( range.Length(), kLongestKernelNeedle + 16 );
        std::size_t const size =
            1 + random() % ( round % 3 == 0 ? std::min<std::size_t>( most, 4 ) : most );
        std::size_t const last = range.Length() - size;
        unsigned char const* const from =
            range.begin() + ( round % 4 < 2 ? last : random() % ( last + 1 ) );
        std::vector<unsigned char> needle( from, from + size );
        if ( round % 2 != 0 )
            needle[random() % size] ^= 3;
        auto* const first = std::search( range.begin(), range.end(), needle.begin(), needle.end() );
        ConstData const needed( needle.data(), needle.data() + size );
        ASSERT_EQ( range.PositionOf( needed ), first == range.end() ? -1 : first - range.begin() );
        for ( Kernel<SearchFunction> const& kernel : SearchKernels() )
        {
            if ( !kernel.isSupported() || size > kLongestKernelNeedle )
                continue;
            ASSERT_EQ( kernel.function( range, needed ), first == range.end() ? nullptr : first )
                << kernel.name << " " << range.Length() << " " << size;
        }
    }
}

// The pages that hold nothing are not there: only the one that is written to takes memory.
TEST( ConstData, ThrowsWhenANeedleIsBeyondWhatAnOffsetCanSay )
{
    std::size_t const size = UINT32_MAX;
    void* const memory = mmap(
        nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0 );
    ASSERT_NE( memory, MAP_FAILED );
    auto* const begin = static_cast<unsigned char*>( memory );
    std::size_t const place = std::size_t( INT32_MAX ) + 1;
    begin[place] = begin[place + 1] = 'a';
    ConstData const range( begin, begin + size );
    EXPECT_THROW( range.PositionOf( "aa"sv ), std::length_error );
    EXPECT_EQ( ConstData( begin + 1, begin + size ).PositionOf( 'a' ), INT32_MAX );
    munmap( memory, size );
}

TEST( ConstData, SplitsAndTrims )
{
    using Pieces = std::vector<std::string>;
    std::tuple<string_view, string_view, bool, Pieces, Pieces> const rows[] = {
        { ",a,,b,", ",", false, { "", "a", "", "b", "" }, { "a", "b" } },
        { " , ", ",", true, { "", "" }, {} }, { " , ", ",", false, { " ", " " }, { " ", " " } },
        { "\t\r\n a , \v\x85 c\f \r\n\t", ",", true, { "a", "\v\x85 c\f" }, { "a", "\v\x85 c\f" } },
        { "a:::b:c", "::", false, { "a", ":b:c" }, { "a", ":b:c" } },
        // One piece, empty or not, when the separator cannot occur at all.
        { " ", ", ", true, { "" }, { "" } }, { " a ", "", true, { "a" }, { "a" } },
        { "", ",", false, { "" }, { "" } } };
    for ( auto const& [text, separator, trim, keepingEmpty, notKeepingEmpty] : rows )
        for ( bool const keepEmpty : { true, false } )
        {
            Pieces pieces;
            for ( ConstData piece : ConstData( text ).Split( separator, trim, keepEmpty ) )
                pieces.push_back( MakeString( piece ) );
            EXPECT_EQ( pieces, keepEmpty ? keepingEmpty : notKeepingEmpty ) << text;
        }
    ConstData const text( " \t "sv );
    EXPECT_EQ( TrimAsciiWhitespace( text ).begin(), text.end() );
    EXPECT_EQ( MakeString( TrimLeadingAsciiWhitespace( "\n\r a "sv ) ), "a " );
}

TEST( Buffer, TakesWhatThereIsRoomForAndIsUnchangedByFailures )
{
    ConstData const text( "abcdef"sv );
    ConstData const pieces[] = { "ab"sv, ConstData(), "cde"sv, "f"sv };
    ConstDataRopeReference const rope( pieces, std::end( pieces ) );
    for ( std::uint32_t room = 0; room <= 8; ++room )
    {
        unsigned char storage[4][9] = {};
        auto const range = [&]( int i ) { return Data( storage[i], storage[i] + room ); };
        std::uint32_t const count = std::min( room, 6u );
        ConstBuffer from( text );
        Buffer fromCursor( range( 0 ) ), fromRope( range( 1 ) );
        EXPECT_EQ( ( fromCursor << from ).Filled().Length(), count );
        EXPECT_EQ( from.Consumed().Length(), count );
        EXPECT_EQ( std::pair( from.Start(), from.End() ), std::pair( text.begin(), text.end() ) );
        EXPECT_EQ( fromCursor.Start(), storage[0] );
        EXPECT_EQ( ( fromRope << rope ).Filled().Length(), count );
        EXPECT_EQ( ( range( 2 ) << rope ).begin(), storage[2] + count );
        EXPECT_EQ( ( text >> range( 3 ) ).begin(), text.begin() + count );
        for ( auto const& bytes : storage )
            EXPECT_EQ( reinterpret_cast<char const*>( bytes ), "abcdef"sv.substr( 0, room ) );
    }
    unsigned char bytes[] = "abcdef"; // an overlapping copy goes byte by byte from the front
    ConstData( bytes, bytes + 4 ) >> Data( bytes + 2, bytes + 6 );
    EXPECT_STREQ( reinterpret_cast<char*>( bytes ), "ababab" );

    unsigned char storage[] = "....";
    Buffer buffer( Data( storage, storage + 2 ) );
    buffer.Put( 'a' );
    EXPECT_THROW( buffer.Advance( 2 ), DataOverflow );
    buffer.Put( 'b' );
    EXPECT_THROW( buffer.Put( 'c' ), DataOverflow );
    EXPECT_STREQ( reinterpret_cast<char*>( storage ), "ab.." );
    ConstBuffer from( buffer.Filled() );
    EXPECT_THROW( from.Advance( 3 ), DataOverflow );
    EXPECT_EQ( MakeString( from.Unread() ), "ab" );
}

TEST( OwnedTexts, AllocateOnceOrNotAtAllAndEndInAZero )
{
    std::string const longText( 100, 'a' );
    ConstData const pieces[] = { ConstData( longText ), ConstData(), "1234567890"sv, "\0"sv };
    long const before = AllocationCount();
    std::string const text = MakeString( ConstDataRopeReference( pieces, pieces + 4 ) );
    EXPECT_EQ( AllocationCount(), before + 1 );
    EXPECT_EQ( text, longText + std::string( "1234567890\0"sv ) );
    EXPECT_EQ( MakeString( ConstDataOfCapacity<10>( pieces[2] ) ), "1234567890" );
    EXPECT_THROW( ConstDataOfCapacity<10>( "12345678901"sv ), ConstDataCapacityExceeded );
    ConstDataOfCapacity<21> const joined( ConstDataRopeReference( pieces + 1, pieces + 4 ) );
    EXPECT_EQ(
        string_view( reinterpret_cast<char const*>( joined.begin() ), 12 ), "1234567890\0\0"sv );

    char const abc[] = "abc";
    AutoNullTerminated<char> const inPlace( abc, abc + 3, true ), copy( abc, abc + 2, false ),
        empty( nullptr, nullptr, false );
    EXPECT_EQ( inPlace.Text(), abc );
    EXPECT_EQ( std::string( copy.Text() ) + empty.Text(), "ab" );
    EXPECT_EQ( copy.Allocated(), 3u );
    EXPECT_EQ( inPlace.Allocated() + empty.Allocated(), 0u );
}
