// print_property_list FILE: the dictionary in an XML property list, as indented text.
//
// Shows how Core Foundation objects are used through the wrappers: holders own what was created,
// and everything below the root is lent by the container that holds it, so it needs no holder.

#include "platform/CFDictionaries.h"
#include "platform/CFErrors.h"
#include "platform/CFStrings.h"
#include "platform/CFURLs.h"

#include <CoreFoundation/CFArray.h>
#include <CoreFoundation/CFDate.h>
#include <CoreFoundation/CFNumber.h>
#include <CoreFoundation/CFPropertyList.h>
#include <CoreFoundation/CFURLAccess.h>

#include <charconv>
#include <cstdio>
#include <ctime>
#include <exception>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace
{

/// The text with backslashes and quotes escaped, and with the bytes of control characters in
/// hexadecimal, so that it stays on its line and the terminal obeys none of it.
std::string Escaped( CFTypeRef string )
{
    std::string const text =
        MakeString( static_cast<CFStringRef>( string ), kCFStringEncodingUTF8, '?' );
    std::string result;
    unsigned char previous = 0;
    for ( std::size_t i = 0; i < text.size(); ++i )
    {
        unsigned char const c = static_cast<unsigned char>( text[i] );
        bool const beginsC1 = c == 0xC2 && static_cast<unsigned char>( text[i + 1] ) < 0xA0;
        bool const endsC1 = previous == 0xC2 && c < 0xA0;
        char escape[5];
        std::snprintf( escape, sizeof escape, "\\x%02x", c );
        if ( c == '\\' || c == '"' )
            result += '\\';
        if ( c < ' ' || c == 0x7F || beginsC1 || endsC1 )
            result += escape;
        else
            result += text[i];
        previous = c;
    }
    return result;
}

std::string NumberText( CFNumberRef number )
{
    if ( CFNumberGetType( number ) == kCFNumberSInt64Type )
    {
        // A number beyond 64 bits with a sign is one of 64 bits without.
        SInt64 value = 0;
        bool const hasSign = CFNumberGetValue( number, kCFNumberSInt64Type, &value );
        return hasSign ? std::to_string( value ) : std::to_string( static_cast<UInt64>( value ) );
    }
    double value = 0;
    CFNumberGetValue( number, kCFNumberDoubleType, &value );
    char text[32];
    return { text, std::to_chars( text, text + sizeof text, value ).ptr };
}

std::string DateText( CFDateRef date )
{
    constexpr std::time_t k2001 = 978307200; // dates count from there, time_t from 1970
    std::time_t const time = static_cast<std::time_t>( CFDateGetAbsoluteTime( date ) ) + k2001;
    std::tm fields = {};
    char text[32];
    gmtime_r( &time, &fields );
    return { text, std::strftime( text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &fields ) };
}

std::string DataText( CFDataRef data )
{
    std::string result = "<";
    for ( CFIndex i = 0; i < CFDataGetLength( data ); ++i )
    {
        char digits[3];
        std::snprintf( digits, sizeof digits, "%02x", CFDataGetBytePtr( data )[i] );
        result += digits;
    }
    return result + ">";
}

std::string LeafText( CFTypeRef leaf )
{
    CFTypeID const type = CFGetTypeID( leaf );
    if ( type == CFStringGetTypeID() )
        return '"' + Escaped( leaf ) + '"';
    if ( type == CFNumberGetTypeID() )
        return NumberText( static_cast<CFNumberRef>( leaf ) );
    if ( type == CFBooleanGetTypeID() )
        return CFBooleanGetValue( static_cast<CFBooleanRef>( leaf ) ) ? "true" : "false";
    if ( type == CFDateGetTypeID() )
        return DateText( static_cast<CFDateRef>( leaf ) );
    return DataText( static_cast<CFDataRef>( leaf ) );
}

/// The keys in the order of their bytes, and their values.
std::map<std::string, CFTypeRef> Entries( CFDictionaryRef dictionary )
{
    std::size_t const count = static_cast<std::size_t>( CFDictionaryGetCount( dictionary ) );
    std::vector<CFTypeRef> keys( count );
    std::vector<CFTypeRef> values( count );
    CFDictionaryGetKeysAndValues( dictionary, keys.data(), values.data() );
    std::map<std::string, CFTypeRef> entries;
    for ( std::size_t i = 0; i < count; ++i )
        entries[Escaped( keys[i] )] = values[i];
    return entries;
}

/// Containers nest no deeper than kCFPropertyListMaximumDepth.
void Print( std::string const& label, CFTypeRef value, std::string const& indent )
{
    if ( CFGetTypeID( value ) == CFDictionaryGetTypeID() )
    {
        std::printf( "%s%s: dictionary\n", indent.c_str(), label.c_str() );
        for ( auto const& [key, item] : Entries( static_cast<CFDictionaryRef>( value ) ) )
            Print( key, item, indent + "  " );
    }
    else if ( CFGetTypeID( value ) == CFArrayGetTypeID() )
    {
        CFArrayRef const array = static_cast<CFArrayRef>( value );
        std::printf( "%s%s: array\n", indent.c_str(), label.c_str() );
        for ( CFIndex i = 0; i < CFArrayGetCount( array ); ++i )
            Print( std::to_string( i ), CFArrayGetValueAtIndex( array, i ), indent + "  " );
    }
    else
        std::printf( "%s%s: %s\n", indent.c_str(), label.c_str(), LeafText( value ).c_str() );
}

std::string ErrorText( CFURLErrorCode const& error )
{
    switch ( error.GetCode() )
    {
    case kCFURLResourceNotFoundError:
        return "there is no such file";
    case kCFURLResourceAccessViolationError:
        return "the file must not be read";
    default:
        return "the file cannot be read (error " + std::to_string( error.GetCode() ) + ")";
    }
}

/// What went wrong, or an empty text.
std::string PrintPropertyList( std::string_view path )
try
{
    AutoCFData const data = GetData( MakeURLFromFileSystemBytes( path, false ).Get() );
    AutoCFDictionary const root =
        DictionaryCreateFromXMLData( data.Get(), kCFPropertyListImmutable );
    for ( auto const& [key, item] : Entries( root.Get() ) )
        Print( key, item, "" );
    bool const isWritten = std::fflush( stdout ) == 0 && std::ferror( stdout ) == 0;
    return isWritten ? "" : "the output cannot be written";
}

catch ( CFURLErrorCode const& error )
{
    return ErrorText( error );
}

catch ( DictionaryCreateFromXMLDataFailed const& )
{
    return "this is no XML property list with a dictionary";
}

catch ( CFURLCreateWithFileSystemPathFailed const& )
{
    return "the folder that the name counts from is gone";
}

catch ( std::exception const& error )
{
    return error.what();
}

} // namespace

int main( int argc, char** argv )
{
    if ( argc != 2 )
    {
        std::fprintf( stderr, "usage: print_property_list FILE\n" );
        return 2;
    }
    std::string const error = PrintPropertyList( argv[1] );
    if ( error.empty() )
        return 0;
    std::fprintf( stderr, "print_property_list: %s: %s\n", argv[1], error.c_str() );
    return 1;
}
