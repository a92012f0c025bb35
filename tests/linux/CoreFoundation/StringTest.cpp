#include "tests/linux/CoreFoundation/Held.h"

#include <CoreFoundation/CFString.h>

#include <bit>
#include <gtest/gtest.h>
#include <optional>
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

Held<CFStringRef> FromUnits( std::u16string const& units )
{
    std::vector<UniChar> const copy( units.begin(), units.end() );
    return Held<CFStringRef>( CFStringCreateWithCharacters(
        kCFAllocatorDefault, copy.data(), static_cast<CFIndex>( copy.size() ) ) );
}

std::u16string UnitsOf( CFStringRef string )
{
    std::vector<UniChar> units( static_cast<std::size_t>( CFStringGetLength( string ) ) );
    CFStringGetCharacters( string, CFRangeMake( 0, CFStringGetLength( string ) ), units.data() );
    return { units.begin(), units.end() };
}

std::string InHostOrder( std::string bigEndian )
{
    for ( std::size_t i = 0; std::endian::native == std::endian::little && i + 1 < bigEndian.size();
          i += 2 )
    {
        std::swap( bigEndian[i], bigEndian[i + 1] );
    }
    return bigEndian;
}

TEST( String, ReadsBytesInEachEncodingOrRefusesTheWhole )
{
    struct
    {
        char const* name;
        std::string bytes;
        CFStringEncoding encoding;
        bool isExternal;
        std::optional<std::u16string> units;
    } const rows[] = { { "ASCII", "a\0b\x80\xFF"s, kASCII, false, u"a\0b\x80\xFF"s },
        { "Latin-1", "\x80\xE9", kLatin1, false, u"\x80\xE9" },
        { "Mac Roman", "A\x80\xDB\xF0\xFF", kMac, false, u"A\u00C4\u20AC\uF8FF\u02C7" },
        { "Windows Latin-1", "\x80\x81\x9F\xA0", kWindows, false, u"\u20AC\u0081\u0178\u00A0" },
        { "ISO Latin-2", "\xB1", kLatin2, false, u"\u0105" },
        { "Shift JIS", "\x82\xA0", kShiftJIS, false, u"\u3042" },
        { "UTF-32", "\0\1\xF6\0"s, kCFStringEncodingUTF32BE, false, u"\U0001F600" },
        { "UTF-8 limits",
            "\0\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"s,
            kUTF8, false, u"\0\x7F\x80\u07FF\u0800\uFFFF\U00010000\U0010FFFF"s },
        { "UTF-8 round the surrogates", "\xED\x9F\xBF\xEE\x80\x80", kUTF8, false, u"\uD7FF\uE000" },
        { "UTF-8 marks", "\xEF\xBB\xBF\xEF\xBB\xBF", kUTF8, false, u"\uFEFF" },
        { "UTF-16 internal", InHostOrder( "\xFE\xFF\x12\x34" ), kUTF16, false, u"\uFEFF\u1234" },
        { "UTF-16 external", "\x12\x34", kUTF16, true, u"\u1234" },
        { "UTF-16 external, big mark", "\xFE\xFF\x12\x34", kUTF16, true, u"\u1234" },
        { "UTF-16 external, little mark", "\xFF\xFE\x34\x12", kUTF16, true, u"\u1234" },
        { "UTF-16BE, odd last byte", "\x12\x34\x56", kBig, false, u"\u1234" },
        { "UTF-16LE", "\x34\x12", kLittle, false, u"\u1234" },
        { "one byte only", "\x12", kUTF16, true, u"" },
        { "unpaired surrogates", "\xDC\0\xD8\0"s, kBig, false, u"\xDC00\xD800" },
        { "no bytes", "", kUTF8, false, u"" },
        { "overlong, two bytes", "a\xC1\xBF", kUTF8, false, {} },
        { "overlong, three bytes", "\xE0\x9F\xBF", kUTF8, false, {} },
        { "overlong, four bytes", "\xF0\x8F\xBF\xBF", kUTF8, false, {} },
        { "first surrogate", "\xED\xA0\x80", kUTF8, false, {} },
        { "last surrogate", "\xED\xBF\xBF", kUTF8, false, {} },
        { "beyond U+10FFFF", "\xF4\x90\x80\x80", kUTF8, false, {} },
        { "five-byte form", "\xF8\x88\x80\x80\x80", kUTF8, false, {} },
        { "0xFF", "\xFF", kUTF8, false, {} }, { "stray continuation", "a\x80", kUTF8, false, {} },
        { "missing continuation", "\xE2\x82", kUTF8, false, {} },
        { "broken continuation", "\xE2\x82z", kUTF8, false, {} },
        { "half a Shift JIS character", "\x82", kShiftJIS, false, {} },
        { "unknown encoding", "a", kUnknown, false, {} } };

    for ( auto const& row : rows )
    {
        SCOPED_TRACE( row.name );
        Held<CFStringRef> const string = FromBytes( row.bytes, row.encoding, row.isExternal );
        ASSERT_EQ( string != nullptr, row.units.has_value() );
        EXPECT_TRUE( string == nullptr || UnitsOf( string.get() ) == row.units );
    }
    UniChar const unit = 'a';
    EXPECT_EQ( CFStringCreateWithBytes( nullptr, nullptr, 1, kUTF8, false ), nullptr );
    EXPECT_EQ( CFStringCreateWithCharacters( nullptr, &unit, -1 ), nullptr );
    EXPECT_EQ( CFStringCreateWithCharacters( nullptr, nullptr, 1 ), nullptr );
}

TEST( String, WritesBytesAndMeasuresTheSameLength )
{
    struct
    {
        char const* name;
        std::u16string units;
        CFStringEncoding encoding;
        UInt8 lossByte;
        bool isExternal;
        std::string bytes;
        CFIndex converted;
    } const rows[] = { { "ASCII stops", u"a\u0080b", kASCII, 0, false, "a", 1 },
        { "ASCII with loss", u"a\u00E9b", kASCII, '?', false, "a?b", 3 },
        { "a pair is two losses", u"a\U0001F600b", kASCII, '?', false, "a??b", 4 },
        { "an unpaired surrogate is one loss", u"\xD800z", kASCII, '?', false, "?z", 2 },
        { "Latin-1", u"\u0080\u00FF", kLatin1, 0, false, "\x80\xFF", 2 },
        { "beyond Latin-1", u"\u0100", kLatin1, '-', false, "-", 1 },
        { "Mac Roman", u"A\u20AC\uF8FF", kMac, 0, false, "A\xDB\xF0", 3 },
        { "C1 control in Mac Roman", u"\u0080", kMac, 0, false, "", 0 },
        { "Windows Latin-1", u"\u20AC\u00E9", kWindows, 0, false, "\x80\xE9", 2 },
        { "iconv", u"\u0105\u3042", kLatin2, '?', false, "\xB1?", 2 },
        { "iconv, two bytes", u"a\u3042", kShiftJIS, 0, false, "a\x82\xA0", 2 },
        { "iconv, a pair lost", u"\U0001F600", kLatin2, '?', false, "??", 2 },
        { "UTF-8 limits", u"\x7F\x80\u07FF\u0800\uFFFF\U00010000\U0010FFFF", kUTF8, 0, false,
            "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", 9 },
        { "UTF-8 stops in spite of a loss byte", u"a\xDC00z", kUTF8, '?', false, "a", 1 },
        { "UTF-8 stops at a half pair", u"a\xD800", kUTF8, '?', false, "a", 1 },
        { "UTF-16BE", u"\x1234\xD800", kBig, 0, false, "\x12\x34\xD8\0"s, 2 },
        { "UTF-16LE external has no mark", u"\x1234", kLittle, 0, true, "\x34\x12", 1 },
        { "UTF-16 external has one", u"\x1234", kUTF16, 0, true, InHostOrder( "\xFE\xFF\x12\x34" ),
            1 },
        { "unknown encoding", u"a", kUnknown, '?', false, "", 0 } };

    for ( auto const& row : rows )
    {
        SCOPED_TRACE( row.name );
        Held<CFStringRef> const string = FromUnits( row.units );
        CFRange const all = CFRangeMake( 0, CFStringGetLength( string.get() ) );
        CFIndex length = -1;
        EXPECT_EQ( CFStringGetBytes( string.get(), all, row.encoding, row.lossByte, row.isExternal,
                       nullptr, 0, &length ),
            row.converted );
        ASSERT_EQ( length, static_cast<CFIndex>( row.bytes.size() ) );
        std::string bytes( row.bytes.size(), '\0' );
        EXPECT_EQ( CFStringGetBytes( string.get(), all, row.encoding, row.lossByte, row.isExternal,
                       reinterpret_cast<UInt8*>( bytes.data() ), length, nullptr ),
            row.converted );
        EXPECT_EQ( bytes, row.bytes );
    }
}

TEST( String, DoesNotBeginACharacterThatDoesNotFit )
{
    Held<CFStringRef> const string = FromUnits( u"xa\u20AC\U0001F600x" );
    CFRange const range = CFRangeMake( 1, 4 );

    struct
    {
        CFIndex room, converted, used;
    } const rows[] = { { -1, 0, 0 }, { 0, 0, 0 }, { 1, 1, 1 }, { 3, 1, 1 }, { 4, 2, 4 },
        { 7, 2, 4 }, { 8, 4, 8 }, { 100, 4, 8 } };

    for ( auto const& row : rows )
    {
        SCOPED_TRACE( row.room );
        std::vector<UInt8> buffer( 101, 0xEE );
        CFIndex used = -1;
        EXPECT_EQ( CFStringGetBytes(
                       string.get(), range, kUTF8, 0, false, buffer.data(), row.room, &used ),
            row.converted );
        EXPECT_EQ( used, row.used );
        EXPECT_EQ( buffer[static_cast<std::size_t>( used )], 0xEE );
    }
}

// The C library has its own mind about the characters that are left out.
TEST( String, EightBitTablesAgreeWithTheCLibraryAndAreInvertible )
{
    struct
    {
        CFStringEncoding encoding;
        std::string name, leftOut;
    } const rows[] = {
        { kMac, "MAC", "\xC6\xF0" }, { kWindows, "CP1252", "\x81\x8D\x8F\x90\x9D" } };

    for ( auto const& row : rows )
    {
        std::string bytes;
        for ( int byte = 0x80; byte < 0x100; ++byte )
        {
            bool const isIn = row.leftOut.find( static_cast<char>( byte ) ) == std::string::npos;
            bytes.append( isIn ? 1 : 0, static_cast<char>( byte ) );
        }
        Held<CFStringRef> const string = FromBytes( bytes, row.encoding, false );
        Held<CFTypeRef> const library = Parsed(
            "<?xml version='1.0' encoding='" + row.name + "'?><string>" + bytes + "</string>" );
        ASSERT_NE( library, nullptr );
        EXPECT_TRUE( CFEqual( string.get(), library.get() ) ) << row.name;
        std::string back( bytes.size(), '\0' );
        CFStringGetBytes( string.get(), CFRangeMake( 0, static_cast<CFIndex>( bytes.size() ) ),
            row.encoding, 0, false, reinterpret_cast<UInt8*>( back.data() ),
            static_cast<CFIndex>( back.size() ), nullptr );
        EXPECT_EQ( back, bytes );
    }
}

} // namespace
