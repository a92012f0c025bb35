#include "tests/linux/CoreFoundation/Held.h"

#include <gtest/gtest.h>
#include <optional>
#include <tuple>
#include <vector>

namespace
{

using namespace std::string_literals;

constexpr CFStringEncoding kASCII = kCFStringEncodingASCII;
constexpr CFStringEncoding kLatin1 = kCFStringEncodingISOLatin1;
constexpr CFStringEncoding kMac = kCFStringEncodingMacRoman;
constexpr CFStringEncoding kWindows = kCFStringEncodingWindowsLatin1;
constexpr CFStringEncoding kUTF8 = kCFStringEncodingUTF8;
constexpr CFStringEncoding kUTF16 = kCFStringEncodingUTF16;
constexpr CFStringEncoding kBig = kCFStringEncodingUTF16BE;
constexpr CFStringEncoding kLittle = kCFStringEncodingUTF16LE;
constexpr CFStringEncoding kLatin2 = 0x0202; // these two through iconv
constexpr CFStringEncoding kShiftJIS = 0x0A01;
constexpr CFStringEncoding kUnknown = 0x7777;

Held<CFStringRef> FromBytes( std::string const& bytes, CFStringEncoding encoding, bool isExternal )
{
    return Held<CFStringRef>( CFStringCreateWithBytes( kCFAllocatorDefault,
        reinterpret_cast<UInt8 const*>( bytes.data() ), static_cast<CFIndex>( bytes.size() ),
        encoding, isExternal ) );
}

std::u16string UnitsOf( CFStringRef string )
{
    std::vector<UniChar> units( static_cast<std::size_t>( CFStringGetLength( string ) ) );
    CFStringGetCharacters( string, CFRangeMake( 0, CFStringGetLength( string ) ), units.data() );
    return { units.begin(), units.end() };
}

std::string InHostOrder( std::u16string const& units )
{
    return { reinterpret_cast<char const*>( units.data() ), 2 * units.size() };
}

struct Written
{
    std::string bytes;
    CFIndex converted;
};

// The bytes of a string, which has to say the same when it only measures them.
Written ToBytes( CFStringRef string, CFStringEncoding encoding, UInt8 lossByte, bool isExternal )
{
    CFRange const all = CFRangeMake( 0, CFStringGetLength( string ) );
    CFIndex length = -1;
    CFIndex const measured =
        CFStringGetBytes( string, all, encoding, lossByte, isExternal, nullptr, 0, &length );
    std::string bytes( static_cast<std::size_t>( length ), '\0' );
    EXPECT_EQ( CFStringGetBytes( string, all, encoding, lossByte, isExternal,
                   reinterpret_cast<UInt8*>( bytes.data() ), length, nullptr ),
        measured );
    return { bytes, measured };
}

TEST( String, ReadsBytesInEachEncodingOrRefusesTheWhole )
{
    struct
    {
        std::string bytes;
        CFStringEncoding encoding;
        bool isExternal;
        std::optional<std::u16string> units;
    } const rows[] = { { "a\0b\x80\xFF"s, kASCII, false, u"a\0b\x80\xFF"s },
        { "\x80\xE9", kLatin1, false, u"\x80\xE9" },
        { "A\x80\xDB\xF0\xFF", kMac, false, u"A\u00C4\u20AC\uF8FF\u02C7" },
        { "\x80\x81\x9F\xA0", kWindows, false, u"\u20AC\u0081\u0178\u00A0" },
        { "\x82\xA0", kShiftJIS, false, u"\u3042" },
        { "\0\1\xF6\0"s, kCFStringEncodingUTF32BE, false, u"\U0001F600" },
        { "\0\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"s, kUTF8,
            false, u"\0\x7F\x80\u07FF\u0800\uFFFF\U00010000\U0010FFFF"s },
        { "\xED\x9F\xBF\xEE\x80\x80", kUTF8, false, u"\uD7FF\uE000" },
        { "\xEF\xBB\xBF\xEF\xBB\xBF", kUTF8, false, u"\uFEFF" },
        { InHostOrder( u"\uFEFF\u1234" ), kUTF16, false, u"\uFEFF\u1234" },
        { "\x12\x34", kUTF16, true, u"\u1234" }, { "\xFE\xFF\x12\x34", kUTF16, true, u"\u1234" },
        { "\xFF\xFE\x34\x12", kUTF16, true, u"\u1234" }, { "\x12\x34\x56", kBig, false, u"\u1234" },
        { "\x34\x12", kLittle, false, u"\u1234" },
        { "\xDC\0\xD8\0"s, kBig, false, u"\xDC00\xD800" }, { "\x82", kShiftJIS, false, {} },
        { "a", kUnknown, false, {} } };

    for ( auto const& row : rows )
    {
        SCOPED_TRACE( &row - rows );
        Held<CFStringRef> const string = FromBytes( row.bytes, row.encoding, row.isExternal );
        ASSERT_EQ( string != nullptr, row.units.has_value() );
        EXPECT_TRUE( string == nullptr || UnitsOf( string.get() ) == row.units );
    }
    // Overlong, surrogates, too large, and with continuation bytes stray, missing or broken.
    for ( char const* bytes :
        { "a\xC1\xBF", "\xE0\x9F\xBF", "\xF0\x8F\xBF\xBF", "\xED\xA0\x80", "\xED\xBF\xBF",
            "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80", "\xFF", "a\x80", "\xE2\x82", "\xE2\x82z" } )
        EXPECT_EQ( FromBytes( bytes, kUTF8, false ), nullptr ) << bytes;
}

TEST( String, WritesBytesAndMeasuresTheSameLength )
{
    struct
    {
        std::u16string units;
        CFStringEncoding encoding;
        UInt8 lossByte;
        bool isExternal;
        std::string bytes;
        CFIndex converted;
    } const rows[] = { { u"a\u0080b", kASCII, 0, false, "a", 1 },
        { u"a\u00E9b", kASCII, '?', false, "a?b", 3 }, { u"\xD800z", kASCII, '?', false, "?z", 2 },
        { u"\u0080\u00FF", kLatin1, 0, false, "\x80\xFF", 2 },
        { u"A\uF8FF\u0080", kMac, 0, false, "A\xF0", 2 },
        { u"\u0105\u3042", kLatin2, '?', false, "\xB1?", 2 },
        { u"a\u3042", kShiftJIS, 0, false, "a\x82\xA0", 2 },
        { u"\U0001F600", kLatin2, '?', false, "??", 2 },
        { u"\x7F\x80\u07FF\u0800\uFFFF\U00010000\U0010FFFF", kUTF8, 0, false,
            "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", 9 },
        { u"a\xDC00z", kUTF8, '?', false, "a", 1 }, { u"a\xD800", kUTF8, '?', false, "a", 1 },
        { u"\x1234\xD800", kBig, 0, false, "\x12\x34\xD8\0"s, 2 },
        { u"\x1234", kLittle, 0, true, "\x34\x12", 1 },
        { u"\x1234", kUTF16, 0, true, InHostOrder( u"\uFEFF\u1234" ), 1 },
        { u"a", kUnknown, '?', false, "", 0 } };

    for ( auto const& row : rows )
    {
        SCOPED_TRACE( &row - rows );
        Held<CFStringRef> const string = FromBytes( InHostOrder( row.units ), kUTF16, false );
        auto const [bytes, converted] =
            ToBytes( string.get(), row.encoding, row.lossByte, row.isExternal );
        EXPECT_EQ( bytes, row.bytes );
        EXPECT_EQ( converted, row.converted );
    }
}

TEST( String, DoesNotBeginACharacterThatDoesNotFit )
{
    Held<CFStringRef> const string = String( "xa\u20AC\U0001F600x" );
    CFRange const range = CFRangeMake( 1, 4 );

    CFIndex const rows[][3] = { { -1, 0, 0 }, { 0, 0, 0 }, { 1, 1, 1 }, { 3, 1, 1 }, { 4, 2, 4 },
        { 7, 2, 4 }, { 8, 4, 8 }, { 100, 4, 8 } };
    for ( auto const& [room, converted, length] : rows )
    {
        std::vector<UInt8> buffer( 101, 0xEE );
        CFIndex used = -1;
        EXPECT_EQ( converted,
            CFStringGetBytes( string.get(), range, kUTF8, 0, false, buffer.data(), room, &used ) );
        EXPECT_EQ( used, length ) << room;
        EXPECT_EQ( buffer[static_cast<std::size_t>( length )], 0xEE );
    }
}

// The C library has its own mind about the characters that are left out.
TEST( String, EightBitTablesAgreeWithTheCLibraryAndAreInvertible )
{
    for ( auto const& [encoding, name, leftOut] : { std::tuple( kMac, "MAC", "\xC6\xF0"s ),
              { kWindows, "CP1252", "\x81\x8D\x8F\x90\x9D"s } } )
    {
        std::string bytes;
        for ( int byte = 0x80; byte < 0x100; ++byte )
            if ( leftOut.find( static_cast<char>( byte ) ) == std::string::npos )
                bytes += static_cast<char>( byte );
        Held<CFStringRef> const string = FromBytes( bytes, encoding, false );
        Held<CFTypeRef> const library =
            Parsed( "<?xml version='1.0' encoding='"s + name + "'?>" + Element( "string", bytes ) );
        EXPECT_EQ( Describe( string.get() ), Describe( library.get() ) ) << name;
        EXPECT_EQ( ToBytes( string.get(), encoding, 0, false ).bytes, bytes );
    }
}

} // namespace
