#include "tests/linux/CoreFoundation/Held.h"

#include "tests/support/AllocationFailure.h"

#include <gtest/gtest.h>
#include <iomanip>
#include <set>
#include <sstream>
#include <thread>
#include <vector>

namespace
{

// The number as a Target, which all of the types name; a "~" says that something is lost.
template<class Target>
std::string Read( CFNumberRef number, std::vector<CFNumberType> const& types )
{
    std::set<std::string> answers;
    for ( CFNumberType const type : types )
    {
        Target value{};
        bool const isExact = CFNumberGetValue( number, type, &value );
        std::ostringstream out;
        out << ( isExact ? " " : " ~" ) << std::setprecision( 17 ) << +value;
        answers.insert( out.str() );
    }
    EXPECT_EQ( answers.size(), 1U );
    return *answers.begin();
}

std::string ReadAsEachType( std::string const& element )
{
    Held<CFTypeRef> const held = Parsed( element );
    auto const number = As<CFNumberRef>( held.get() );
    return Read<SInt8>( number, { kCFNumberSInt8Type, kCFNumberCharType } ) +
           Read<SInt16>( number, { kCFNumberSInt16Type, kCFNumberShortType } ) +
           Read<SInt32>( number, { kCFNumberSInt32Type, kCFNumberIntType } ) +
           Read<SInt64>( number, { kCFNumberSInt64Type, kCFNumberLongType, kCFNumberLongLongType,
                                     kCFNumberCFIndexType } ) +
           Read<float>( number, { kCFNumberFloat32Type, kCFNumberFloatType } ) +
           Read<double>( number, { kCFNumberFloat64Type, kCFNumberDoubleType } ) +
           Read<SInt8>( number, { 0, 15 } );
}

TEST( Number, IsReadAsEachTypeAndSaysWhetherSomethingIsLost )
{
    std::pair<std::string, std::string> const rows[] = {
        { Element( "integer", "0x12345" ), " ~69 ~9029 74565 74565 74565 74565" },
        { Element( "integer", "0x20000000000001" ),
            " ~1 ~1 ~1 9007199254740993 ~9007199254740992 ~9007199254740992" },
        { Element( "integer", "-0x8000000000000000" ),
            " ~0 ~0 ~0 -9223372036854775808 -9.2233720368547758e+18 -9.2233720368547758e+18" },
        { Element( "integer", "0xffffffffffffffff" ),
            " ~-1 ~-1 ~-1 ~-1 ~1.8446744073709552e+19 ~1.8446744073709552e+19" },
        { Element( "real", "0.1" ), " ~0 ~0 ~0 ~0 ~0.10000000149011612 0.10000000000000001" },
        { Element( "real", "128" ), " ~127 128 128 128 128 128" },
        { Element( "real", "-128" ), " -128 -128 -128 -128 -128 -128" },
        { Element( "real", "-1e300" ), " ~-128 ~-32768 ~-2147483648 ~-9223372036854775808 ~-inf"
                                       " -1.0000000000000001e+300" },
        { Element( "real", "0.9223372036854775808e19" ),
            " ~127 ~32767 ~2147483647 ~9223372036854775807 9.2233720368547758e+18"
            " 9.2233720368547758e+18" },
        { Element( "real", "nan" ), " ~0 ~0 ~0 ~0 nan nan" } };

    for ( auto const& [element, values] : rows )
        EXPECT_EQ( ReadAsEachType( element ), values + " ~0" ) << element;
}

TEST( Objects, AreEqualByTypeAndExactValueAndThenHashAlike )
{
    char const* const equal[][2] = {
        { "<integer>0x8000000000000800</integer>", "<real>9223372036854777856</real>" },
        { "<integer>0</integer>", "<real>-0.0</real>" },
        { "<real>18446744073709551616</real>", "<real>0.18446744073709551616e20</real>" },
        { "<real>nan</real>", "<real>NaN</real>" }, { "<data>AAEC</data>", "<data>AA EC</data>" },
        { "<date>2001-01-01T00:00:60Z</date>", "<date>2001-01-01T00:01:00Z</date>" },
        { "<array><true/><string>e</string></array>",
            "<array><true/><string>&#101;</string></array>" },
        { "<dict><key>a</key><integer>2</integer><key>b</key><true/></dict>",
            "<dict><key>b</key><true/><key>a</key><real>2</real></dict>" } };
    // Each differs from all others.
    char const* const different[] = { "<integer>1</integer>", "<real>1.5</real>", "<true/>",
        "<false/>", "<integer>9007199254740993</integer>", "<real>9007199254740992</real>",
        "<integer>9223372036854775807</integer>", "<real>9223372036854775808</real>",
        "<integer>18446744073709551615</integer>", "<real>18446744073709551616</real>",
        "<integer>-1</integer>", "<real>nan</real>", "<real>inf</real>", "<string>&#xE9;</string>",
        "<string>e&#x301;</string>", "<string/>", "<data></data>", "<data>AAEC</data>",
        "<data>AAED</data>", "<date>2001-01-01T00:00:00Z</date>",
        "<date>2001-01-01T00:00:01Z</date>", "<array><true/><string/></array>",
        "<array><string/><true/></array>", "<array><true/></array>", "<dict/>",
        "<dict><key>a</key><true/></dict>", "<dict><key>a</key><false/></dict>",
        "<dict><key>b</key><true/></dict>" };
    for ( auto const& [a, b] : equal )
    {
        Held<CFTypeRef> const one = Parsed( a );
        Held<CFTypeRef> const other = Parsed( b );
        EXPECT_TRUE( CFEqual( one.get(), other.get() ) && CFEqual( other.get(), one.get() ) ) << a;
        EXPECT_EQ( CFHash( one.get() ), CFHash( other.get() ) ) << a;
    }
    for ( char const* a : different )
        for ( char const* b : different )
            EXPECT_EQ( a == b, CFEqual( Parsed( a ).get(), Parsed( b ).get() ) != 0 ) << a << b;
}

Held<CFDictionaryRef> Dictionary( std::vector<void const*> keys, std::vector<void const*> values )
{
    return Held<CFDictionaryRef>( CFDictionaryCreate( nullptr, keys.data(), values.data(),
        static_cast<CFIndex>( keys.size() ), &kCFTypeDictionaryKeyCallBacks,
        &kCFTypeDictionaryValueCallBacks ) );
}

TEST( Containers, RetainWhatTheyHoldUntilTheyGo )
{
    Held<CFTypeRef> array = Parsed( "<array/>" );
    Held<CFStringRef> const value = String( "a" );
    CFArrayAppendValue( As<CFMutableArrayRef>( array.get() ), value.get() );
    Held<CFDictionaryRef> dictionary = Dictionary( { value.get() }, { value.get() } );
    EXPECT_EQ( CFGetRetainCount( value.get() ), 4 );
    dictionary.reset();
    EXPECT_EQ( CFGetRetainCount( value.get() ), 2 );
    array.reset();
    EXPECT_EQ( CFGetRetainCount( value.get() ), 1 );
}

TEST( Dictionary, FindsValuesByEqualKeysOfWhichTheFirstStaysWithTheLastValue )
{
    Held<CFStringRef> const first = String( "k" );
    Held<CFStringRef> const second = String( "k" );
    Held<CFStringRef> const absent = String( "K" );
    Held<CFDictionaryRef> const dictionary =
        Dictionary( { first.get(), second.get() }, { absent.get(), kCFBooleanTrue } );
    void const* found = nullptr;
    EXPECT_TRUE( CFDictionaryGetValueIfPresent( dictionary.get(), second.get(), &found ) );
    EXPECT_FALSE( CFDictionaryGetValueIfPresent( dictionary.get(), absent.get(), &found ) );
    EXPECT_EQ( found, kCFBooleanTrue );
    EXPECT_EQ( CFDictionaryGetValue( dictionary.get(), absent.get() ), nullptr );
    CFDictionarySetValue(
        As<CFMutableDictionaryRef>( dictionary.get() ), second.get(), kCFBooleanFalse );
    EXPECT_EQ( Describe( dictionary.get() ), R"({"k"=false})" );
    EXPECT_EQ( CFGetRetainCount( first.get() ), 2 );
    EXPECT_EQ( CFGetRetainCount( second.get() ) + CFGetRetainCount( absent.get() ), 2 );
}

// Every third key comes twice, and every fourth is not ASCII; some come by the list.
TEST( Dictionary, FindsEachOfManyKeysHoweverTheyCame )
{
    for ( int const count : { 1, 15, 16, 17, 31, 33, 64, 1000 } )
    {
        auto const key = []( int i )
        { return ( i % 4 == 0 ? "\xC3\xA9" : "key " ) + std::to_string( i ); };
        std::string text;
        for ( int i = 0; i < count; ++i )
            text += ( i % 3 == 0 ? Element( "key", key( i ) ) + "<false/>" : "" ) +
                    Element( "key", key( i ) ) + Element( "integer", std::to_string( i ) );
        Held<CFTypeRef> const list = Parsed( Element( "dict", text ) );
        auto const dictionary = As<CFMutableDictionaryRef>( list.get() );
        EXPECT_EQ( CFDictionaryGetCount( dictionary ), count );
        for ( int i = 0; i < 4 * count; ++i )
            if ( i % 2 == 0 || i >= count )
                CFDictionarySetValue(
                    dictionary, String( key( i ) ).get(), String( std::to_string( i ) ).get() );
        EXPECT_EQ( CFDictionaryGetCount( dictionary ), 4 * count );
        for ( int i = 0; i < 4 * count; ++i )
            EXPECT_EQ( Describe( CFDictionaryGetValue( dictionary, String( key( i ) ).get() ) ),
                i % 2 == 0 || i >= count ? '"' + std::to_string( i ) + '"'
                                         : "i" + std::to_string( i ) );
        EXPECT_EQ( CFDictionaryGetValue( dictionary, String( "key" ).get() ), nullptr );
    }
}

TEST( Objects, OutliveTheListTheyCameWithAndMayBeReleasedInAnyThread )
{
    long const before = LiveAllocations();
    {
        std::string text;
        for ( int i = 0; i < 4000; ++i )
            text += Element( "string", std::string( static_cast<std::size_t>( i % 90 ), 'x' ) );
        Held<CFTypeRef> list = Parsed( Element( "array", text ) );
        std::vector<std::vector<Held<CFStringRef>>> kept( 4 );
        for ( CFIndex i = 0; i < 4000; i += 3 )
            kept[static_cast<std::size_t>( i % 4 )].emplace_back( As<CFStringRef>(
                CFRetain( CFArrayGetValueAtIndex( As<CFArrayRef>( list.get() ), i ) ) ) );
        list.reset();
        std::vector<std::thread> threads;
        for ( std::vector<Held<CFStringRef>>& some : kept )
            threads.emplace_back(
                [&some]
                {
                    for ( Held<CFStringRef> const& string : some )
                        EXPECT_EQ( CFGetRetainCount( string.get() ), 1 );
                    some.clear();
                } );
        for ( std::thread& thread : threads )
            thread.join();
    }
    EXPECT_EQ( LiveAllocations(), before );
}

TEST( Strings, AreEqualByTheirUnitsHoweverTheyAreKept )
{
    UniChar const units[] = { 'a', 'b' };
    Held<CFStringRef> const wide( CFStringCreateWithCharacters( nullptr, units, 2 ) );
    Held<CFStringRef> const narrow = String( "ab" );
    Held<CFTypeRef> const grown = Parsed( "<string>a</string>", 2 );
    CFStringAppend( As<CFMutableStringRef>( grown.get() ), String( "b" ).get() );
    for ( CFTypeRef const a : { CFTypeRef( wide.get() ), CFTypeRef( narrow.get() ), grown.get() } )
        for ( CFTypeRef const b :
            { CFTypeRef( wide.get() ), CFTypeRef( narrow.get() ), grown.get() } )
        {
            EXPECT_TRUE( CFEqual( a, b ) );
            EXPECT_EQ( CFHash( a ), CFHash( b ) );
            EXPECT_FALSE( CFEqual( a, String( "ac" ).get() ) );
        }
    auto const mutableString = As<CFMutableStringRef>( grown.get() );
    CFStringAppend( mutableString, mutableString );
    CFStringAppend( mutableString, String( "\xC3\xA9" ).get() );
    EXPECT_EQ( Describe( mutableString ), "\"abab\u00E9\"" );
}

TEST( Strings, HashSoThatNoDifferenceIsKnownBeforehand )
{
    for ( std::string const same : { "", "x", "abc" } )
        EXPECT_NE( CFHash( String( same + "b" ).get() ) - CFHash( String( same + "a" ).get() ), 1 );
}

TEST( Objects, AreNotMadeFromNegativeCountsNothingAndForeignCallBacks )
{
    auto const* const keys = &kCFTypeDictionaryKeyCallBacks;
    auto const* const values = &kCFTypeDictionaryValueCallBacks;
    UInt8 const bytes[2] = {};
    UniChar const unit = 'a';
    for ( CFTypeRef const object :
        { CFTypeRef( CFDictionaryCreate( nullptr, nullptr, nullptr, 0, nullptr, values ) ),
            CFTypeRef( CFDictionaryCreateMutable( nullptr, 0, keys, nullptr ) ),
            CFTypeRef( CFDictionaryCreate( nullptr, nullptr, nullptr, -1, keys, values ) ),
            CFTypeRef( CFDataCreate( nullptr, bytes, -1 ) ),
            CFTypeRef( CFDataCreate( nullptr, nullptr, 1 ) ),
            CFTypeRef( CFStringCreateWithBytes( nullptr, nullptr, 1, 0, false ) ),
            CFTypeRef( CFStringCreateWithCharacters( nullptr, &unit, -1 ) ),
            CFTypeRef( CFStringCreateWithCharacters( nullptr, nullptr, 1 ) ) } )
        EXPECT_EQ( object, nullptr );
}

TEST( References, AreCountedAcrossThreadsButNotThoseToConstants )
{
    Held<CFStringRef> const string = String( "shared" );
    std::vector<std::thread> threads;
    for ( int i = 0; i < 4; ++i )
        threads.emplace_back(
            [&string]
            {
                for ( int j = 0; j < 10000; ++j )
                    CFRelease( CFRetain( string.get() ) );
            } );
    for ( std::thread& thread : threads )
        thread.join();
    EXPECT_EQ( CFGetRetainCount( string.get() ), 1 );
    CFRelease( kCFBooleanTrue );
    CFRelease( kCFBooleanTrue );
    EXPECT_TRUE( CFBooleanGetValue( kCFBooleanTrue ) );
}

TEST( ReferencesDeathTest, BrokenContractsTrap )
{
    Held<CFStringRef> const string = String( "abc" );
    Held<CFDataRef> const data = Data( "abc" );
    Held<CFTypeRef> const array = Parsed( "<array><true/></array>" );
    UniChar units[8];
    UInt8 bytes[8];

    EXPECT_DEATH( CFRelease( nullptr ), "" );
    EXPECT_DEATH( CFRetain( nullptr ), "" );
    EXPECT_DEATH( CFHash( nullptr ), "" );
    EXPECT_DEATH( CFEqual( nullptr, string.get() ), "" );
    EXPECT_DEATH( CFEqual( string.get(), nullptr ), "" );
    EXPECT_DEATH( CFStringGetCharacters( string.get(), CFRangeMake( 2, 2 ), units ), "" );
    EXPECT_DEATH( CFStringGetCharacters( string.get(), CFRangeMake( -1, 1 ), units ), "" );
    EXPECT_DEATH( CFDataGetBytes( data.get(), CFRangeMake( 2, 2 ), bytes ), "" );
    EXPECT_DEATH( CFArrayGetValueAtIndex( As<CFArrayRef>( array.get() ), 1 ), "" );
}

} // namespace
