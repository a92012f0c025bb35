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

// The number as a Target by each of the types; a "~" says that something is lost.
template<class Target>
std::string Read( CFTypeRef number, std::vector<CFNumberType> const& types )
{
    std::set<std::string> answers;
    for ( CFNumberType const type : types )
    {
        Target value{};
        bool const isExact = CFNumberGetValue( As<CFNumberRef>( number ), type, &value );
        answers.insert( (
            std::ostringstream() << ( isExact ? " " : " ~" ) << std::setprecision( 17 ) << +value )
                            .str() );
    }
    return answers.size() == 1 ? *answers.begin() : "the types differ";
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
    {
        Held<CFTypeRef> const held = Parsed( element );
        CFTypeRef const number = held.get();
        EXPECT_EQ( Read<SInt8>( number, { kCFNumberSInt8Type, kCFNumberCharType } ) +
                       Read<SInt16>( number, { kCFNumberSInt16Type, kCFNumberShortType } ) +
                       Read<SInt32>( number, { kCFNumberSInt32Type, kCFNumberIntType } ) +
                       Read<SInt64>( number, { kCFNumberSInt64Type, kCFNumberLongType,
                                                 kCFNumberLongLongType, kCFNumberCFIndexType } ) +
                       Read<float>( number, { kCFNumberFloat32Type, kCFNumberFloatType } ) +
                       Read<double>( number, { kCFNumberFloat64Type, kCFNumberDoubleType } ) +
                       Read<SInt8>( number, { 0, 15 } ),
            values + " ~0" )
            << element;
    }
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

TEST( Dictionary, FindsValuesByEqualKeysOfWhichTheFirstStaysWithTheLastValue )
{
    Held<CFStringRef> const first = String( "k" );
    Held<CFStringRef> const second = String( "k" );
    Held<CFStringRef> const absent = String( "K" );
    void const* keys[] = { first.get(), second.get() };
    void const* values[] = { absent.get(), kCFBooleanTrue };
    Held<CFDictionaryRef> const dictionary( CFDictionaryCreate( nullptr, keys, values, 2,
        &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks ) );
    void const* found = nullptr;
    EXPECT_TRUE( CFDictionaryGetValueIfPresent( dictionary.get(), second.get(), &found ) );
    EXPECT_FALSE( CFDictionaryGetValueIfPresent( dictionary.get(), absent.get(), &found ) );
    EXPECT_EQ( found, kCFBooleanTrue );
    EXPECT_EQ( CFDictionaryGetValue( dictionary.get(), absent.get() ), nullptr );
    EXPECT_EQ( CFGetRetainCount( first.get() ), 2 );
    EXPECT_EQ( CFGetRetainCount( second.get() ) + CFGetRetainCount( absent.get() ), 2 );
}

// Every third key comes twice, and every fourth is not ASCII; some come by the list, and then each
// second one anew. Anything but linear time would exceed the limit of the test.
TEST( Dictionary, FindsEachOfManyKeysHoweverTheyCame )
{
    auto const key = []( int i )
    { return ( i % 4 == 0 ? "\xC3\xA9" : "key " ) + std::to_string( i ); };
    Held<CFStringRef> const value = String( "new" );
    for ( int const count : { 1, 15, 16, 17, 31, 33, 64, 100000 } )
    {
        std::string text;
        for ( int i = 0; i < count; ++i )
            text += ( i % 3 == 0 ? Element( "key", key( i ) ) + "<false/>" : "" ) +
                    Element( "key", key( i ) ) + Element( "string", std::to_string( i ) );
        Held<CFTypeRef> const list = Parsed( Element( "dict", text ) );
        auto const dictionary = As<CFMutableDictionaryRef>( list.get() );
        EXPECT_EQ( CFDictionaryGetCount( dictionary ), count );
        for ( int i = 0; i < 2 * count; i += 2 )
            CFDictionarySetValue( dictionary, String( key( i ) ).get(), value.get() );
        EXPECT_EQ( CFDictionaryGetCount( dictionary ), count + count / 2 );
        for ( int i = 0; i < 2 * count; i += 1 + count / 1000 )
        {
            CFTypeRef const found = CFDictionaryGetValue( dictionary, String( key( i ) ).get() );
            ASSERT_EQ( found != nullptr ? Text( As<CFStringRef>( found ) ) : "none",
                i % 2 == 0  ? "new"
                : i < count ? std::to_string( i )
                            : "none" );
        }
    }
}

TEST( Objects, AreCountedInAllThreadsAndOutliveTheListTheyCameWith )
{
    long const before = LiveAllocations();
    {
        std::string text;
        for ( int i = 0; i < 4000; ++i )
            text += Element( "string", std::string( static_cast<std::size_t>( i % 90 ), 'x' ) );
        Held<CFTypeRef> list = Parsed( Element( "array", text ) );
        Held<CFStringRef> const shared = String( "shared" );
        std::vector<Held<CFTypeRef>> kept[4];
        for ( CFIndex i = 0; i < 4000; i += 3 )
            kept[i % 4].emplace_back(
                CFRetain( CFArrayGetValueAtIndex( As<CFArrayRef>( list.get() ), i ) ) );
        list.reset();
        std::vector<std::thread> threads;
        for ( std::vector<Held<CFTypeRef>>& some : kept )
            threads.emplace_back(
                [&]
                {
                    for ( int i = 0; i < 10000; ++i )
                        CFRelease( CFRetain( shared.get() ) );
                    for ( Held<CFTypeRef> const& string : some )
                        EXPECT_EQ( CFGetRetainCount( string.get() ), 1 );
                    some.clear();
                } );
        for ( std::thread& thread : threads )
            thread.join();
        EXPECT_EQ( CFGetRetainCount( shared.get() ), 1 );
    }
    EXPECT_EQ( LiveAllocations(), before );
    for ( int i = 0; i < 2; ++i )
        CFRelease( kCFBooleanTrue );
    EXPECT_TRUE( CFBooleanGetValue( kCFBooleanTrue ) ) << "constants are not counted";
}

TEST( Strings, AreEqualByTheirUnitsHoweverTheyAreKept )
{
    UniChar const units[] = { 'a', 'b' };
    Held<CFStringRef> const wide( CFStringCreateWithCharacters( nullptr, units, 2 ) );
    Held<CFStringRef> const narrow = String( "ab" );
    Held<CFTypeRef> const grown = Parsed( "<string>a</string>", 2 );
    auto const grownString = As<CFMutableStringRef>( grown.get() );
    CFStringAppend( grownString, String( "b" ).get() );
    CFTypeRef const all[] = { wide.get(), narrow.get(), grown.get() };
    for ( CFTypeRef const a : all )
    {
        EXPECT_FALSE( CFEqual( a, String( "ac" ).get() ) );
        for ( CFTypeRef const b : all )
            EXPECT_TRUE( CFEqual( a, b ) && CFHash( a ) == CFHash( b ) );
    }
    CFStringAppend( grownString, grownString );
    CFStringAppend( grownString, String( "\xC3\xA9" ).get() );
    EXPECT_EQ( Text( grownString ), "abab\u00E9" );
    EXPECT_NE( CFHash( String( "b" ).get() ) - CFHash( String( "a" ).get() ), 1 ) << "keyed";
}

TEST( Objects, AreNotMadeFromNegativeCountsNothingAndForeignCallBacks )
{
    auto const* const keys = &kCFTypeDictionaryKeyCallBacks;
    auto const* const values = &kCFTypeDictionaryValueCallBacks;
    UniChar const unit = 'a';
    EXPECT_EQ( nullptr, CFDictionaryCreate( nullptr, nullptr, nullptr, 0, nullptr, values ) );
    EXPECT_EQ( nullptr, CFDictionaryCreateMutable( nullptr, 0, keys, nullptr ) );
    EXPECT_EQ( nullptr, CFDictionaryCreate( nullptr, nullptr, nullptr, -1, keys, values ) );
    EXPECT_EQ( nullptr, CFDataCreate( nullptr, reinterpret_cast<UInt8 const*>( "" ), -1 ) );
    EXPECT_EQ( nullptr, CFDataCreate( nullptr, nullptr, 1 ) );
    EXPECT_EQ( nullptr, CFStringCreateWithBytes( nullptr, nullptr, 1, 0, false ) );
    EXPECT_EQ( nullptr, CFStringCreateWithCharacters( nullptr, &unit, -1 ) );
    EXPECT_EQ( nullptr, CFStringCreateWithCharacters( nullptr, nullptr, 1 ) );
}

TEST( ReferencesDeathTest, BrokenContractsTrap )
{
    Held<CFStringRef> const string = String( "abc" );
    Held<CFTypeRef> const data = Parsed( "<data>YWJj</data>" );
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
    EXPECT_DEATH( CFDataGetBytes( As<CFDataRef>( data.get() ), CFRangeMake( 2, 2 ), bytes ), "" );
    EXPECT_DEATH( CFArrayGetValueAtIndex( As<CFArrayRef>( array.get() ), 1 ), "" );
}

} // namespace
