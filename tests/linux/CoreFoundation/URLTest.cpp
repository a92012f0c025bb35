#include "linux/CoreFoundation/CFURLObject.h"

#include "tests/linux/CoreFoundation/Held.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace
{

using URL = Held<CFURLRef>;
using namespace std::string_literals;

// The text of a string that a "Copy" function gave.
std::string Taken( CFStringRef string )
{
    Held<CFStringRef> const owner( string );
    return string != nullptr ? Text( string ) : "(null)";
}

std::string Text( URL const& url )
{
    return url ? Text( CFURLGetString( url.get() ) ) : "(null)";
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
    char const* const rows[][2] = { { "/a//b/./../c", "file:///a//b/./../c" }, { "..", ".." },
        { "~", "~" }, { "C:/x", "C:/x" }, { "file:///a", "file:///a" },
        { "/a%20b c", "file:///a%2520b%20c" }, { "/!$&'()*+,-.:=@_~", "file:///!$&'()*+,-.:=@_~" },
        { "/;?#[]\"<>\\^`{|}", "file:///%3B%3F%23%5B%5D%22%3C%3E%5C%5E%60%7B%7C%7D" },
        { "/\xc3\xa9\x7f\n", "file:///%C3%A9%7F%0A" } };
    for ( auto const& [path, text] : rows )
        for ( bool const isDirectory : { false, true } )
        {
            URL const url = FromPath( path, isDirectory );
            EXPECT_EQ( text + std::string( isDirectory, '/' ), Text( url ) );
            EXPECT_EQ( path, Path( url ) );
        }
    // The path, its URL as a directory and as a file: the flag alone decides.
    char const* const slashes[][3] = { { "/", "file:///", "file:///" },
        { "//", "file:////", "file:///" }, { "/a///", "file:///a///", "file:///a" },
        { "/usr/bin/env", "file:///usr/bin/env/", "file:///usr/bin/env" }, { "", "./", "." } };
    for ( auto const& [path, folder, file] : slashes )
    {
        EXPECT_EQ( folder, Text( FromPath( path, true ) ) );
        EXPECT_EQ( file, Text( FromPath( path, false ) ) );
    }
}

TEST( URLOfPath, IsRefusedForWhatIsNoPathButCarriesBytesThatAreNoText )
{
    UniChar const unpaired[] = { '/', 0xd800, 'a' };
    Held<CFStringRef> const surrogate( CFStringCreateWithCharacters( nullptr, unpaired, 3 ) );
    EXPECT_EQ( nullptr, CFURLCreateWithFileSystemPath( nullptr, surrogate.get(), 0, true ) );
    EXPECT_EQ( nullptr, CFURLCreateWithFileSystemPath( nullptr, String( "/a" ).get(), 1, true ) );
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

    EXPECT_EQ( "x y/../z", Bytes( url, false ) );
    EXPECT_EQ( folder.Path( "z" ), Bytes( url ) );
    EXPECT_EQ( folder.Path(), Bytes( here ) );
    EXPECT_EQ( nullptr, nowhere );
    EXPECT_EQ( "/b/a:b", Bytes( FromPath( "a:b", true, FromPath( "/b" ).get() ) ) );
}

TEST( URLOfText, IsRefusedForIllegalCharactersOnlyAndYieldsItsPathWithEscapesUndone )
{
    for ( char const character : " \x01\x7f\xe9\"<>\\^`{|}%\0"s )
        EXPECT_EQ( nullptr, FromText( "a"s + character ) ) << character;
    for ( char const* text : { "%4", "%4g", "a#b#c", "\xc3\xa9" } )
        EXPECT_EQ( nullptr, FromText( text ) ) << text;
    char const* const none = "(null)";
    // The text, its path and the last component of that.
    char const* const rows[][3] = { { "", "", "" }, { "file:///", "/", "/" },
        { "file:///a/b%20c/", "/a/b c", "b c" }, { "file://host/a?q#f", "/a", "a" },
        { "FiLe:///A/../b", "/A/../b", "b" }, { "file:///a//", "/a/", "a" },
        { "http://h:1", "", "" }, { "a%2fb", "a/b", "a/b" }, { "file:///%ff", none, none },
        { "file:///a%00b", none, none }, { "mailto:a@b", none, none }, { "[]", "[]", "[]" },
        { "!$&'()*+,;=:@-._~", "!$&'()*+,;=:@-._~", "!$&'()*+,;=:@-._~" } };
    for ( auto const& [text, path, last] : rows )
    {
        URL const url = FromText( text );
        EXPECT_EQ( text, Text( url ) );
        EXPECT_EQ( path, Path( url ) ) << text;
        EXPECT_EQ( last, Taken( CFURLCopyLastPathComponent( url.get() ) ) ) << text;
    }
}

TEST( URLOfText, ResolvesReferencesAsTheStandardSaysButForWhatClimbsAboveTheRoot )
{
    char const* const base = "http://a/b/c/d;p?q"; // as in RFC 3986, 5.4
    char const* const rows[][3] = { { base, "g:h", "g:h" }, { base, "./g/", "http://a/b/c/g/" },
        { base, "//g", "http://g" }, { base, "?y", "http://a/b/c/d;p?y" },
        { base, "#s", "http://a/b/c/d;p?q#s" }, { base, "", "http://a/b/c/d;p?q" },
        { base, "g?y/../x", "http://a/b/c/g?y/../x" }, { base, "../../../g", "http://a/../g" },
        { "http://h", "x", "http://h/x" } };
    for ( auto const& [from, reference, absolute] : rows )
        EXPECT_EQ(
            absolute, AbsoluteParts( *FromText( reference, FromText( from ).get() ) ).Text() );
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
        { "", "x", "x", "../" }, { "mailto:a", "x", "(null)", "(null)" } };
    auto const add = []( URL const& url, char const* component, bool isFolder )
    {
        return URL( CFURLCreateCopyAppendingPathComponent(
            nullptr, url.get(), String( component ).get(), isFolder ) );
    };
    auto const removeLast = []( URL const& url )
    { return Text( URL( CFURLCreateCopyDeletingLastPathComponent( nullptr, url.get() ) ) ); };
    for ( auto const& [text, component, added, removed] : rows )
    {
        URL const url = FromText( text );
        EXPECT_EQ( added, Text( add( url, component, false ) ) );
        EXPECT_EQ( removed, removeLast( url ) );
    }
    URL const query = FromText( "http://h?q#f" );
    EXPECT_EQ( "http://h/x/?q#f", Text( add( query, "x", true ) ) );
    EXPECT_EQ( "http://h/../?q#f", removeLast( query ) );
    EXPECT_EQ( "", Text( add( FromText( "" ), "/", true ) ) ) << "does not become the root";
    URL const based = FromPath( "a", true, FromPath( "/b" ).get() );
    EXPECT_EQ( "/b/a/x", Bytes( add( based, "x", false ) ) ) << "the base is kept";
}

TEST( URLs, AreEqualByTextAndBase )
{
    char const* const rows[][2] = { { "a", "file:///b" }, { "a", "file:///c" }, { "a", "" },
        { "b", "" }, { "file:///b/a", "" }, { "file:///b/a/", "" }, { "file:///b/x/../a", "" } };
    auto const make = []( auto const& row )
    { return FromText( row[0], *row[1] == 0 ? nullptr : FromText( row[1] ).get() ); };
    for ( auto const& one : rows )
        for ( auto const& other : rows )
        {
            URL const a = make( one ), b = make( other );
            EXPECT_EQ( &one == &other, CFEqual( a.get(), b.get() ) != 0 );
            EXPECT_TRUE( &one != &other || CFHash( a.get() ) == CFHash( b.get() ) );
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
    }
}
