#include "fuzz/PropertyListText.h"

#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <map>
#include <vector>

namespace
{

template<class Reference>
Reference As( CFTypeRef object )
{
    return static_cast<Reference>( const_cast<void*>( object ) );
}

std::string Element( std::string const& name, std::string const& content )
{
    return "<" + name + ">" + content + "</" + name + ">";
}

std::string Escaped( CFStringRef string )
{
    CFRange const all = CFRangeMake( 0, CFStringGetLength( string ) );
    CFIndex length = 0;
    std::string bytes( static_cast<std::size_t>( all.length ) * 3, '\0' );
    CFStringGetBytes( string, all, kCFStringEncodingUTF8, 0, false,
        reinterpret_cast<UInt8*>( bytes.data() ), std::ssize( bytes ), &length );
    bytes.resize( static_cast<std::size_t>( length ) );
    std::string text;
    for ( char const c : bytes )
    {
        if ( c == '&' || c == '<' || c == '>' || c == '\r' )
            text += "&#" + std::to_string( c ) + ";";
        else
            text += c;
    }
    return text;
}

std::string NumberText( CFNumberRef number )
{
    SInt64 integer = 0;
    double real = 0;
    CFNumberGetValue( number, kCFNumberDoubleType, &real );
    if ( CFNumberGetType( number ) == kCFNumberFloat64Type )
    {
        char text[32];
        bool const isNaN = std::isnan( real ); // which has a sign in its text, but not in a list
        return Element( "real",
            isNaN ? "nan" : std::string( text, std::to_chars( text, text + 32, real ).ptr ) );
    }
    bool const hasSign = CFNumberGetValue( number, kCFNumberSInt64Type, &integer );
    return Element( "integer",
        hasSign ? std::to_string( integer ) : std::to_string( static_cast<UInt64>( integer ) ) );
}

/// Nothing outside of the years that a date has room for, and datetime.datetime too.
std::optional<std::string> DateText( CFDateRef date )
{
    using namespace std::chrono;
    constexpr sys_days k2001 = year( 2001 ) / 1 / 1;
    sys_seconds const time = k2001 + seconds( std::llround( CFDateGetAbsoluteTime( date ) ) );
    sys_days const day = floor<days>( time );
    year_month_day const fields = day;
    hh_mm_ss const clock( time - day );
    if ( fields.year() < year( 1 ) || fields.year() > year( 9999 ) )
        return {};
    char text[80];
    std::snprintf( text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ", int( fields.year() ),
        unsigned( fields.month() ), unsigned( fields.day() ), int( clock.hours().count() ),
        int( clock.minutes().count() ), int( clock.seconds().count() ) );
    return Element( "date", text );
}

std::string DataText( CFDataRef data )
{
    constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    UInt8 const* const bytes = CFDataGetBytePtr( data );
    CFIndex const length = CFDataGetLength( data );
    std::string text;
    for ( CFIndex i = 0; i < length; i += 3 )
    {
        unsigned bits = 0;
        for ( CFIndex j = i; j < i + 3; ++j )
            bits = bits << 8 | ( j < length ? bytes[j] : 0u );
        for ( CFIndex j = 0; j < 4; ++j )
            text += i + j > length ? '=' : kDigits[bits >> ( 18 - 6 * j ) & 63];
    }
    return Element( "data", text );
}

bool Append( std::string& text, CFTypeRef value );

bool AppendDictionary( std::string& text, CFDictionaryRef dictionary )
{
    std::vector<CFTypeRef> keys( static_cast<std::size_t>( CFDictionaryGetCount( dictionary ) ) );
    std::vector<CFTypeRef> values( keys.size() );
    CFDictionaryGetKeysAndValues( dictionary, keys.data(), values.data() );
    std::map<std::string, CFTypeRef> sorted;
    for ( std::size_t i = 0; i < keys.size(); ++i )
        sorted[Escaped( As<CFStringRef>( keys[i] ) )] = values[i];
    bool isWhole = true;
    for ( auto const& [key, value] : sorted )
    {
        text += Element( "key", key );
        isWhole = Append( text, value ) && isWhole;
    }
    return isWhole;
}

/// Whether every value has a form.
bool Append( std::string& text, CFTypeRef value )
{
    CFTypeID const type = CFGetTypeID( value );
    bool isWhole = true;
    if ( type == CFDictionaryGetTypeID() )
    {
        text += "<dict>";
        isWhole = AppendDictionary( text, As<CFDictionaryRef>( value ) );
        text += "</dict>";
    }
    else if ( type == CFArrayGetTypeID() )
    {
        text += "<array>";
        for ( CFIndex i = 0; i < CFArrayGetCount( As<CFArrayRef>( value ) ); ++i )
            isWhole =
                Append( text, CFArrayGetValueAtIndex( As<CFArrayRef>( value ), i ) ) && isWhole;
        text += "</array>";
    }
    else if ( type == CFStringGetTypeID() )
        text += Element( "string", Escaped( As<CFStringRef>( value ) ) );
    else if ( type == CFNumberGetTypeID() )
        text += NumberText( As<CFNumberRef>( value ) );
    else if ( type == CFBooleanGetTypeID() )
        text += CFBooleanGetValue( As<CFBooleanRef>( value ) ) ? "<true/>" : "<false/>";
    else if ( type == CFDataGetTypeID() )
        text += DataText( As<CFDataRef>( value ) );
    else
    {
        std::optional<std::string> const date = DateText( As<CFDateRef>( value ) );
        isWhole = date.has_value();
        text += date.value_or( "" );
    }
    return isWhole;
}

} // namespace

Held<CFTypeRef> ReadPropertyList( std::string_view document, CFOptionFlags option )
{
    Held<CFDataRef> const data( CFDataCreate(
        nullptr, reinterpret_cast<UInt8 const*>( document.data() ), std::ssize( document ) ) );
    return Held<CFTypeRef>(
        CFPropertyListCreateFromXMLData( nullptr, data.get(), option, nullptr ) );
}

std::optional<std::string> PropertyListText( CFTypeRef root )
{
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist>";
    bool const isWhole = Append( text, root );
    return isWhole ? std::optional( text + "</plist>" ) : std::nullopt;
}
