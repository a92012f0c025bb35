#include "tests/linux/CoreFoundation/Held.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <vector>

namespace
{

using namespace std::string_literals;

constexpr char kRefused[] = "Line "; // begins each error

// What a document gives, or the error.
std::string Outcome( std::string_view text )
{
    Held<CFDataRef> const data( CFDataCreate(
        nullptr, reinterpret_cast<UInt8 const*>( text.data() ), std::ssize( text ) ) );
    // Not null, so that a success has to say so.
    Held<CFStringRef> const untouched = String( "untouched" );
    CFStringRef error = untouched.get();
    Held<CFTypeRef> const object( CFPropertyListCreateFromXMLData(
        kCFAllocatorDefault, data.get(), kCFPropertyListImmutable, &error ) );
    Held<CFStringRef> const held( error );
    EXPECT_NE( object == nullptr, error == nullptr );
    return error != nullptr ? Text( error ) : Describe( object.get() );
}

std::string UTF16( std::string_view ascii, bool isBigEndian )
{
    std::string bytes;
    for ( char const byte : ascii )
        bytes += isBigEndian ? std::string{ '\0', byte } : std::string{ byte, '\0' };
    return bytes;
}

// How the outcome starts, which must be the same with every mark for a document in ASCII.
void ExpectOutcome( std::string const& text, std::string const& expected )
{
    bool const isASCII = std::ranges::all_of( text, []( char byte ) { return byte > 0; } );
    for ( std::string const& form : { text, isASCII ? "\xEF\xBB\xBF" + text : text,
              isASCII ? "\xFE\xFF" + UTF16( text, true ) : text,
              isASCII ? "\xFF\xFE" + UTF16( text, false ) : text } )
        EXPECT_THAT( Outcome( form ), testing::StartsWith( expected ) ) << form;
}

TEST( PropertyList, MayHaveTheseForms )
{
    std::pair<std::string, char const*> const rows[] = {
        { "\n \t\r\n<?xml version='1.0'?><!DOCTYPE plist PUBLIC '-//A//B' 'http://[::1]/p.dtd'>\n"
          "<!--a--><plist version='1.0'><!--b--><dict a='b'><!--c--><key c='&lt;'>k</key><!--d-->\n"
          "<true d=''/></dict><!--e--></plist>\n",
            "<dict><key>k</key><true/></dict>" },
        { "<!DOCTYPE plist SYSTEM 'file:///etc/hostname'><string/>", "<string></string>" },
        { "<?a b?><array><?c d?><false></false></array><!--e--><?f g?>",
            "<array><false/></array>" },
        { "<array><dict/><array/></array>", "<array><dict></dict><array></array></array>" },
        { "<dict><key/><true/></dict>", "<dict><key></key><true/></dict>" },
        { "<string>a<![CDATA[<\r\n&amp;]]>c</string>", "<string>a&#60;&#13;\n&#38;amp;c</string>" },
        { "<plist><true/></plist><plist>&x;</\x80\0"s, "<true/>" },
        { "<dict><key>k\r</key><true/><key>k</key><array/><key>k</key><false/></dict>",
            "<dict><key>k</key><false/><key>k&#13;</key><true/></dict>" } };

    for ( auto const& [text, expected] : rows )
        ExpectOutcome( text, expected );
}

TEST( PropertyList, MustNotHaveTheseForms )
{
    std::string const rows[] = { "", " \n\t", "{ a = b; }", "bplist00\xD0\x08\0\0\0\0"s, // no XML
        "<plist></plist>", "<plist/>", "<plist><plist><true/></plist></plist>", // not one root
        "<true/>x", "<plist><true/><true/></plist>", "<plist>a<true/></plist>",
        "<plist><true/>a</plist>", // text outside
        "<array>a</array>", "<array><![CDATA[ ]]></array>", "<true> </true>",
        "<dict>a<key>k</key><true/></dict>", "<dict><key>k</key>a<true/></dict>",
        "<array><null/></array>", "<Array></Array>", "<x:true/>",                    // unknown
        "<dict><key>k</key></dict>", "<dict><key>k</key><key>l</key><true/></dict>", // pairs
        "<dict><true/></dict>", "<dict><key>k</key><true/><true/></dict>",
        "<array><key>k</key></array>", "<plist><key>k</key></plist>", "<string>a<!--b--></string>",
        "<string>a<?b c?></string>", // inside a leaf
        "<string>a<true/></string>", "<integer>1<!--b--></integer>", "<true><!--b--></true>",
        "<key><dict/></key>", "<integer><![CDATA[1]]></integer>", "<data><![CDATA[]]></data>",
        "<integer/>", "<real/>", "<date/>", "<data/>", // short forms
        "<!DOCTYPE plist []><true/>", "<!DOCTYPE plist [<!ENTITY a 'a'>]><true/>",
        "<!DOCTYPE plist SYSTEM 'file:///etc/hostname'><string>&a;</string>",
        "<!DOCTYPE plist SYSTEM 'file:///etc/hostname'><array>&a;</array>" };

    for ( std::string const& text : rows )
        ExpectOutcome( text, kRefused );
    ExpectOutcome( "\n\n<array>\n<nothing/>\n</array>", "Line 4: unknown element" );
}

// Texts of leaves: with what they are read as, with no other form, and refused ones.
void ExpectLeaves( std::string const& element,
    std::vector<std::pair<std::string, std::string>> const& rows,
    std::vector<std::string> const& same, std::vector<std::string> const& refused )
{
    for ( auto const& [text, expected] : rows )
        ExpectOutcome( Element( element, text ), Element( element, expected ) );
    for ( std::string const& text : same )
        ExpectOutcome( Element( element, text ), Element( element, text ) );
    for ( std::string const& text : refused )
        ExpectOutcome( Element( element, text ), kRefused );
}

TEST( PropertyList, ReadsTheTextOfEachKindOfLeaf )
{
    ExpectLeaves( "integer",
        { { " \n\t12", "12" }, { "+12", "12" }, { "0xFf", "255" }, { "-0X10", "-16" },
            { "00000000000000000000007", "7" } },
        { "0", "-12", "-9223372036854775808", "9223372036854775807", "9223372036854775808",
            "18446744073709551615" },
        { "", " ", "-9223372036854775809", "18446744073709551616", "1 ", "- 1", "--1", "-", "0x",
            "0x-1", "1.0", "one" } );
    ExpectLeaves( "real",
        { { " .5", "0.5" }, { "2.", "2" }, { "+2.5", "2.5" }, { "-25e-1", "-2.5" },
            { "NaN", "nan" }, { "INFinity", "inf" }, { "-infinity", "-inf" } },
        { "1", "2.5", "nan", "inf" },
        { "", "-nan", "infinit", "nan(1)", "1,5", "0x1p3", "+-1", "1 ", "1e", ".", "1e999" } );
    ExpectLeaves( "date", { { "2000-13-00T00:00:99Z", "2000-12-31T00:01:39Z" } },
        { "2024-02-29T12:34:56Z" },
        { "", " 2001-01-01T00:00:00Z", "2001-01-01T00:00:00", "2001-01-01T00:00:00.0Z" } );
    ExpectLeaves( "data", { { "\n\tY W\r\nI =\n", "YWI=" }, { " \n", "" } }, { "YWJj/+8=", "/w==" },
        { "AAE", "A===", "AA==AAAA", "AA=A", "=", "AA-_", "AAA\xC3\xA9" } );
    ExpectLeaves( "string",
        { { "\r\na\r\n\r\rb\n\r", "&#13;\na&#13;\n&#13;&#13;b\n&#13;" },
            { "&#13;&#10;&#xD;&#xA;", "&#13;\n&#13;\n" },
            { "&lt;&gt;&amp;&apos;&quot;", "&#60;&#62;&#38;'\"" },
            { "&#65;&#x42;&#x1F600;", "AB\U0001F600" } },
        { " \t a\n  ", "\xC3\xA9" },
        { "&#xD800;", "&#0;", "&nbsp;", "\xC3(", "\xED\xA0\x80", "a\0b"s } );
}

TEST( PropertyList, IsReadInTheEncodingOfItsMarkOrDeclaration )
{
    std::string const rows[][3] = { { "UTF-8", "\xC3\xA9", "\u00E9" },
        { "ISO-8859-1", "\xE9", "\u00E9" }, { "US-ASCII", "e", "e" }, { "US-ASCII", "\xE9" },
        { "windows-1252", "\x80\x81\x92\xE9\n", "\u20AC\u0081\u2019\u00E9\n" },
        { "macintosh", "\xDB\x8E", "\u20AC\u00E9" }, { "KOI8-R", "\xC1", "\u0430" },
        { "ISO-8859-7", "\xFF" }, { "Shift_JIS", "a\xB1", "a\uFF71" }, { "Shift_JIS", "\x82\xA0" },
        { "UTF-7", "+AGE-" }, { "EBCDIC-US", "a" }, { "UTF-16", "a" }, { "no-such-encoding", "a" },
        { "../../x", "a" } };

    for ( auto const& [encoding, text, expected] : rows )
        EXPECT_THAT( Outcome( "<?xml version='1.0' encoding='" + encoding + "'?>" +
                              Element( "string", text ) ),
            testing::StartsWith( expected.empty() ? kRefused : Element( "string", expected ) ) )
            << encoding << text;
    ExpectOutcome( "\xEF\xBB\xBF<?xml version='1.0' encoding='ISO-8859-1'?><string>\xC3\xA9"
                   "</string>",
        "<string>\u00E9</string>" );
    ExpectOutcome( UTF16( "<string>a</string>", true ), "UTF-16 without a byte-order mark" );
    ExpectOutcome( UTF16( "\n <string>a</string>", false ), "UTF-16 without a byte-order mark" );
}

TEST( PropertyList, HasMutableStringsButNoKeysWithOption2AndMutableContainersAlways )
{
    auto const appendToItself = []( void const* string )
    { CFStringAppend( As<CFMutableStringRef>( string ), As<CFStringRef>( string ) ); };
    void const* key = nullptr;
    void const* value = nullptr;
    for ( CFOptionFlags const option : { 0u, 1u, 2u } )
    {
        Held<CFTypeRef> const list =
            Parsed( "<dict><key>k</key><string>v</string></dict>", option );
        auto const dictionary = As<CFMutableDictionaryRef>( list.get() );
        CFDictionaryGetKeysAndValues( dictionary, &key, &value );
        if ( option == 2 )
            appendToItself( value );
        else
            EXPECT_DEATH( appendToItself( value ), "" ) << option;
        EXPECT_DEATH( appendToItself( key ), "" );
        CFDictionarySetValue( dictionary, key, kCFBooleanTrue );
        EXPECT_EQ( Describe( dictionary ), "<dict><key>k</key><true/></dict>" );
    }
}

TEST( PropertyList, MayNest512LevelsAndHave16MiBAndNotOneMore )
{
    std::string nested;
    for ( int level = 0; level < 511; ++level )
        nested = Element( "array", nested );
    EXPECT_NE( Parsed( Element( "array", nested ) ), nullptr );
    EXPECT_NE( Parsed( Element( "plist", nested ) ), nullptr );
    EXPECT_EQ( Parsed( Element( "array", Element( "array", nested ) ) ), nullptr );
    EXPECT_EQ( Parsed( Element( "plist", Element( "array", nested ) ) ), nullptr );
    std::string text = "<true/>";
    text.resize( 16 * 1024 * 1024, ' ' );
    EXPECT_NE( Parsed( text ), nullptr );
    EXPECT_EQ( Parsed( text + ' ' ), nullptr );
}

} // namespace
