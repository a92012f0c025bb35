#include "tests/linux/CoreFoundation/Held.h"

#include <CoreFoundation/CFArray.h>
#include <CoreFoundation/CFData.h>
#include <CoreFoundation/CFDate.h>
#include <CoreFoundation/CFDictionary.h>
#include <CoreFoundation/CFNumber.h>
#include <CoreFoundation/CFPropertyList.h>
#include <CoreFoundation/CFString.h>

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

namespace
{

std::string DescribeString( CFStringRef string )
{
    CFRange const all = CFRangeMake( 0, CFStringGetLength( string ) );
    std::string bytes( 3 * static_cast<std::size_t>( all.length ), '\0' );
    CFIndex length = 0;
    CFStringGetBytes( string, all, kCFStringEncodingUTF8, 0, false,
        reinterpret_cast<UInt8*>( bytes.data() ), 3 * all.length, &length );
    return '"' + bytes.substr( 0, static_cast<std::size_t>( length ) ) + '"';
}

std::string DescribeNumber( CFNumberRef number )
{
    std::ostringstream out;
    SInt64 integer = 0;
    double real = 0;
    if ( CFNumberGetType( number ) == kCFNumberFloat64Type )
    {
        CFNumberGetValue( number, kCFNumberFloat64Type, &real );
        out << 'r' << real;
    }
    else if ( CFNumberGetValue( number, kCFNumberSInt64Type, &integer ) )
    {
        out << 'i' << integer;
    }
    else
    {
        out << 'i' << static_cast<UInt64>( integer );
    }
    return out.str();
}

std::string DescribeData( CFDataRef data )
{
    std::ostringstream out;
    for ( CFIndex i = 0; i < CFDataGetLength( data ); ++i )
    {
        out << std::hex << std::setw( 2 ) << std::setfill( '0' ) << +CFDataGetBytePtr( data )[i];
    }
    return '<' + out.str() + '>';
}

// Entries with commas between them.
template<class Entries>
std::string Joined( Entries const& entries )
{
    std::string text;
    for ( std::string const& entry : entries )
    {
        text += ( text.empty() ? "" : "," ) + entry;
    }
    return text;
}

std::string DescribeDictionary( CFDictionaryRef dictionary )
{
    auto const count = static_cast<std::size_t>( CFDictionaryGetCount( dictionary ) );
    std::vector<void const*> keys( count );
    std::vector<void const*> values( count );
    CFDictionaryGetKeysAndValues( dictionary, keys.data(), values.data() );
    std::set<std::string> entries;
    for ( std::size_t i = 0; i < count; ++i )
    {
        entries.insert( Describe( keys[i] ) + "=" + Describe( values[i] ) );
    }
    return "{" + Joined( entries ) + "}";
}

std::string DescribeArray( CFArrayRef array )
{
    std::vector<std::string> entries;
    for ( CFIndex i = 0; i < CFArrayGetCount( array ); ++i )
    {
        entries.push_back( Describe( CFArrayGetValueAtIndex( array, i ) ) );
    }
    return "[" + Joined( entries ) + "]";
}

} // namespace

std::string Describe( CFTypeRef object )
{
    if ( object == nullptr )
    {
        return "null";
    }
    CFTypeID const type = CFGetTypeID( object );
    if ( type == CFStringGetTypeID() )
    {
        return DescribeString( static_cast<CFStringRef>( object ) );
    }
    if ( type == CFNumberGetTypeID() )
    {
        return DescribeNumber( static_cast<CFNumberRef>( object ) );
    }
    if ( type == CFBooleanGetTypeID() )
    {
        return CFBooleanGetValue( static_cast<CFBooleanRef>( object ) ) ? "true" : "false";
    }
    if ( type == CFDateGetTypeID() )
    {
        auto const time = CFDateGetAbsoluteTime( static_cast<CFDateRef>( object ) );
        return "@" + std::to_string( static_cast<long>( time ) );
    }
    if ( type == CFDataGetTypeID() )
    {
        return DescribeData( static_cast<CFDataRef>( object ) );
    }
    return type == CFArrayGetTypeID()
               ? DescribeArray( static_cast<CFArrayRef>( object ) )
               : DescribeDictionary( static_cast<CFDictionaryRef>( object ) );
}
