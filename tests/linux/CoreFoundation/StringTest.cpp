#include "tests/linux/CoreFoundation/Held.h"

#include <gtest/gtest.h>
#include <tuple>
#include <vector>

namespace
{

using namespace std::string_literals;

constexpr CFStringEncoding kMac = kCFStringEncodingMacRoman;
constexpr CFStringEncoding kWindows = kCFStringEncodingWindowsLatin1;
constexpr CFStringEncoding kUTF8 = kCFStringEncodingUTF8;
constexpr CFStringEncoding kUTF16 = kCFStringEncodingUTF16;
constexpr CFStringEncoding kBig = kCFStringEncodingUTF16BE;
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

// How many units are converted, and the bytes, of which it has to say the same when it only
// measures.
std::pair<CFIndex, std::string> ToBytes(
    CFStringRef string, CFStringEncoding encoding, UInt8 lossByte = 0, bool isExternal = false )
{
    CFRange const all = CFRangeMake( 0, CFStringGetLength( string ) );
    CFIndex length = -1;
    CFIndex const measured =
        CFStringGetBytes( string, all, encoding, lossByte, isExternal, nullptr, 0, &length );
    std::string bytes( static_cast<std::size_t>( length ), '\0' );
    EXPECT_EQ( CFStringGetBytes( string, all, encoding, lossByte, isExternal,
                   reinterpret_cast<UInt8*>( bytes.data() ), length, nullptr ),
        measured );
    return { measured, bytes };
}

TEST( String, IsReadFromBytesAndWrittenAsTheSame )
{
    std::tuple<CFStringEncoding, std::string, std::u16string> const rows[] = {
        { kCFStringEncodingISOLatin1, "\x80\xE9", u"\x80\xE9" },
        { kMac, "A\x80\xDB\xF0\xFF", u"A\u00C4\u20AC\uF8FF\u02C7" },
        { kWindows, "\x80\x81\x9F\xA0", u"\u20AC\u0081\u0178\u00A0" },
        { kShiftJIS, "a\x82\xA0", u"a\u3042" },
        { kUTF8, "\0\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF"s,
            u"\0\x7F\x80\u07FF\u0800\uD7FF\uE000\uFFFF"s },
        { kUTF8, "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", u"\U00010000\U0010FFFF" },
        { kUTF16, InHostOrder( u"\uFEFF\u1234" ), u"\uFEFF\u1234" },
        { kBig, "\xDC\0\x12\x34\xD8\0"s, u"\xDC00\x1234\xD800" },
        { kCFStringEncodingUTF16LE, "\x34\x12", u"\u1234" } };

    for ( auto const& [encoding, bytes, units] : rows )
    {
        Held<CFStringRef> const string = FromBytes( bytes, encoding, false );
        ASSERT_NE( string, nullptr ) << encoding;
        EXPECT_TRUE( UnitsOf( string.get() ) == units ) << encoding;
        EXPECT_EQ( ToBytes( string.get(), encoding ), std::pair( std::ssize( units ), bytes ) );
    }
}

TEST( String, ReadsBytesOfOtherFormsOrRefusesTheWhole )
{
    std::tuple<CFStringEncoding, bool, std::string, std::u16string> const rows[] = {
        { kCFStringEncodingASCII, false, "a\0b\x80\xFF"s, u"a\0b\x80\xFF"s },
        { kCFStringEncodingUTF32BE, false, "\0\1\xF6\0"s, u"\U0001F600" },
        { kUTF8, false, "\xEF\xBB\xBF\xEF\xBB\xBF", u"\uFEFF" },
        { kUTF16, true, "\x12\x34", u"\u1234" }, { kUTF16, true, "\xFE\xFF\x12\x34", u"\u1234" },
        { kUTF16, true, "\xFF\xFE\x34\x12", u"\u1234" },
        { kBig, false, "\x12\x34\x56", u"\u1234" } };
    for ( auto const& [encoding, isExternal, bytes, units] : rows )
        EXPECT_TRUE( UnitsOf( FromBytes( bytes, encoding, isExternal ).get() ) == units ) << bytes;
    EXPECT_EQ( FromBytes( "\x82", kShiftJIS, false ), nullptr );
    EXPECT_EQ( FromBytes( "a", kUnknown, false ), nullptr );
    // Overlong, surrogates, too large, and with continuation bytes stray, missing or broken.
    for ( char const* bytes :
        { "a\xC1\xBF", "\xE0\x9F\xBF", "\xF0\x8F\xBF\xBF", "\xED\xA0\x80", "\xED\xBF\xBF",
            "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80", "\xFF", "a\x80", "\xE2\x82", "\xE2\x82z" } )
        EXPECT_EQ( FromBytes( bytes, kUTF8, false ), nullptr ) << bytes;
}

TEST( String, WritesALossByteOrStopsAtWhatAnEncodingLacks )
{
    std::tuple<std::u16string, CFStringEncoding, UInt8, bool, CFIndex, std::string> const rows[] = {
        { u"a\u0080b", kCFStringEncodingASCII, 0, false, 1, "a" },
        { u"a\u00E9b", kCFStringEncodingASCII, '?', false, 3, "a?b" },
        { u"\xD800z", kCFStringEncodingASCII, '?', false, 2, "?z" },
        { u"A\uF8FF\u0080", kMac, 0, false, 2, "A\xF0" },
        { u"\u0105\u3042", kLatin2, '?', false, 2, "\xB1?" },
        { u"\U0001F600", kLatin2, '?', false, 2, "??" }, { u"a\xDC00z", kUTF8, '?', false, 1, "a" },
        { u"a\xD800", kUTF8, '?', false, 1, "a" }, { u"\x1234", kBig, 0, true, 1, "\x12\x34" },
        { u"\x1234", kUTF16, 0, true, 1, InHostOrder( u"\uFEFF\u1234" ) },
        { u"a", kUnknown, '?', false, 0, "" } };
    for ( auto const& [units, encoding, lossByte, isExternal, converted, bytes] : rows )
    {
        Held<CFStringRef> const string = FromBytes( InHostOrder( units ), kUTF16, false );
        EXPECT_EQ( ToBytes( string.get(), encoding, lossByte, isExternal ),
            std::pair( converted, bytes ) );
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
        EXPECT_EQ( ToBytes( string.get(), encoding ).second, bytes );
    }
}

} // namespace
