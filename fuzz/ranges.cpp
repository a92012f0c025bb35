// Byte ranges and cursors against std::string_view: every question about two ranges, with every
// search kernel of the machine, and a rope that is copied into too little or enough room.

#include "foundation/AutoNullTerminated.h"
#include "foundation/ConstDataOfCapacity.h"
#include "foundation/MakeString.h"
#include "foundation/SearchKernels.h"
#include "foundation/TrimAsciiWhitespace.h"
#include "fuzz/FuzzInput.h"

#include <string>

using std::string_view;

namespace
{

string_view View( ConstData data )
{
    return { reinterpret_cast<char const*>( data.begin() ), data.Length() };
}

string_view Trimmed( string_view text, bool alsoBehind )
{
    constexpr string_view kWhite = "\t\n\r ";
    text.remove_prefix( std::min( text.find_first_not_of( kWhite ), text.size() ) );
    return alsoBehind ? text.substr( 0, text.find_last_not_of( kWhite ) + 1 ) : text;
}

int ExpectedComparison( string_view a, string_view b )
{
    std::size_t i = 0;
    while ( i < a.size() && i < b.size() && a[i] == b[i] )
        ++i;
    if ( i < a.size() && i < b.size() )
        return static_cast<unsigned char>( a[i] ) - static_cast<unsigned char>( b[i] );
    return ( a.size() > b.size() ) - ( a.size() < b.size() );
}

void Compare( string_view a, string_view b )
{
    int const expected = ExpectedComparison( a, b );
    Require( Compare( ConstData( a ), ConstData( b ) ) == expected, "Compare" );
    Require( ( ConstData( a ) == ConstData( b ) ) == ( expected == 0 ), "==" );
    Require( ( ConstData( a ) < ConstData( b ) ) == ( expected < 0 ), "<" );
    std::string const reversedA( a.rbegin(), a.rend() ), reversedB( b.rbegin(), b.rend() );
    Require( CompareReversed( a, b ) == ExpectedComparison( reversedA, reversedB ), "reversed" );
    Require( ConstData( a ).StartsWith( b ) == a.starts_with( b ), "StartsWith" );
    Require( ConstData( a ).EndsWith( b ) == a.ends_with( b ), "EndsWith" );
    Require( View( TrimAsciiWhitespace( a ) ) == Trimmed( a, true ), "trimmed" );
    Require( View( TrimLeadingAsciiWhitespace( a ) ) == Trimmed( a, false ), "trimmed in front" );
}

void Find( string_view text, string_view needle )
{
    ConstData const range( text );
    int const expected = needle.empty() ? -1 : static_cast<int>( text.find( needle ) );
    Require( range.PositionOf( ConstData( needle ) ) == expected, "PositionOf" );
    Require( range.Contains( ConstData( needle ) ) == ( text.find( needle ) != text.npos ), "in" );
    char const byte = needle.empty() ? '\0' : needle[0];
    auto const place = static_cast<int>( text.find( byte ) );
    Require( range.PositionOf( static_cast<unsigned char>( byte ) ) == place, "PositionOf a byte" );
    Require( range.Contains( static_cast<unsigned char>( byte ) ) == ( place >= 0 ), "byte" );
    if ( needle.empty() || needle.size() > text.size() )
        return;
    auto* const found = expected < 0 ? nullptr : range.begin() + expected;
    Require( SearchPortably( range, needle ) == found, "SearchPortably" );
    for ( auto const& kernel : SearchKernels() )
        if ( kernel.isSupported() && needle.size() <= kLongestKernelNeedle )
            Require( kernel.function( range, needle ) == found, kernel.name );
}

void Split( string_view text, string_view separator, bool trim, bool keepEmpty )
{
    std::vector<std::uint32_t> positions;
    std::vector<string_view> expected;
    bool const isWhole = separator.empty() || separator.size() > text.size();
    std::size_t start = 0;
    for ( std::size_t at; !isWhole && ( at = text.find( separator, start ) ) != text.npos; )
    {
        positions.push_back( static_cast<std::uint32_t>( at ) );
        expected.push_back( text.substr( start, at - start ) );
        start = at + separator.size();
    }
    expected.push_back( text.substr( start ) );
    for ( auto& piece : expected )
        piece = trim ? Trimmed( piece, true ) : piece;
    if ( !keepEmpty && !isWhole )
        std::erase( expected, string_view() );

    Require( ConstData( text ).PositionsOf( separator ) == positions, "PositionsOf" );
    auto const pieces = ConstData( text ).Split( separator, trim, keepEmpty );
    Require( std::ranges::equal( pieces, expected, {}, View ), "Split" );
}

void Copy( string_view text, string_view lengths, std::size_t room )
{
    std::vector<ConstData> rope;
    string_view rest = text;
    for ( char const length : lengths )
    {
        rope.push_back( rest.substr( 0, static_cast<unsigned char>( length ) ) );
        rest.remove_prefix( rope.back().Length() );
    }
    rope.push_back( rest );
    ConstDataRopeReference const pieces( rope.data(), rope.data() + rope.size() );
    Require( TotalLength( pieces ) == text.size() && MakeString( pieces ) == text, "a rope" );

    string_view const fitting = text.substr( 0, room );
    std::vector<unsigned char> bytes( room );
    Data const all( bytes.data(), bytes.data() + room );
    auto const isRight = [&]( unsigned char const* end ) {
        return View( { bytes.data(), end } ) == fitting;
    };
    Require( isRight( ( all << pieces ).begin() ), "a rope into a range" );
    std::ranges::fill( bytes, 0 );
    Require( View( ConstData( text ) >> all ) == text.substr( fitting.size() ), "what is left" );
    Require( isRight( bytes.data() + fitting.size() ), "a range into another" );
    std::ranges::fill( bytes, 0 );
    Buffer to( all );
    for ( ConstData const piece : rope )
    {
        std::uint32_t const filled = to.Filled().Length();
        ConstBuffer from( piece );
        to << from;
        Require( from.Consumed().Length() == to.Filled().Length() - filled, "what was consumed" );
        Require( from.IsEmpty() || to.IsFull(), "room or bytes are left" );
    }
    Require( isRight( to.Next() ), "cursors" );

    AutoNullTerminated<char> const copy( text.data(), text.data() + text.size(), false );
    Require( string_view( copy.Text(), text.size() + 1 ) == std::string( text ) + '\0', "a zero" );
    try
    {
        Require( View( ConstDataOfCapacity<21>( pieces ) ) == text && text.size() <= 21, "held" );
    }
    catch ( ConstDataCapacityExceeded const& )
    {
        Require( text.size() > 21, "not held" );
    }
}

} // namespace

int LLVMFuzzerTestOneInput( std::uint8_t const* data, std::size_t size )
{
    FuzzInput input( data, size );
    unsigned const choices = input.Take<std::uint8_t>();
    string_view const lengths = input.TakeText( input.TakeUpTo( 7 ) );
    std::size_t const needleLength = input.TakeUpTo( 80 );
    std::size_t const needleStart = input.Take<std::uint8_t>();
    // The needle comes before the text or is cut out of it, perhaps with another last byte.
    bool const isCut = ( choices & 1 ) != 0;
    string_view const before = isCut ? string_view() : input.TakeText( needleLength );
    std::vector<char> const text = ExactCopy( input.TakeText( 300 ) );
    string_view const all( text.data(), text.size() );
    std::vector<char> needle = ExactCopy( before );
    if ( isCut && needleStart < all.size() )
        needle = ExactCopy( all.substr( needleStart, needleLength ) );
    if ( isCut && ( choices & 2 ) != 0 && !needle.empty() )
        needle.back() ^= 1;
    string_view const needed( needle.data(), needle.size() );

    Compare( all, needed );
    Compare( needed, all.substr( 0, needleStart ) );
    Find( all, needed );
    Split( all, needed, ( choices & 4 ) != 0, ( choices & 8 ) != 0 );
    Copy( all, lengths, needleStart );
    return 0;
}
