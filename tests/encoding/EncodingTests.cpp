#include "encoding/EncodingCaster.h"
#include "encoding/InvalidTextEncoding.h"
#include "encoding/NativeUnicode.h"
#include "encoding/StreamTranscoder.h"
#include "encoding/Transcoder.h"
#include "encoding/UStringBuilder.h"
#include "foundation/MakeString.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/EverySplit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>

using namespace std::string_view_literals;
using namespace MacintoshPlatform;

namespace
{

template<typename E>
using Units = std::vector<typename E::Unit>;

/// Keeps what it receives and a full stop for the end, and how long the longest piece was.
template<typename E>
struct Recorder : UTextReceiver<E>
{
    void Start( E ) override { *this = Recorder(); }

    void Receive( ConstArrayOf<typename E::Unit> units ) override
    {
        mUnits.insert( mUnits.end(), units.begin(), units.end() );
        mLongest = std::max( mLongest, units.Length() );
    }

    void ReceiveEnd() override { mUnits.push_back( '.' ); }

    Units<E> mUnits;
    std::size_t mLongest = 0;
};

template<typename E, typename Text>
Units<E> UnitsOf( Text const& text )
{
    return { text.begin(), text.end() };
}

/// Converts `text` in every split and expects `output` each time: what is received, a '|' before
/// the end of the text, and a '.' where the receiver is ended or a '!' where malformed text throws.
template<typename To, typename From, typename Char, typename OutputChar>
void ExpectConversion(
    std::basic_string_view<Char> text, std::basic_string_view<OutputChar> output )
{
    Units<From> const units = UnitsOf<From>( text );
    ForEverySplit<typename From::Unit>( units,
        [&]( auto const& pieces )
        {
            Recorder<To> recorder;
            StreamTranscoder<To, From> transcoder( recorder );
            try
            {
                transcoder.Start( From() );
                for ( auto const& piece : pieces )
                    transcoder.Receive( { piece.data(), piece.data() + piece.size() } );
                recorder.mUnits.push_back( '|' );
                transcoder.ReceiveEnd();
            }
            catch ( InvalidTextEncoding const& )
            {
                recorder.mUnits.push_back( '!' );
            }
            EXPECT_EQ( recorder.mUnits, UnitsOf<To>( output ) ) << testing::PrintToString( units );
        } );
}

TEST( UTF8Decoder, DecodesTheBitPatternsAndRejectsWhatFitsNone )
{
    auto const expect = ExpectConversion<UTF32, UTF8, char, char32_t>;
    expect( "a\0\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF7\xBF\xBF\xBFz"sv,
        U"a\0\x7F\x80\x7FF\x800\xFFFF\x10000\x1FFFFFz|."sv );
    expect( "\xC0\x80\xF0\x80\x80\x80\xED\xA0\x80"sv, U"\0\0\xD800|."sv ); // overlong, surrogate
    for ( char const* const text : { "a\xC3", "a\xC3zz", "a\xE2\x82", "a\xF0\x9F\x98", "a\x80xy" } )
        expect( text, U"a|!"sv );
    for ( char const* const text :
        { "\x80xyz", "\xC3zzz", "\xE2\x82xy", "\xF0\x9F\x98x", "\xF8\x80\x80\x80" } )
        expect( text, U"!"sv );
}

TEST( UTF8Encoder, PairsSurrogatesAndRejectsLoneOnes )
{
    auto const expect = ExpectConversion<UTF8, UTF16, char16_t, char>;
    expect( u"\0\x7F\x80\x7FF\x800\xD7FF\xE000\xFFFF"sv,
        "\0\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF|."sv );
    expect( u"a\xD800\xDC00\xDBFF\xDFFF\xD83D\xDE00z"sv,
        "a\xF0\x90\x80\x80\xF4\x8F\xBF\xBF\xF0\x9F\x98\x80z|."sv );
    for ( char16_t const* const text : { u"a\xD83D", u"a\xDE00" } )
        expect( text, "a|!"sv );
    for ( char16_t const* const text : { u"\xDE00\xDE00", u"\xD83Dz", u"\xD83D\xDBFF" } )
        expect( text, "!"sv );
}

TEST( StreamTranscoder, PushesLargePiecesAndStartsAfreshAfterAFailure )
{
    std::string const text = std::string( 5000, 'a' ) + "\x80xyz";
    Recorder<UTF32> codePoints;
    StreamTranscoder<UTF32, UTF8> decoder( codePoints );
    for ( int run = 0; run < 2; ++run )
    {
        decoder.Start( UTF8() );
        decoder.Receive( { text.data(), text.data() + 5003 } );
        EXPECT_THROW( decoder.Receive( { text.data(), text.data() + 1 } ), InvalidTextEncoding );
        EXPECT_EQ( codePoints.mLongest, 1024u );
        EXPECT_EQ( codePoints.mUnits, Units<UTF32>( 5000, 'a' ) );
    }
    Units<UTF16> const units( 3000, 0x20AC );
    Recorder<UTF8> bytes;
    StreamTranscoder<UTF8, UTF16>( bytes ).Receive( { units.data(), units.data() + 3000 } );
    EXPECT_EQ( bytes.mLongest, 4095u );
}

TEST( Transcoder, ConvertsWholeTextsWithTwoAllocations )
{
    Units<UTF16> const units( 5000, 0x20AC );
    UStringRef<UTF16> const text( units.data(), units.data() + 5000 );
    AutoUString<UTF8> const utf8 = Transcoder<UTF8, UTF16>()( text );
    EXPECT_EQ( UnitsOf<UTF32>( Transcoder<UTF32, UTF8>()( utf8 ) ), Units<UTF32>( 5000, 0x20AC ) );
    EXPECT_EQ( ( Transcoder<UTF32, UTF8>()( {} ).begin() ), nullptr );
    EXPECT_EQ( FailEachAllocation( [&] { Transcoder<UTF32, UTF8>()( utf8 ); } ), 2 );
    EXPECT_EQ( FailEachAllocation( [&] { Transcoder<UTF8, UTF16>()( text ); } ), 2 );
    EXPECT_THROW(
        ( Transcoder<UTF32, UTF8>()( UStringRef<UTF8>( "a\xE2" ) ) ), InvalidTextEncoding );
    using Caster = EncodingCaster<std::string, UStringRef<UTF8>>;
    EXPECT_EQ( Caster::Cast( UStringRef<UTF8>( "a\0\xFF"sv ) ), "a\0\xFF"sv );
}

TEST( UStringBuilder, GrowsToTheLargerOfNeedAndTwiceItsCapacity )
{
    Units<UTF32> const units( 18, 'a' );
    UStringBuilder<UTF32> builder( 4 );
    builder.Start( UTF32() );
    builder.Receive( { units.data(), units.data() + 4 } );
    EXPECT_EQ( builder.Capacity(), 4u );
    builder.Receive( { units.data(), units.data() + 1 } );
    EXPECT_EQ( builder.Capacity(), 8u );
    ConstArrayOf<UTF32::Unit> const rest( units.data() + 5, units.data() + 18 );
    EXPECT_EQ( FailEachAllocation( [&] { builder.Receive( rest ); } ), 1 );
    EXPECT_EQ( builder.Capacity(), 18u );
    EXPECT_EQ( UnitsOf<UTF32>( builder ), units );
}

TEST( AutoUString, OwnsACopyWithAZeroUnit )
{
    UTF16::Unit const units[] = { 'a', 0xD83D, 'x' };
    AutoUString<UTF16> text = MakeUString( units, units + 2, UTF16() ), copy = text;
    auto const* const block = text.begin();
    EXPECT_EQ( AutoUString<UTF16>( std::move( text ) ).begin(), block );
    EXPECT_EQ( text.begin(), nullptr ); // moved from: the empty text
    copy = static_cast<AutoUString<UTF16> const&>( copy );
    EXPECT_EQ( Units<UTF16>( copy.begin(), copy.end() + 1 ), ( Units<UTF16>{ 'a', 0xD83D, 0 } ) );
    EXPECT_EQ( MakeUString( units, units, UTF16() ).begin(), nullptr );
}

TEST( NativeUnicode, ConvertsInTheLocaleUpToTheFirstZeroUnit )
{
    auto const toLocal = []( std::string_view text )
    {
        auto const local = Transcoder<Local8Bit, UTF8>()( UStringRef<UTF8>( text ) );
        return std::string( local.begin(), local.end() + 1 );
    };
    auto const fromLocal = []( std::string_view text )
    {
        auto const native = ToNativeUnicode( UStringRef<Local8Bit>( text ) );
        return Units<UTF32>( native.begin(), native.end() + 1 );
    };
    ASSERT_NE( std::setlocale( LC_ALL, "C.UTF-8" ), nullptr );
    std::string_view const text = "a\xC3\xA9\xF0\x9F\x98\x80\0b"sv;
    EXPECT_EQ( fromLocal( text ), ( Units<UTF32>{ 'a', 0xE9, 0x1F600, 0 } ) );
    EXPECT_EQ( toLocal( text ), text.substr( 0, 8 ) );
    EXPECT_EQ( toLocal( "" ), "\0"sv );
    EXPECT_EQ( fromLocal( "" ), Units<UTF32>( 1, 0 ) );
    EXPECT_THROW( toLocal( "\xED\xA0\x80" ), WideToMultiByteConvertError );
    EXPECT_THROW( fromLocal( "a\xC3" ), MultiByteToWideConvertError );
    EXPECT_GT( FailEachAllocation( [&] { fromLocal( text ), toLocal( text ); } ), 4 );
    EXPECT_EQ( MakeString( IANAEncodingName( Local8Bit() ) ), "UTF-8" );
    std::setlocale( LC_ALL, "C" );
}

} // namespace
