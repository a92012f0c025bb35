#include "encoding/EncodingCaster.h"
#include "encoding/NativeUnicode.h"
#include "encoding/StreamTranscoder.h"
#include "encoding/Transcoder.h"
#include "encoding/UStringBuilder.h"
#include "foundation/Ascii.h"
#include "foundation/AutoNullTerminated.h"
#include "foundation/ExceptionPL.h"
#include "foundation/MakeString.h"
#include "foundation/Stringy.h"
#include "streams/ApplyFilter.h"
#include "streams/AsciiCaseFilters.h"
#include "streams/ReadReader.h"
#include "streams/StringHTTPReceiver.h"
#include "tests/faults/AllocationTable.h"
#include "tests/support/ChoppingReader.h"
#include "tests/support/RecordingLineReceiver.h"
#include "tests/support/RecordingMessageReceiver.h"

#include <clocale>
#include <gtest/gtest.h>

using namespace std::string_view_literals;

namespace
{

std::string const kLong( 300, 'x' );
std::string const kText = " " + kLong + ", " + kLong + " ";
ConstData const kData( kText );
ConstData const kPieces[] = { kData, ConstData(), kData };
ConstDataRopeReference const kRope( kPieces, std::end( kPieces ) );

UStringRef<UTF8> const kUTF8( "a text in UTF-8: \xC3\xA9\xF0\x9F\x98\x80"sv );
std::uint16_t const kUTF16Units[40] = { 'a', 0xE9, 'b' };
UStringRef<UTF16> const kUTF16( kUTF16Units, std::end( kUTF16Units ) );
std::uint32_t const kUTF32Units[40] = { 'a', 'b', 'c' };
UStringRef<UTF32> const kUTF32( kUTF32Units, kUTF32Units + 3 );

// The units of a text, each as a number.
template<class Text>

requires requires( Text const& text )
{
    std::to_string( *text.begin() );
}

std::string Show( Text const& text )
{
    std::string units;
    for ( auto const unit : text )
        units += std::to_string( unit ) + ' ';
    return units;
}

std::string Show( std::unique_ptr<UStringBuilder<UTF16>> const& builder )
{
    return Show( *builder ) + "of " + std::to_string( builder->Capacity() );
}

std::string Show( Stringy const& text )
{
    return text.IsNull() ? "null" : text.Text();
}

std::string Show( std::exception const& error )
{
    return error.what();
}

// A text that lies in an array of its own.
Stringy Own()
{
    return Stringy( kText.c_str() );
}

std::unique_ptr<UStringBuilder<UTF16>> Builder()
{
    auto builder = std::make_unique<UStringBuilder<UTF16>>( 40 );
    builder->Start( UTF16() );
    builder->Receive( kUTF16 );
    return builder;
}

std::size_t Split( char const* text )
{
    std::vector<Stringy> fields;
    Stringy::SplitSeparatedStringsIntoArray( text, ',', fields, 9, true );
    return fields.size();
}

// At once and as a stream.
template<class To, class From>
std::string Transcoded( UStringRef<From> text )
{
    UStringBuilder<To> builder( 1 );
    StreamTranscoder<To, From> transcoder( builder );
    transcoder.Start( From() );
    transcoder.Receive( text );
    transcoder.ReceiveEnd();
    return Show( builder ) + Show( Transcoder<To, From>()( text ) );
}

// What is received two bytes at a time.
template<class Receiver>
void Receive( char const* text, Receiver&& receiver )
{
    ChoppingReader reader( text, 2 );
    ReadReader( reader, receiver );
}

std::string Record( char const* text )
{
    EventLog log;
    std::string content;
    Receive( text, RecordingLineReceiver( log ) );
    Receive( text, RecordingMessageReceiver( log ) );
    Receive( text, StringHTTPReceiver( content, 5000 ) );
    return log.Take() + content;
}

} // namespace

TEST( Allocation, Foundation )
{
    Stringy const text = Own(), other( kLong.c_str() );
    ExceptionPL const error( kData );
    FailEachAllocation( {
        TRY( Ascii::RaiseCase( kData ) + Ascii::LowerCase( kData ) ),
        TRY( std::string( AutoNullTerminated( kLong.data(), &kLong.back(), false ).Text() ) ),
        TRY( kData.PositionsOf( "x"sv ) ),
        TRY( kData.Split( "x"sv, true, true ).size() ),
        TRY( MakeString( kData ) + MakeString( kRope ) ),
        TRY( ExceptionPL( kText.c_str() ) ),
        TRY( ExceptionPL( error ) ),
        CHANGE( ExceptionPL( "old" ), it = error ),
        TRY( Stringy( kText.c_str() ) ),
        TRY( Stringy( kData ) ),
        TRY( Stringy( kText.data(), 200 ) + Stringy( kData.begin(), 200 ) ),
        TRY( Stringy( text ) ),
        TRY( Stringy( -1 ) + Stringy( 1u ) + Stringy( ~0ull ) + other ),
        TRY( text + 'c' ),
        TRY( text.Left( 200 ) + text.Right( 200 ) + text.Mid( 3, 200 ) + text.Mid( 3 ) ),
        TRY( text.SubstringAfterLastSeparator( ',' ) ),
        TRY( Own() = other ),
        CHANGE( Own(), it = kLong.c_str() ),
        CHANGE( Own(), it += 'c' ),
        CHANGE( Own(), it += kLong.c_str() ),
        CHANGE( Own(), it += other ),
        CHANGE( Own(), it += kData ),
        CHANGE( Own(), it.TrimLeft() ),
        CHANGE( Own(), it.StripLeadingAndTrailingWhite() ),
        TRY( Split( kText.c_str() ) ),
    } );
}

TEST( Allocation, StreamsAndEncoding )
{
    ASSERT_NE( nullptr, std::setlocale( LC_ALL, "C.UTF-8" ) );
    AutoUString<UTF8> const other( kUTF8 );
    UStringRef<Local8Bit> const local( kUTF8.begin(), kUTF8.end() );
    FailEachAllocation( {
        TRY( ApplyFilter( kData, Ascii::RaiseCase() ) ),
        TRY( Record( "a: b\r\n c\r\n\r\nbody\n" ) ),
        TRY( AutoUString<UTF16>( kUTF16 ) ),
        TRY( AutoUString<UTF8>( other ) ),
        TRY( MakeUString( kUTF16.begin(), kUTF16.end(), UTF16() ) ),
        CHANGE( AutoUString<UTF8>( UStringRef<UTF8>( "old" ) ), it = other ),
        TRY( Transcoded<UTF32>( kUTF8 ) ),
        TRY( Transcoded<UTF8>( kUTF16 ) ),
        TRY( ( Transcoder<Local8Bit, UTF8>()( kUTF8 ) ) ),
        TRY( ( EncodingCaster<std::string, UStringRef<UTF8>>::Cast( kUTF8 ) ) ),
        TRY( MacintoshPlatform::FromNativeUnicode( kUTF32 ) ),
        TRY( MacintoshPlatform::ToNativeUnicode( local ) ),
        CHANGE( Builder(), it->Start( UTF16() ) ),
        CHANGE( Builder(), it->Receive( kUTF16 ) ),
    } );
    std::setlocale( LC_ALL, "C" );
}
