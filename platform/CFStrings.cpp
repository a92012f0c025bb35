#include "platform/CFStrings.h"

#include "platform/CFErrors.h"

#include <cstddef>

namespace
{

// Adopts what a call created.
AutoCFString Created( CFStringRef string )
{
    if ( string == nullptr )
    {
        throw CFStringCreateError();
    }
    return AutoCFString( string );
}

UInt8 const* Bytes( char const* text )
{
    return reinterpret_cast<UInt8 const*>( text );
}

} // namespace

std::string MakeString( CFStringRef string, CFStringEncoding encoding, unsigned char lossByte )
{
    CFRange const whole = CFRangeMake( 0, CFStringGetLength( string ) );
    CFIndex length = 0;
    CFStringGetBytes( string, whole, encoding, lossByte, false, nullptr, 0, &length );
    std::string text( static_cast<std::size_t>( length ), '\0' );
    if ( !text.empty() )
    {
        CFStringGetBytes( string, whole, encoding, lossByte, false,
            reinterpret_cast<UInt8*>( text.data() ), length, &length );
        text.resize( static_cast<std::size_t>( length ) );
    }
    return text;
}

AutoCFString MakeCFString( UStringRef<UTF8> text )
{
    return Created( CFStringCreateWithBytes( kCFAllocatorDefault, Bytes( text.begin() ),
        text.end() - text.begin(), kCFStringEncodingUTF8, false ) );
}

AutoCFString MakeCFString( UniChar const* units, CFIndex count )
{
    return Created( CFStringCreateWithCharacters( kCFAllocatorDefault, units, count ) );
}

AutoCFString MakeCFString( char const* text, CFStringEncoding encoding )
{
    return Created( CFStringCreateWithCString( kCFAllocatorDefault, text, encoding ) );
}

AutoCFString MakeCFString( ConstData text, CFStringEncoding encoding )
{
    return Created( CFStringCreateWithBytes(
        kCFAllocatorDefault, text.begin(), text.Length(), encoding, false ) );
}

AutoCFString MakeCFString( std::string const& text, CFStringEncoding encoding )
{
    return MakeCFString( ConstData( text ), encoding );
}

AutoCFString MakeCFString( CFURLRef url )
{
    CFStringRef const text = CFURLGetString( url );
    if ( text == nullptr )
    {
        throw CFStringCreateError();
    }
    return Duplicate( text );
}

AutoCFString EmptyCFString()
{
    static AutoCFString const empty = MakeCFString( static_cast<UniChar const*>( nullptr ), 0 );
    return Duplicate( empty.Get() );
}
