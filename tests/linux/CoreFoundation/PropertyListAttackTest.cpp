#include "tests/linux/CoreFoundation/Held.h"

#include "tests/support/AllocationFailure.h"

#include <CoreFoundation/CFArray.h>
#include <CoreFoundation/CFData.h>
#include <CoreFoundation/CFDictionary.h>
#include <CoreFoundation/CFPropertyList.h>
#include <CoreFoundation/CFString.h>

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
    for ( std::size_t i = 0; i < count; ++i )
    {
        all += text;
    }
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
    std::string const whole = kRich;
    ASSERT_TRUE( IsRead( whole ) );
    for ( std::size_t length = 0; length < whole.size(); ++length )
    {
        EXPECT_FALSE( IsRead( whole.substr( 0, length ) ) ) << length;
    }
}

TEST( HostilePropertyList, MayNest512LevelsAndNotOneMore )
{
    EXPECT_TRUE( IsRead( Nested( 512 ) ) );
    EXPECT_FALSE( IsRead( Nested( 513 ) ) );
    EXPECT_TRUE( IsRead( "<plist>" + Nested( 511 ) + "</plist>" ) );
    EXPECT_FALSE( IsRead( "<plist>" + Nested( 512 ) + "</plist>" ) );
    EXPECT_FALSE( IsRead( Nested( 100000 ) ) );
    EXPECT_FALSE( IsRead( Repeat( "<dict><key>k</key>", 100000 ) ) );
    EXPECT_FALSE( IsRead( Repeat( "<string>", 100000 ) ) );
}

TEST( HostilePropertyList, CannotDefineOrFetchEntities )
{
    for ( std::string const doctype : {
              "[]",
              "[<!ENTITY a \"a\">]",
              "[<!ENTITY a SYSTEM \"file:///etc/hostname\">]",
              "[<!ENTITY % p SYSTEM \"file:///etc/hostname\"> %p;]",
              "SYSTEM \"file:///etc/hostname\" [<!ENTITY a \"a\">]",
              "[<!ENTITY b \"aaaaaaaaaa\"><!ENTITY a \"&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;\">]",
          } )
    {
        std::string const start = "<!DOCTYPE plist " + doctype + "><string>";
        EXPECT_FALSE( IsRead( start + "&a;</string>" ) ) << doctype;
        EXPECT_FALSE( IsRead( start + "</string>" ) ) << doctype;
    }
    EXPECT_FALSE(
        IsRead( "<!DOCTYPE plist SYSTEM \"file:///etc/hostname\"><string>&a;</string>" ) );
}

TEST( HostilePropertyList, IsRefusedBeyond16MiB )
{
    std::string text = "<plist><true/></plist>";
    text.resize( 16 * 1024 * 1024, ' ' );
    EXPECT_TRUE( IsRead( text ) );
    text += ' ';
    EXPECT_FALSE( IsRead( text ) );
}

// Twelve megabytes and a hundred thousand keys; the time limit of the test program is far above
// what a linear parser needs and far below what a quadratic one would.
TEST( HostilePropertyList, IsReadInLinearTime )
{
    std::string text = "<dict>";
    for ( int i = 0; i < 100000; ++i )
    {
        text += "<key>key number " + std::to_string( i ) + "</key><string>" +
                std::string( 60, 'v' ) + "</string>";
    }
    text += "<key>long</key><string>" + Repeat( "line\r\n", 300000 ) + "</string></dict>";
    Held<CFTypeRef> const list = Parsed( text );
    ASSERT_NE( list, nullptr );
    auto const dictionary = static_cast<CFDictionaryRef>( list.get() );
    EXPECT_EQ( CFDictionaryGetCount( dictionary ), 100001 );
    void const* const value = CFDictionaryGetValue( dictionary, String( "long" ).get() );
    EXPECT_EQ( CFStringGetLength( static_cast<CFStringRef>( value ) ), 6 * 300000 );
}

TEST( WithoutMemory, ReadingIsAnErrorWithAString )
{
    Held<CFTypeRef> const expected = Parsed( kRich );
    auto const read = []( CFDataRef data, Held<CFTypeRef>& object )
    {
        CFStringRef error = nullptr;
        object.reset( CFPropertyListCreateFromXMLData( nullptr, data, 2, &error ) );
        EXPECT_NE( object == nullptr, error == nullptr );
        return Held<CFStringRef>( error );
    };
    Held<CFDataRef> const good = Data( kRich );
    int const failures = FailEachAllocation(
        [&]
        {
            Held<CFTypeRef> object;
            if ( Held<CFStringRef> const error = read( good.get(), object ) )
            {
                EXPECT_EQ( Describe( error.get() ), R"("Out of memory")" );
                throw std::bad_alloc();
            }
            EXPECT_TRUE( CFEqual( object.get(), expected.get() ) );
        } );
    EXPECT_GT( failures, 20 );
    Held<CFDataRef> const bad = Data( "<dict>" );
    for ( long failing = 1; failing < 20; ++failing )
    {
        Held<CFTypeRef> object;
        AllocationFailure const failure( failing );
        EXPECT_NE( read( bad.get(), object ), nullptr ) << failing;
    }
}

TEST( WithoutMemory, CreatingAnswersNullAndLeavesNothingBehind )
{
    Held<CFStringRef> const text = String( "a text that is too long to lie inside its object" );
    CFRange const all = CFRangeMake( 0, CFStringGetLength( text.get() ) );
    std::u16string units( static_cast<std::size_t>( all.length ), u'\0' );
    auto* const unitsBegin = reinterpret_cast<UniChar*>( units.data() );
    CFStringGetCharacters( text.get(), all, unitsBegin );
    void const* values[] = { text.get() };

    std::function<CFTypeRef()> const creations[] = { [&]
        { return CFStringCreateWithCharacters( nullptr, unitsBegin, all.length ); },
        [] { return CFStringCreateWithCString( nullptr, "a text of some length", 0x0202 ); },
        [] { return CFDataCreate( nullptr, reinterpret_cast<UInt8 const*>( "abcd" ), 4 ); },
        [&]
        {
            return CFDictionaryCreate( nullptr, values, values, 1, &kCFTypeDictionaryKeyCallBacks,
                &kCFTypeDictionaryValueCallBacks );
        } };
    for ( std::function<CFTypeRef()> const& create : creations )
    {
        int const failures = FailEachAllocation(
            [&create]
            {
                if ( Held<CFTypeRef> const object( create() ); object == nullptr )
                {
                    throw std::bad_alloc();
                }
            } );
        EXPECT_GT( failures, 0 ) << &create - creations;
        EXPECT_EQ( CFGetRetainCount( text.get() ), 1 );
    }
}

TEST( WithoutMemory, AddingLeavesTheContainerAsItWas )
{
    Held<CFTypeRef> const list = Parsed( "<array><dict/></array>" );
    Held<CFTypeRef> const strings = Parsed( "<array><string>12345678</string></array>", 2 );
    auto const array = static_cast<CFMutableArrayRef>( const_cast<void*>( list.get() ) );
    auto const dictionary = static_cast<CFMutableDictionaryRef>(
        const_cast<void*>( CFArrayGetValueAtIndex( array, 0 ) ) );
    auto const string = static_cast<CFMutableStringRef>( const_cast<void*>(
        CFArrayGetValueAtIndex( static_cast<CFArrayRef>( strings.get() ), 0 ) ) );
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
    EXPECT_EQ( Describe( array ) + Describe( string ), R"([{}]"12345678")" );
    EXPECT_EQ( CFGetRetainCount( value.get() ), 1 );
}

} // namespace
