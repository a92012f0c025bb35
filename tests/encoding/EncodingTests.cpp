#include "encoding/EncodingCaster.h"
#include "encoding/InvalidTextEncoding.h"
#include "encoding/NativeUnicode.h"
#include "encoding/StreamTranscoder.h"
#include "encoding/Transcoder.h"
#include "encoding/TranscodingLoop.h"
#include "encoding/UStringBuilder.h"
#include "foundation/MakeString.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/EverySplit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <clocale>
#include <random>

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

/// Appends the character at the front of some units to `out` and returns its length, or 0.
unsigned ConvertOne( UTF8::Unit const* text, std::size_t count, Units<UTF32>& out )
{
    auto const byte = [text]( unsigned i ) { return static_cast<unsigned char>( text[i] ); };
    unsigned const ones = static_cast<unsigned>( std::countl_one( byte( 0 ) ) );
    unsigned const length = std::max( ones, 1u );
    if ( ones == 1 || ones > 4 || length > count )
        return 0;
    std::uint32_t codePoint = byte( 0 ) & ( 0xFFu >> ones );
    for ( unsigned i = 1; i < length; ++i )
    {
        if ( byte( i ) / 64 != 2 )
            return 0;
        codePoint = codePoint * 64 + byte( i ) % 64;
    }
    out.push_back( codePoint );
    return length;
}

unsigned ConvertOne( UTF16::Unit const* text, std::size_t count, Units<UTF8>& out )
{
    bool const isPair =
        count > 1 && text[0] / 0x400 == 0xD800 / 0x400 && text[1] / 0x400 == 0xDC00 / 0x400;
    if ( text[0] / 0x800 == 0xD800 / 0x800 && !isPair )
        return 0;
    std::uint32_t const c =
        isPair ? 0x10000u + text[0] % 0x400u * 0x400 + text[1] % 0x400u : text[0];
    unsigned const length = c < 0x80 ? 1 : c < 0x800 ? 2 : c < 0x10000 ? 3 : 4;
    for ( unsigned i = length; i-- > 0; )
    {
        std::uint32_t const bits = c >> 6 * i;
        unsigned const lead = length == 1 ? 0 : 0xF00u >> length & 0xFF;
        out.push_back( static_cast<char>( i + 1 == length ? lead | bits : 0x80 | bits % 64 ) );
    }
    return length < 4 ? 1 : 2;
}

/// The pieces that went downstream; an empty one where the stream failed.
template<typename E>
struct Pieces : UTextReceiver<E>
{
    void Receive( ConstArrayOf<typename E::Unit> units ) override
    {
        mPieces.emplace_back( units.begin(), units.end() );
    }

    std::vector<Units<E>> mPieces;
};

/// Does what TranscodePiece does, one character after the other.
template<typename To, std::size_t Size, typename From>
void TranscodePlainly( std::span<typename From::Unit const> units, Units<From>& pending,
    UTextReceiver<To>& downstream )
{
    pending.insert( pending.end(), units.begin(), units.end() );
    auto const* next = pending.data();
    auto const* const end = next + pending.size();
    Units<To> output;
    for ( unsigned length = 1; length != 0; next += length )
    {
        if ( Size - output.size() < To::kLongestCharacter )
        {
            downstream.Receive( { output.data(), output.data() + output.size() } );
            output.clear();
        }
        length =
            next == end ? 0 : ConvertOne( next, static_cast<std::size_t>( end - next ), output );
    }
    if ( end - next >= std::ptrdiff_t( From::kLongestCharacter ) )
        throw InvalidTextEncoding();
    pending.erase( pending.begin(), pending.end() - ( end - next ) );
    if ( !output.empty() )
        downstream.Receive( { output.data(), output.data() + output.size() } );
}

using Random = std::independent_bits_engine<std::mt19937, 32, std::uint32_t>;

/// A text of characters of some lengths, in runs, now and then with a wrong unit.
template<typename E>
Units<E> MakeText( Random& random )
{
    std::size_t const length = random() % 8 == 0 ? random() % 9000 : random() % 301;
    unsigned const shortest = random() % 4, lengths = 1 + random() % ( 4 - shortest );
    Units<E> text;
    for ( std::uint32_t shift = 0; text.size() < length; )
    {
        if ( random() % 8 == 0 )
            shift = ( shortest + random() % lengths ) * 5;
        std::uint32_t const c = random() % ( 0x41u << shift );
        if constexpr ( sizeof( typename E::Unit ) == 2 )
        {
            if ( c >= 0x10000 )
                text.push_back( static_cast<UTF16::Unit>( 0xD800 | c % 0x400 ) );
            text.push_back(
                static_cast<UTF16::Unit>( c < 0x10000 ? c % 0xD800 : 0xDC00 | c % 0x400 ) );
        }
        else
        {
            unsigned const continuations = c < 0x80 ? 0 : c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
            unsigned const leads[] = { 0, 0xC0, 0xE0, 0xF0 };
            text.push_back(
                static_cast<char>( leads[continuations] | ( c >> 6 * continuations ) % 32 ) );
            for ( unsigned i = continuations; i-- > 0; )
                text.push_back( static_cast<char>( 0x80 | ( c >> 6 * i & 0x3F ) ) );
        }
    }
    if ( !text.empty() && random() % 4 == 0 )
        text[random() % text.size()] = static_cast<typename E::Unit>( 0xD800u | random() );
    return text;
}

/// Converts random texts in random pieces by each kernel and by the plain rule.
template<typename To, std::size_t Size, typename From>
void ExpectEqualKernels()
{
    Random random;
    for ( int run = 0; run < 1500; ++run )
    {
        Units<From> const text = MakeText<From>( random );
        Random const cutsOfRun = random;
        auto const convert = [&]( auto const& receive )
        {
            Pieces<To> downstream;
            Random cuts = cutsOfRun;
            std::size_t const longest = cuts() % 2 == 0 ? 9 : 5000;
            try
            {
                for ( std::span<typename From::Unit const> rest( text ); !rest.empty(); )
                {
                    std::size_t const length =
                        std::min<std::size_t>( cuts() % longest, rest.size() );
                    Units<From> const piece(
                        rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>( length ) );
                    receive( piece, downstream );
                    rest = rest.subspan( length );
                }
            }
            catch ( InvalidTextEncoding const& )
            {
                downstream.mPieces.push_back( {} );
            }
            return downstream.mPieces;
        };
        Units<From> plainPending;
        auto const expected =
            convert( [&]( Units<From> const& piece, UTextReceiver<To>& downstream )
                { TranscodePlainly<To, Size, From>( piece, plainPending, downstream ); } );
        for ( auto const& kernel : TranscodingKernels<To, From>() )
        {
            if ( !kernel.isSupported() )
                continue;
            unsigned count = 0;
            typename From::Unit pending[From::kLongestCharacter - 1];
            auto const pieces = convert(
                [&]( Units<From> const& piece, UTextReceiver<To>& downstream )
                {
                    TranscodePiece<To, Size, From>( { piece.data(), piece.data() + piece.size() },
                        { count, pending }, downstream, kernel.function );
                } );
            ASSERT_EQ( pieces, expected ) << kernel.name << " " << testing::PrintToString( text );
            if ( pieces.empty() || !pieces.back().empty() )
            {
                ASSERT_EQ( Units<From>( pending, pending + count ), plainPending );
            }
        }
    }
}

TEST( TranscodingKernels, PushTheSamePiecesAndFailAtTheSamePlacesAsThePlainRule )
{
    ExpectEqualKernels<UTF32, 1024, UTF8>();
    ExpectEqualKernels<UTF8, 4096, UTF16>();
}

/// The portable kernel converts `characters`, many times over, up to each of some limits, beyond
/// which come at most `beyond` units.
template<typename To, typename From>
void ExpectStop( Units<From> const& characters, std::ptrdiff_t beyond )
{
    Units<From> text;
    for ( int i = 0; i < 64; ++i )
        text.insert( text.end(), characters.begin(), characters.end() );
    for ( std::ptrdiff_t limit = 0; limit < 40; ++limit )
    {
        Units<To> units( 40 + kTranscodingSlack );
        auto const done = TranscodePortably(
            text.data(), text.data() + text.size(), units.data(), units.data() + limit );
        std::ptrdiff_t const length = done.out - units.data();
        EXPECT_GE( length, limit );
        EXPECT_LE( length, limit == 0 ? 0 : limit + beyond );
    }
}

TEST( TranscodingKernels, BeginNoCharacterAtTheLimit )
{
    for ( auto const& [text, beyond] : { std::pair( "a"sv, 7 ), { "\xC3\xA9"sv, 0 },
              { "\xE2\x82\xAC"sv, 0 }, { "\xF0\x9F\x98\x80"sv, 0 } } )
        ExpectStop<UTF32, UTF8>( UnitsOf<UTF8>( text ), beyond );
    for ( auto const& [text, beyond] : { std::pair( u"a"sv, 3 ), { u"\xE9"sv, 1 },
              { u"a\xE9"sv, 1 }, { u"\x20AC"sv, 2 }, { u"\xD83D\xDE00"sv, 3 } } )
        ExpectStop<UTF8, UTF16>( UnitsOf<UTF16>( text ), beyond );
}

TEST( Transcoder, ConvertsWholeTextsWithTwoAllocations )
{
    Units<UTF16> const units( 5000, 0x20AC );
    UStringRef<UTF16> const text( units.data(), units.data() + 5000 );
    AutoUString<UTF8> const utf8 = Transcoder<UTF8, UTF16>()( text );
    EXPECT_EQ( UnitsOf<UTF32>( Transcoder<UTF32, UTF8>()( utf8 ) ), Units<UTF32>( 5000, 0x20AC ) );
    EXPECT_EQ( ( Transcoder<UTF32, UTF8>()( {} ).begin() ), nullptr );
    long const before = AllocationCount();
    Transcoder<UTF32, UTF8>()( utf8 );
    EXPECT_EQ( before + 2, AllocationCount() );
    EXPECT_THROW(
        ( Transcoder<UTF32, UTF8>()( UStringRef<UTF8>( "a\xE2" ) ) ), InvalidTextEncoding );
    using Caster = EncodingCaster<std::string, UStringRef<UTF8>>;
    EXPECT_EQ( Caster::Cast( UStringRef<UTF8>( "a\0\xFF"sv ) ), "a\0\xFF"sv );
}

TEST( UTextReceiver, IgnoresWhatItReceives )
{
    UTF32::Unit const unit = 0x61;
    UTextReceiver<UTF32> receiver;
    receiver.Start( UTF32() );
    receiver.Receive( { &unit, &unit + 1 } );
    receiver.ReceiveEnd();
    EXPECT_EQ( receiver.SizeOfReceivedBytes( { &unit, &unit + 1 } ), 0u );
    EXPECT_EQ( MakeString( UStringRef<UTF8>( "a\0b"sv ).Bytes() ), "a\0b"sv );
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
    builder.Receive( rest );
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
    EXPECT_EQ( copy.Length(), 2u );
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
    EXPECT_EQ( MakeString( IANAEncodingName( Local8Bit() ) ), "UTF-8" );
    std::setlocale( LC_ALL, "C" );
}

} // namespace
