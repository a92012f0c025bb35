#include "tests/linux/CoreFoundation/Held.h"

#include <cmath>
#include <map>
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

std::string Bytes( CFDataRef data )
{
    return { CFDataGetBytePtr( data ), CFDataGetBytePtr( data ) + CFDataGetLength( data ) };
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
    CFNumberGetValue( number, kCFNumberFloat64Type, &real );
    if ( CFNumberGetType( number ) == kCFNumberFloat64Type )
        out << 'r' << real;
    else if ( CFNumberGetValue( number, kCFNumberSInt64Type, &integer ) )
        out << 'i' << integer;
    else
        out << 'i' << static_cast<UInt64>( integer );
    return out.str();
}

std::string DescribeDictionary( CFDictionaryRef dictionary )
{
    std::vector<void const*> keys( static_cast<std::size_t>( CFDictionaryGetCount( dictionary ) ) );
    CFDictionaryGetKeysAndValues( dictionary, keys.data(), nullptr );
    std::map<std::string, std::string> entries;
    for ( void const* key : keys )
        entries[Describe( key )] = Describe( CFDictionaryGetValue( dictionary, key ) );
    std::string text;
    for ( auto const& [key, value] : entries )
        text += ( text.empty() ? "" : "," ) + key + "=" + value;
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
    CFTypeID const type = object != nullptr ? CFGetTypeID( object ) : 0;
    if ( object == nullptr )
        return "null";
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
        return '<' + Bytes( As<CFDataRef>( object ) ) + '>';
    return type == CFArrayGetTypeID() ? DescribeArray( As<CFArrayRef>( object ) )
                                      : DescribeDictionary( As<CFDictionaryRef>( object ) );
}
