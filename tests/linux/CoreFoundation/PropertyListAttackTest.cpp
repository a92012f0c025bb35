#include "tests/linux/CoreFoundation/Held.h"

#include "tests/support/AllocationFailure.h"

#include <functional>
#include <gtest/gtest.h>
#include <new>
#include <string>

namespace
{

bool IsRead( std::string_view text )
{
    return Parsed( text ) != nullptr;
}

std::string Repeat( std::string_view text, std::size_t count )
{
    std::string all;
    while ( count-- > 0 )
        all += text;
    return all;
}

std::string Nested( std::size_t levels )
{
    return Repeat( "<array>", levels ) + Repeat( "</array>", levels );
}

constexpr char kRich[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n"
                         "<!DOCTYPE plist SYSTEM \"file:///dev/zero\">\n"
                         "<plist version=\"1.0\"><!-- c --><dict><key>a&amp;\xC3\xA9</key>"
                         "<array><string>x\r\n<![CDATA[y]]></string><integer>-12</integer>"
                         "<real>1.5</real><true/><date>2024-02-29T12:34:56Z</date>"
                         "<data>AAEC\n/w==</data><dict/><string/></array>"
                         "<key>b</key><false></false></dict></plist>";

TEST( HostilePropertyList, IsAnErrorTruncatedAnywhere )
{
    std::string_view const whole = kRich;
    ASSERT_TRUE( IsRead( whole ) );
    for ( std::size_t length = 0; length < whole.size(); ++length )
        EXPECT_FALSE( IsRead( whole.substr( 0, length ) ) ) << length;
}

TEST( HostilePropertyList, MayNest512LevelsAndHave16MiBAndNotOneMore )
{
    EXPECT_TRUE( IsRead( Nested( 512 ) ) );
    EXPECT_TRUE( IsRead( Element( "plist", Nested( 511 ) ) ) );
    std::string text = "<true/>";
    text.resize( 16 * 1024 * 1024, ' ' );
    EXPECT_TRUE( IsRead( text ) );
    for ( std::string const& refused :
        { text + ' ', Nested( 513 ), Element( "plist", Nested( 512 ) ), Repeat( "<array>", 100000 ),
            Repeat( "<dict><key>k</key>", 100000 ), Repeat( "<string>", 100000 ) } )
        EXPECT_FALSE( IsRead( refused ) ) << refused.substr( 0, 30 );
}

TEST( HostilePropertyList, CannotDefineOrFetchEntities )
{
    std::string const file = "SYSTEM \"file:///etc/hostname\"";
    for ( std::string const& doctype : { std::string( "[]" ), "[<!ENTITY a " + file + ">]",
              "[<!ENTITY % p " + file + "> %p;]", file + " [<!ENTITY a \"a\">]", file } )
    {
        std::string const start = "<!DOCTYPE plist " + doctype + "><string>";
        EXPECT_FALSE( IsRead( start + "&a;</string>" ) ) << doctype;
        EXPECT_EQ( doctype == file, IsRead( start + "</string>" ) ) << doctype;
    }
}

// Twelve megabytes and a hundred thousand keys; the time limit of the test program is far above
// what a linear parser needs and far below what a quadratic one would.
TEST( HostilePropertyList, IsReadInLinearTime )
{
    std::string text = "<dict>";
    for ( int i = 0; i < 100000; ++i )
        text += "<key>key number " + std::to_string( i ) + "</key><string>" +
                std::string( 60, 'v' ) + "</string>";
    text += "<key>long</key><string>" + Repeat( "line\r\n", 300000 ) + "</string></dict>";
    Held<CFTypeRef> const list = Parsed( text );
    ASSERT_NE( list, nullptr );
    EXPECT_EQ( CFDictionaryGetCount( As<CFDictionaryRef>( list.get() ) ), 100001 );
}

TEST( WithoutMemory, CreatingAnswersNullAndLeavesNothingBehind )
{
    Held<CFStringRef> const text = String( "a text that is too long for its object, \xC3\xA9" );
    Held<CFURLRef> const url( CFURLCreateWithFileSystemPath( nullptr, text.get(), 0, true ) );
    Held<CFDataRef> const rich = Data( kRich );
    Held<CFTypeRef> const expected = Parsed( kRich );
    void const* values[] = { text.get() };
    UniChar const units[40] = {};
    std::function<CFTypeRef()> const creations[] = { [&]
        { return CFStringCreateWithCharacters( nullptr, units, 40 ); },
        [] { return CFStringCreateWithCString( nullptr, "a text of some length", 0x0202 ); },
        [] { return CFDataCreate( nullptr, reinterpret_cast<UInt8 const*>( "abcd" ), 4 ); },
        [&]
        {
            return CFDictionaryCreate( nullptr, values, values, 1, &kCFTypeDictionaryKeyCallBacks,
                &kCFTypeDictionaryValueCallBacks );
        },
        [&]
        { return CFURLCreateCopyAppendingPathComponent( nullptr, url.get(), text.get(), true ); },
        [&] { return CFURLCreateCopyDeletingLastPathComponent( nullptr, url.get() ); },
        [&] { return CFURLCopyLastPathComponent( url.get() ); },
        [&]
        {
            CFStringRef error = nullptr;
            CFTypeRef const list =
                CFPropertyListCreateFromXMLData( nullptr, rich.get(), 2, &error );
            EXPECT_EQ( list == nullptr, error != nullptr );
            EXPECT_TRUE( list == nullptr || CFEqual( list, expected.get() ) );
            Held<CFStringRef> const held( error );
            EXPECT_TRUE( error == nullptr || Text( error ) == "Out of memory" );
            return list;
        } };
    for ( std::function<CFTypeRef()> const& create : creations )
    {
        int const failures = FailEachAllocation(
            [&create]
            {
                if ( Held<CFTypeRef> const object( create() ); object == nullptr )
                    throw std::bad_alloc();
            } );
        EXPECT_GT( failures, 0 ) << &create - creations;
        EXPECT_EQ( CFGetRetainCount( text.get() ), 1 );
    }
    Held<CFDataRef> const bad = Data( "<dict>" );
    for ( long failing = 1; failing < 20; ++failing )
    {
        CFStringRef error = nullptr;
        AllocationFailure const failure( failing );
        EXPECT_EQ( CFPropertyListCreateFromXMLData( nullptr, bad.get(), 0, &error ), nullptr );
        EXPECT_NE( Held<CFStringRef>( error ), nullptr ) << failing;
    }
}

TEST( WithoutMemory, AddingLeavesTheContainerAsItWas )
{
    Held<CFTypeRef> const list = Parsed( "<array><dict/><string>12345678</string></array>", 2 );
    auto const array = As<CFMutableArrayRef>( list.get() );
    auto const dictionary = As<CFMutableDictionaryRef>( CFArrayGetValueAtIndex( array, 0 ) );
    auto const string = As<CFMutableStringRef>( CFArrayGetValueAtIndex( array, 1 ) );
    Held<CFStringRef> const value = String( "a text longer than the room that is left" );
    std::function<void()> const additions[] = { [&] { CFArrayAppendValue( array, value.get() ); },
        [&] { CFDictionarySetValue( dictionary, value.get(), value.get() ); },
        [&] { CFStringAppend( string, value.get() ); } };
    for ( std::function<void()> const& add : additions )
    {
        AllocationFailure const failure( 1 );
        add();
        EXPECT_TRUE( failure.HasFailed() );
    }
    EXPECT_EQ( Describe( array ), R"([{},"12345678"])" );
    EXPECT_EQ( CFGetRetainCount( value.get() ), 1 );
}

} // namespace
