#include "linux/CoreFoundation/CFURLObject.h"

#include "tests/linux/CoreFoundation/Held.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <new>
#include <string>
#include <vector>

namespace
{

using URL = Held<CFURLRef>;
using namespace std::string_literals;

// The text of a string that a "Copy" function gave.
std::string Taken( CFStringRef string )
{
    Held<CFStringRef> const owner( string );
    std::string const text = string != nullptr ? Describe( string ) : "";
    return string != nullptr ? text.substr( 1, text.size() - 2 ) : "(null)";
}

std::string Text( URL const& url )
{
    return url ? Taken( static_cast<CFStringRef>( CFRetain( CFURLGetString( url.get() ) ) ) )
               : "(null)";
}

URL FromPath( std::string_view path, bool isDirectory = true, CFURLRef base = nullptr )
{
    return URL( CFURLCreateWithFileSystemPathRelativeToBase(
        nullptr, String( path ).get(), kCFURLPOSIXPathStyle, isDirectory, base ) );
}

URL FromText( std::string_view text, CFURLRef base = nullptr )
{
    return URL( CFURLCreateWithString( nullptr, String( text ).get(), base ) );
}

std::string Path( URL const& url )
{
    return Taken( CFURLCopyFileSystemPath( url.get(), kCFURLPOSIXPathStyle ) );
}

std::string Bytes( URL const& url, bool resolve = true )
{
    UInt8 buffer[4096];
    return CFURLGetFileSystemRepresentation( url.get(), resolve, buffer, sizeof buffer )
               ? reinterpret_cast<char const*>( buffer )
               : "(refused)";
}

} // namespace

TEST( URLOfPath, EscapesOddCharactersAndGivesThePathBack )
{
    char const* const rows[][2] = { { "/a", "file:///a" },
        { "/a//b/./../c", "file:///a//b/./../c" }, { "a", "a" }, { ".", "." }, { "..", ".." },
        { "~", "~" }, { "a:b", "a:b" }, { "C:/x", "C:/x" }, { "file:///a", "file:///a" },
        { "/a%20b c", "file:///a%2520b%20c" }, { "/!$&'()*+,-.:=@_~", "file:///!$&'()*+,-.:=@_~" },
        { "/;?#[]\"<>\\^`{|}", "file:///%3B%3F%23%5B%5D%22%3C%3E%5C%5E%60%7B%7C%7D" },
        { "/\xc3\xa9\x7f\n", "file:///%C3%A9%7F%0A" } };
    for ( auto const& [path, text] : rows )
    {
        EXPECT_EQ( text, Text( FromPath( path, false ) ) );
        EXPECT_EQ( text + "/"s, Text( FromPath( path, true ) ) );
        EXPECT_EQ( path, Path( FromPath( path, false ) ) );
        EXPECT_EQ( path, Path( FromPath( path, true ) ) );
    }
}

TEST( URLOfPath, TakesItsSlashFromTheDirectoryFlagAlone )
{
    char const* const rows[][3] = { { "/", "file:///", "file:///" },
        { "//", "file:////", "file:///" }, { "/a/", "file:///a/", "file:///a" },
        { "/a///", "file:///a///", "file:///a" },
        { "/usr/bin/env", "file:///usr/bin/env/", "file:///usr/bin/env" }, { "", "./", "." } };
    for ( auto const& [path, folder, file] : rows )
    {
        EXPECT_EQ( folder, Text( FromPath( path, true ) ) );
        EXPECT_EQ( file, Text( FromPath( path, false ) ) );
    }
    EXPECT_EQ( "/", Path( FromPath( "/" ) ) );
}

TEST( URLOfPath, IsRefusedForWhatIsNoPathButCarriesBytesThatAreNoText )
{
    UniChar const unpaired[] = { '/', 0xd800, 'a' };
    Held<CFStringRef> const surrogate( CFStringCreateWithCharacters( nullptr, unpaired, 3 ) );
    Held<CFStringRef> const good = String( "/a" );
    EXPECT_EQ( nullptr, CFURLCreateWithFileSystemPath( nullptr, surrogate.get(), 0, true ) );
    EXPECT_EQ( nullptr, CFURLCreateWithFileSystemPath( nullptr, good.get(), 1, true ) );
    EXPECT_EQ( nullptr, CFURLCreateWithFileSystemPath( nullptr, nullptr, 0, true ) );
    EXPECT_EQ( nullptr, FromPath( "/a\0b"s ) );
    URL const url( CreateFileURL( "/caf\xff/e\xcc\x81", false ) );
    EXPECT_EQ( "file:///caf%FF/e%CC%81", Text( url ) );
    EXPECT_EQ( "(null)", Path( url ) );
    EXPECT_EQ( "/caf\xff/e\xcc\x81", Bytes( url ) );
}

TEST( URLOfPath, OfARelativePathStaysBoundToTheDirectoryOfItsMaking )
{
    TemporaryFolder const folder;
    std::filesystem::path const before = std::filesystem::current_path();
    std::filesystem::current_path( folder.Path() );
    URL const url = FromPath( "x y/../z" );
    URL const here = FromPath( "" );
    std::filesystem::create_directory( "gone" );
    std::filesystem::current_path( "gone" );
    std::filesystem::remove( folder.Path( "gone" ) );
    URL const nowhere = FromPath( "x" );
    std::filesystem::current_path( before );

    EXPECT_EQ( "x%20y/../z/", Text( url ) );
    EXPECT_EQ( "x y/../z", Path( url ) );
    EXPECT_EQ( "x y/../z", Bytes( url, false ) );
    EXPECT_EQ( folder.Path( "z" ), Bytes( url ) );
    EXPECT_EQ( folder.Path(), Bytes( here ) );
    EXPECT_EQ( nullptr, nowhere );
    EXPECT_EQ( "/b/a:b", Bytes( FromPath( "a:b", true, FromPath( "/b" ).get() ) ) );
    EXPECT_EQ( "/x/../y", Bytes( FromPath( "/x/../y", true, FromPath( "/b" ).get() ) ) );
}

TEST( URLOfText, IsRefusedForIllegalCharactersOnly )
{
    for ( std::string const& text : { " "s, "a b"s, "\x01"s, "\x7f"s, "\xc3\xa9"s, "\""s, "<"s,
              ">"s, "\\"s, "^"s, "`"s, "{"s, "|"s, "}"s, "%"s, "%4"s, "%4g"s, "a#b#c"s, "a\0b"s } )
        EXPECT_EQ( nullptr, FromText( text ) ) << text;
    for ( char const* text : { "", "%4f", "a#b", "FiLe:///A", "http://h:1/p?q#f", "mailto:a@b",
              "[]", "!$&'()*+,;=:@/?-._~" } )
        EXPECT_EQ( text, Text( FromText( text ) ) );
}

TEST( URLOfText, YieldsItsPathAndLastComponentWithEscapesUndone )
{
    char const* const rows[][3] = { { "file:///", "/", "/" },
        { "file:///a/b%20c/", "/a/b c", "b c" }, { "file://host/a?q#f", "/a", "a" },
        { "FILE:///a/../b", "/a/../b", "b" }, { "file:///a//", "/a/", "a" },
        { "http://host", "", "" }, { "a%2fb", "a/b", "a/b" }, { "file:///%ff", "(null)", "(null)" },
        { "file:///a%00b", "(null)", "(null)" }, { "mailto:a", "(null)", "(null)" },
        { "", "", "" } };
    for ( auto const& [text, path, last] : rows )
    {
        URL const url = FromText( text );
        EXPECT_EQ( path, Path( url ) ) << text;
        EXPECT_EQ( last, Taken( CFURLCopyLastPathComponent( url.get() ) ) ) << text;
    }
    EXPECT_EQ( "(refused)", Bytes( FromText( "file:///a%00b" ) ) );
}

TEST( URLOfText, ResolvesReferencesAsTheStandardSaysButForWhatClimbsAboveTheRoot )
{
    // RFC 3986, 5.4, and then file URLs.
    char const* const standard = "http://a/b/c/d;p?q";
    char const* const rows[][3] = { { standard, "g:h", "g:h" }, { standard, "g", "http://a/b/c/g" },
        { standard, "./g/", "http://a/b/c/g/" }, { standard, "/g", "http://a/g" },
        { standard, "//g", "http://g" }, { standard, "?y", "http://a/b/c/d;p?y" },
        { standard, "g?y#s", "http://a/b/c/g?y#s" }, { standard, "#s", "http://a/b/c/d;p?q#s" },
        { standard, ";x", "http://a/b/c/;x" }, { standard, "", standard },
        { standard, ".", "http://a/b/c/" }, { standard, "..", "http://a/b/" },
        { standard, "../../g", "http://a/g" }, { standard, "g;x=1/../y", "http://a/b/c/y" },
        { standard, "g?y/../x", "http://a/b/c/g?y/../x" },
        { standard, "../../../g", "http://a/../g" }, { "http://h", "x", "http://h/x" },
        { "file:///a/b", "x", "file:///a/x" }, { "file:///a/b", "../../x", "file:///../x" },
        { "file:///a/b/", "../../../../x", "file:///../../x" },
        { "file:///a/b/", "./c/.", "file:///a/b/c/" },
        { "file:///a/b/", "c//../d", "file:///a/b/c/d" } };
    for ( auto const& [base, reference, absolute] : rows )
    {
        URL const url = FromText( reference, FromText( base ).get() );
        EXPECT_EQ( absolute, AbsoluteParts( *url ).Text() ) << base << " + " << reference;
    }
}

TEST( URLComponents, AreAddedAndRemovedByText )
{
    // The URL, the component, the URL with it as a file, the URL one level up.
    char const* const rows[][4] = { { "file:///", "x", "file:///x", "file:///../" },
        { "file:///a", "x y", "file:///a/x%20y", "file:///" },
        { "file:///a/b/", "x//", "file:///a/b/x", "file:///a/" },
        { "file:///a/.", "..", "file:///a/./..", "file:///a/../" },
        { "file:///a/..", ".", "file:///a/../.", "file:///a/../../" },
        { "..", "x", "../x", "../../" }, { "a", "%", "a/%25", "./" }, { "./", "x", "./x", "../" },
        { "", "x", "x", "../" } };
    auto const add = []( URL const& url, char const* component, bool isFolder )
    {
        return Text( URL( CFURLCreateCopyAppendingPathComponent(
            nullptr, url.get(), String( component ).get(), isFolder ) ) );
    };
    auto const removeLast = []( URL const& url )
    { return Text( URL( CFURLCreateCopyDeletingLastPathComponent( nullptr, url.get() ) ) ); };
    for ( auto const& [text, component, added, removed] : rows )
    {
        URL const url = FromText( text );
        EXPECT_EQ( added, add( url, component, false ) );
        EXPECT_EQ( added + "/"s, add( url, component, true ) );
        EXPECT_EQ( removed, removeLast( url ) );
    }
    URL const query = FromText( "http://h?q#f" );
    EXPECT_EQ( "http://h/x/?q#f", add( query, "x", true ) );
    EXPECT_EQ( "http://h/../?q#f", removeLast( query ) );
    EXPECT_EQ( "", add( FromText( "" ), "/", true ) ) << "does not become the root";
    EXPECT_EQ( "(null)", add( FromText( "mailto:a" ), "x", true ) );
    EXPECT_EQ( "(null)", removeLast( FromText( "mailto:a" ) ) );
    URL const child( CFURLCreateCopyAppendingPathComponent( nullptr,
        FromPath( "a", true, FromPath( "/b" ).get() ).get(), String( "x" ).get(), false ) );
    EXPECT_EQ( "/b/a/x", Bytes( child ) ) << "the base is kept";
}

TEST( URLs, AreEqualByTextAndBase )
{
    auto const make = []
    {
        std::vector<URL> urls;
        for ( char const* base : { "/b", "/c" } )
            urls.push_back( FromPath( "a", false, FromPath( base ).get() ) );
        for ( char const* text : { "file:///b/a", "file:///b/a/", "file:///b/x/../a", "a", "b" } )
            urls.push_back( FromText( text ) );
        return urls;
    };
    std::vector<URL> const urls = make();
    std::vector<URL> const others = make();
    for ( std::size_t i = 0; i < urls.size(); ++i )
    {
        for ( std::size_t j = 0; j < urls.size(); ++j )
            EXPECT_EQ( i == j, CFEqual( urls[i].get(), others[j].get() ) != 0 ) << i << j;
        EXPECT_EQ( CFHash( urls[i].get() ), CFHash( others[i].get() ) );
    }
}

TEST( URLs, WriteTheirBytesWholeOrNotAtAll )
{
    URL const url = FromPath( "/abc" );
    for ( CFIndex room = 0; room < 8; ++room )
    {
        std::string buffer( 8, 'x' );
        auto* const bytes = reinterpret_cast<UInt8*>( buffer.data() );
        EXPECT_EQ(
            room >= 5, CFURLGetFileSystemRepresentation( url.get(), true, bytes, room ) != 0 );
        EXPECT_EQ( room >= 5 ? "/abc\0xxx"s : "xxxxxxxx"s, buffer ) << room;
        EXPECT_FALSE( CFURLGetFileSystemRepresentation( nullptr, true, bytes, 8 ) );
    }
}

TEST( URLs, AnswerNullAndLeakNothingWhenMemoryRunsOut )
{
    URL const base = FromPath( "/a folder with a rather long name/" );
    Held<CFStringRef> const name = String( "another rather long name, \xc3\xa9" );
    std::function<CFTypeRef()> const calls[] = { [&]
        { return CFURLCreateWithFileSystemPath( nullptr, name.get(), 0, true ); },
        [&]
        { return CFURLCreateCopyAppendingPathComponent( nullptr, base.get(), name.get(), true ); },
        [&] { return CFURLCreateCopyDeletingLastPathComponent( nullptr, base.get() ); },
        [&] { return CFURLCopyFileSystemPath( base.get(), 0 ); },
        [&] { return CFURLCopyLastPathComponent( base.get() ); } };
    for ( auto const& call : calls )
        EXPECT_LT( 1, FailEachAllocation(
                          [&call]
                          {
                              CFTypeRef const made = call();
                              if ( made == nullptr )
                                  throw std::bad_alloc();
                              CFRelease( made );
                          } ) );
}
