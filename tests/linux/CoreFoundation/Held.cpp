#include "tests/linux/CoreFoundation/Held.h"

#include <CoreFoundation/CFArray.h>
#include <CoreFoundation/CFData.h>
#include <CoreFoundation/CFDate.h>
#include <CoreFoundation/CFDictionary.h>
#include <CoreFoundation/CFNumber.h>
#include <CoreFoundation/CFPropertyList.h>
#include <CoreFoundation/CFString.h>

#include <cmath>
#include <iomanip>
#include <set>
#include <sstream>
#include <vector>

Held<CFStringRef> String( std::string_view text )
{
    return Held<CFStringRef>(
        CFStringCreateWithBytes( kCFAllocatorDefault, reinterpret_cast<UInt8 const*>( text.data() ),
            static_cast<CFIndex>( text.size() ), kCFStringEncodingUTF8, false ) );
}

Held<CFDataRef> Data( std::string_view bytes )
{
    return Held<CFDataRef>( CFDataCreate( kCFAllocatorDefault,
        reinterpret_cast<UInt8 const*>( bytes.data() ), static_cast<CFIndex>( bytes.size() ) ) );
}

std::string Element( std::string const& name, std::string const& content )
{
    return "<" + name + ">" + content + "</" + name + ">";
}

Held<CFTypeRef> Parsed( std::string_view text, CFOptionFlags option )
{
    Held<CFDataRef> const data = Data( text );
    return Held<CFTypeRef>(
        CFPropertyListCreateFromXMLData( kCFAllocatorDefault, data.get(), option, nullptr ) );
}

std::string Text( CFStringRef string )
{
    CFRange const all = CFRangeMake( 0, CFStringGetLength( string ) );
    std::string bytes( 3 * static_cast<std::size_t>( all.length ), '\0' );
    CFIndex length = 0;
    CFStringGetBytes( string, all, kCFStringEncodingUTF8, 0, false,
        reinterpret_cast<UInt8*>( bytes.data() ), 3 * all.length, &length );
    return bytes.substr( 0, static_cast<std::size_t>( length ) );
}

namespace
{

std::string DescribeNumber( CFNumberRef number )
{
    std::ostringstream out;
    SInt64 integer = 0;
    double real = 0;
    if ( CFNumberGetType( number ) != kCFNumberFloat64Type )
        return CFNumberGetValue( number, kCFNumberSInt64Type, &integer )
                   ? "i" + std::to_string( integer )
                   : "i" + std::to_string( static_cast<UInt64>( integer ) );
    CFNumberGetValue( number, kCFNumberFloat64Type, &real );
    out << 'r' << real;
    return out.str();
}

std::string DescribeData( CFDataRef data )
{
    std::ostringstream out;
    for ( CFIndex i = 0; i < CFDataGetLength( data ); ++i )
        out << std::hex << std::setw( 2 ) << std::setfill( '0' ) << +CFDataGetBytePtr( data )[i];
    return '<' + out.str() + '>';
}

std::string DescribeDictionary( CFDictionaryRef dictionary )
{
    auto const count = static_cast<std::size_t>( CFDictionaryGetCount( dictionary ) );
    std::vector<void const*> keys( count );
    std::vector<void const*> values( count );
    CFDictionaryGetKeysAndValues( dictionary, keys.data(), values.data() );
    std::set<std::string> entries;
    for ( std::size_t i = 0; i < count; ++i )
        entries.insert( Describe( keys[i] ) + "=" + Describe( values[i] ) );
    std::string text;
    for ( std::string const& entry : entries )
        text += ( text.empty() ? "" : "," ) + entry;
    return "{" + text + "}";
}

std::string DescribeArray( CFArrayRef array )
{
    std::string text;
    for ( CFIndex i = 0; i < CFArrayGetCount( array ); ++i )
        text += ( i == 0 ? "" : "," ) + Describe( CFArrayGetValueAtIndex( array, i ) );
    return "[" + text + "]";
}

} // namespace

std::string Describe( CFTypeRef object )
{
    if ( object == nullptr )
        return "null";
    CFTypeID const type = CFGetTypeID( object );
    if ( type == CFStringGetTypeID() )
        return '"' + Text( As<CFStringRef>( object ) ) + '"';
    if ( type == CFNumberGetTypeID() )
        return DescribeNumber( As<CFNumberRef>( object ) );
    if ( type == CFBooleanGetTypeID() )
        return CFBooleanGetValue( As<CFBooleanRef>( object ) ) ? "true" : "false";
    if ( type == CFDateGetTypeID() )
        return "@" +
               std::to_string( std::lround( CFDateGetAbsoluteTime( As<CFDateRef>( object ) ) ) );
    if ( type == CFDataGetTypeID() )
        return DescribeData( As<CFDataRef>( object ) );
    return type == CFArrayGetTypeID() ? DescribeArray( As<CFArrayRef>( object ) )
                                      : DescribeDictionary( As<CFDictionaryRef>( object ) );
}
