#include "tests/linux/CoreFoundation/Held.h"

Held<CFStringRef> String( std::string_view text )
{
    return Held<CFStringRef>(
        CFStringCreateWithBytes( kCFAllocatorDefault, reinterpret_cast<UInt8 const*>( text.data() ),
            std::ssize( text ), kCFStringEncodingUTF8, false ) );
}

std::string Text( CFStringRef string )
{
    CFRange const all = CFRangeMake( 0, CFStringGetLength( string ) );
    std::string bytes( 3 * static_cast<std::size_t>( all.length ), '\0' );
    CFIndex length = 0;
    CFStringGetBytes( string, all, kCFStringEncodingUTF8, 0, false,
        reinterpret_cast<UInt8*>( bytes.data() ), std::ssize( bytes ), &length );
    return bytes.substr( 0, static_cast<std::size_t>( length ) );
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
    return ReadPropertyList( text, option );
}

std::string Describe( CFTypeRef object )
{
    if ( object == nullptr )
        return "null";
    std::string_view const start = "<plist>";
    std::string const list = PropertyListText( object ).value_or( "a date without a form" );
    std::size_t const at = list.find( start );
    return at == list.npos
               ? list
               : list.substr( at + start.size(), list.rfind( '<' ) - at - start.size() );
}
