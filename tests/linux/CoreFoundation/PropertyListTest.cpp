#include "tests/linux/CoreFoundation/Held.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

namespace
{

using namespace std::string_literals;

// What a document gives; "null" for an error, which has to come with a string.
std::string Outcome( std::string_view text )
{
    Held<CFDataRef> const data = Data( text );
    // Not null, so that a success has to say so.
    Held<CFStringRef> const untouched = String( "untouched" );
    CFStringRef error = untouched.get();
    Held<CFTypeRef> const object( CFPropertyListCreateFromXMLData(
        kCFAllocatorDefault, data.get(), kCFPropertyListImmutable, &error ) );
    Held<CFStringRef> const held( error );
    EXPECT_NE( object == nullptr, error == nullptr );
    EXPECT_TRUE( error == nullptr || CFStringGetLength( error ) > 0 );
    return Describe( object.get() );
}

std::string UTF16( std::string_view ascii, bool isBigEndian )
{
    std::string bytes;
    for ( char const byte : ascii )
        bytes += isBigEndian ? std::string{ '\0', byte } : std::string{ byte, '\0' };
    return bytes;
}

// The outcome, which must be the same with every byte-order mark for a document in ASCII.
void ExpectOutcome( std::string const& text, std::string const& expected )
{
    SCOPED_TRACE( text );
    EXPECT_EQ( Outcome( text ), expected );
    if ( std::ranges::all_of( text, []( char byte ) { return byte > 0; } ) )
    {
        EXPECT_EQ( Outcome( "\xEF\xBB\xBF" + text ), expected );
        EXPECT_EQ( Outcome( "\xFE\xFF" + UTF16( text, true ) ), expected );
        EXPECT_EQ( Outcome( "\xFF\xFE" + UTF16( text, false ) ), expected );
    }
}

std::string Plist( std::string const& content )
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Somebody//DTD PLIST 1.0//EN\" \"http://[::1]/p.dtd\">\n"
           "<plist version=\"1.0\">\n" +
           content + "\n</plist>\n";
}

TEST( PropertyList, MayHaveTheseForms )
{
    std::pair<std::string, char const*> const rows[] = {
        { Plist( "<string>a</string>" ), R"("a")" }, { "<!DOCTYPE plist><true/>", "true" },
        { "<array><true/><false></false></array>", "[true,false]" },
        { "\n \t\r\n" + Plist( "<false/>" ), "false" },
        { "<!--a--><plist><!--b--><dict a='b'><!--c--><key c='&lt;'>k</key><!--d--><true "
          "d=''/></dict><!--e--></plist>",
            R"({"k"=true})" },
        { "<?a b?><array><?c d?><true/></array><!--e--><?f g?>", "[true]" },
        { "<array><string/><dict/><array/></array>", R"(["",{},[]])" },
        { "<dict><key/><true/></dict>", R"({""=true})" },
        { "<string>a<![CDATA[<b>&amp;]]>c</string>", R"("a<b>&amp;c")" },
        { "<plist><true/></plist><plist>&x;</\x80\0"s, "true" },
        { "<dict><key>k</key><array/><key>l</key><true/><key>k</key><false/></dict>",
            R"({"k"=false,"l"=true})" },
        { "<dict><key>a\r\n</key><true/></dict>", "{\"a\r\n\"=true}" },
        { "\r\n<?xml version='1.0'?>\r\n<string>\r</string>", "\"\r\"" } };

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
        "<array><key>k</key></array>", "<plist><key>k</key></plist>",
        "<array><true></array></true>",                            // tags
        "<string>a<!--b--></string>", "<string>a<?b c?></string>", // inside a leaf
        "<string>a<true/></string>", "<integer>1<!--b--></integer>", "<true><!--b--></true>",
        "<key><dict/></key>", "<integer><![CDATA[1]]></integer>", "<data><![CDATA[]]></data>",
        "<integer/>", "<real/>", "<date/>", "<data/>", // short forms
        "<dict><key>\xC0\x80</key><true/></dict>", Plist( "<string>&nbsp;</string>" ),
        Plist( "<array>&nbsp;</array>" ) };

    for ( std::string const& text : rows )
        ExpectOutcome( text, "null" );
}

TEST( PropertyList, ReadsTheTextOfEachKindOfLeaf )
{
    struct
    {
        std::string element;
        std::vector<std::pair<std::string, std::string>> rows;
        std::vector<std::string> refused;
    } const leaves[] = {
        { "integer",
            { { "0", "i0" }, { " \n\t12", "i12" }, { "+12", "i12" }, { "-12", "i-12" },
                { "0xFf", "i255" }, { "-0X10", "i-16" }, { "00000000000000000000007", "i7" },
                { "-9223372036854775808", "i-9223372036854775808" },
                { "9223372036854775807", "i9223372036854775807" },
                { "9223372036854775808", "i9223372036854775808" },
                { "18446744073709551615", "i18446744073709551615" } },
            { "", " ", "-9223372036854775809", "18446744073709551616", "1 ", "- 1", "--1", "-",
                "0x", "0x-1", "1.0", "one" } },
        { "real",
            { { "1", "r1" }, { " .5", "r0.5" }, { "2.", "r2" }, { "+2.5", "r2.5" },
                { "-25e-1", "r-2.5" }, { "NaN", "rnan" }, { "INFinity", "rinf" },
                { "-infinity", "r-inf" }, { "+inf", "rinf" } },
            { "", "-nan", "infinit", "nan(1)", "1,5", "0x1p3", "+-1", "1 ", "1e", ".", "1e999" } },
        { "date",
            { { "2001-01-01T00:00:00Z", "@0" }, { "1970-01-01T00:00:00Z", "@-978307200" },
                { "2024-02-29T12:34:56Z", "@730902896" },
                { "1900-03-01T00:00:00Z", "@-3182198400" },
                { "0000-01-01T00:00:00Z", "@-63145526400" },
                { "9999-12-31T23:59:59Z", "@252423993599" }, { "2000-13-01T00:00:00Z", "@0" },
                { "2001-00-01T00:00:00Z", "@-2678400" }, { "2001-01-00T00:00:00Z", "@-86400" },
                { "2001-01-01T00:00:99Z", "@99" } },
            { "", " 2001-01-01T00:00:00Z", "2001-01-01T00:00:00Z ", "2001-01-01T00:00:00",
                "2001-01-01T00:00:00.0Z", "2001-1-01T00:00:00Z", "2001-01-01t00:00:00z" } },
        { "data",
            { { "YWJj/+8=", "<abc\xFF\xEF>" }, { "/w==", "<\xFF>" }, { "\n\tY W\r\nI =\n", "<ab>" },
                { " \n", "<>" } },
            { "AAE", "A===", "AA==AAAA", "AA=A", "=", "AA-_", "AAA\xC3\xA9" } },
        { "string",
            { { " \t a  ", "\" \t a  \"" }, { "a\nb", "\"a\nb\"" }, { "a\rb\r", "\"a\rb\r\"" },
                { "\r\na\r\n\r\rb\n\r", "\"\r\na\r\n\r\rb\n\r\"" },
                { "<![CDATA[a\r\nb\r]]>", "\"a\r\nb\r\"" },
                { "&#13;&#10;&#xD;&#xA;", "\"\r\n\r\n\"" },
                { "&lt;&gt;&amp;&apos;&quot;", R"("<>&'"")" },
                { "&#65;&#x42;&#x1F600;", "\"AB\U0001F600\"" }, { "\xC3\xA9", "\"\u00E9\"" } },
            { "&#xD800;", "&#0;", "&nbsp;", "\xC3(", "\xED\xA0\x80", "a\0b"s } } };

    for ( auto const& [element, rows, refused] : leaves )
    {
        for ( auto const& [text, expected] : rows )
            ExpectOutcome( Element( element, text ), expected );
        for ( std::string const& text : refused )
            ExpectOutcome( Element( element, text ), "null" );
    }
}

TEST( PropertyList, IsReadInTheEncodingOfItsMarkOrDeclaration )
{
    struct
    {
        std::string encoding, text, expected;
    } const rows[] = { { "UTF-8", "\xC3\xA9", "\"\u00E9\"" },
        { "ISO-8859-1", "\xE9", "\"\u00E9\"" }, { "US-ASCII", "e", "\"e\"" },
        { "US-ASCII", "\xE9", "null" },
        { "windows-1252", "\x80\x81\x92\xE9\r\n", "\"\u20AC\u0081\u2019\u00E9\r\n\"" },
        { "macintosh", "\xDB\x8E", "\"\u20AC\u00E9\"" }, { "KOI8-R", "\xC1", "\"\u0430\"" },
        { "ISO-8859-7", "\xFF", "null" }, { "Shift_JIS", "a\xB1", "\"a\uFF71\"" },
        { "Shift_JIS", "\x82\xA0", "null" }, { "UTF-7", "+AGE-", "null" },
        { "EBCDIC-US", "a", "null" }, { "UTF-16", "a", "null" },
        { "no-such-encoding", "a", "null" }, { "../../x", "a", "null" } };

    for ( auto const& row : rows )
    {
        SCOPED_TRACE( row.encoding + " " + row.text );
        EXPECT_EQ( Outcome( "<?xml version='1.0' encoding='" + row.encoding + "'?>" +
                            Element( "string", row.text ) ),
            row.expected );
    }
    ExpectOutcome( "\xEF\xBB\xBF<?xml version='1.0' encoding='ISO-8859-1'?><string>\xC3\xA9"
                   "</string>",
        "\"\u00E9\"" );
    ExpectOutcome( UTF16( "<string>a</string>", true ), "null" );
    ExpectOutcome( UTF16( "\n <string>a</string>", false ), "null" );
}

TEST( PropertyList, HasMutableStringsButNoKeysWithOption2AndMutableContainersAlways )
{
    auto const appendToItself = []( void const* string )
    { CFStringAppend( As<CFMutableStringRef>( string ), As<CFStringRef>( string ) ); };
    void const* key = nullptr;
    for ( CFOptionFlags const option : { 0u, 1u, 2u } )
    {
        Held<CFTypeRef> const list =
            Parsed( "<dict><key>k</key><string>v</string></dict>", option );
        auto const dictionary = As<CFMutableDictionaryRef>( list.get() );
        void const* const string = CFDictionaryGetValue( dictionary, String( "k" ).get() );
        if ( option == 2 )
            appendToItself( string );
        else
            EXPECT_DEATH( appendToItself( string ), "" ) << option;
        CFDictionaryGetKeysAndValues( dictionary, &key, nullptr );
        EXPECT_DEATH( appendToItself( key ), "" );
        CFDictionarySetValue( dictionary, String( "l" ).get(), kCFBooleanTrue );
        EXPECT_EQ( Describe( dictionary ),
            option == 2 ? R"({"k"="vv","l"=true})" : R"({"k"="v","l"=true})" );
    }
}

TEST( PropertyList, SaysInAnErrorWhichLineOfTheDocumentIsWrong )
{
    Held<CFDataRef> const data = Data( "\n\n<array>\n<nothing/>\n</array>" );
    CFStringRef error = nullptr;
    EXPECT_EQ( CFPropertyListCreateFromXMLData( nullptr, data.get(), 0, &error ), nullptr );
    EXPECT_EQ( Describe( Held<CFStringRef>( error ).get() ), R"("Line 4: unknown element")" );
}

} // namespace
