#include <CoreFoundation/CFString.h>

#include "linux/CoreFoundation/CFStringObject.h"
#include "linux/CoreFoundation/KeyedHash.h"
#include "linux/CoreFoundation/TextEncodings.h"

#include <algorithm>
#include <cstring>
#include <optional>

bool CFStringObject::Equal( CFObject const& other ) const
{
    return units == static_cast<CFStringObject const&>( other ).units;
}

CFHashCode CFStringObject::Hash() const
{
    return HashElements( units );
}

CFTypeID CFStringGetTypeID( void )
{
    return static_cast<CFTypeID>( CFKind::kString );
}

CFStringRef CFStringCreateWithBytes( CFAllocatorRef, UInt8 const* bytes, CFIndex length,
    CFStringEncoding encoding, Boolean isExternalRepresentation )
{
    return NullIfThrown(
        [&]() -> CFStringRef
        {
            if ( length < 0 || ( bytes == nullptr && length != 0 ) )
            {
                return nullptr;
            }
            std::optional<std::u16string> units = DecodeText(
                { reinterpret_cast<char const*>( bytes ), static_cast<std::size_t>( length ) },
                encoding, isExternalRepresentation != 0 );
            return units ? new CFStringObject( std::move( *units ) ) : nullptr;
        } );
}

CFStringRef CFStringCreateWithCString(
    CFAllocatorRef allocator, char const* text, CFStringEncoding encoding )
{
    Require( text != nullptr );
    return CFStringCreateWithBytes( allocator, reinterpret_cast<UInt8 const*>( text ),
        static_cast<CFIndex>( std::strlen( text ) ), encoding, false );
}

CFStringRef CFStringCreateWithCharacters( CFAllocatorRef, UniChar const* units, CFIndex length )
{
    return NullIfThrown(
        [&]() -> CFStringRef
        {
            if ( length < 0 || ( units == nullptr && length != 0 ) )
            {
                return nullptr;
            }
            return new CFStringObject( std::u16string( units, units + length ) );
        } );
}

void CFStringAppend( CFMutableStringRef string, CFStringRef appended )
{
    Require( string != nullptr && string->mutability == CFStringObject::Mutability::kMutable );
    std::u16string_view const units = UnitsOf( appended );
    NullIfThrown(
        [&]() -> CFStringRef
        {
            string->units.append( units );
            return string;
        } );
}

CFIndex CFStringGetLength( CFStringRef string )
{
    return static_cast<CFIndex>( UnitsOf( string ).size() );
}

void CFStringGetCharacters( CFStringRef string, CFRange range, UniChar* buffer )
{
    std::u16string_view const units = UnitsOf( string );
    Require( IsWithin( range, CFStringGetLength( string ) ) );
    std::copy_n( units.begin() + range.location, range.length, buffer );
}

CFIndex CFStringGetBytes( CFStringRef string, CFRange range, CFStringEncoding encoding,
    UInt8 lossByte, Boolean isExternalRepresentation, UInt8* buffer, CFIndex maxBufLen,
    CFIndex* usedBufLen )
{
    std::u16string_view const units = UnitsOf( string );
    Require( IsWithin( range, CFStringGetLength( string ) ) );
    EncodingResult result;
    try
    {
        result = EncodeText( units.substr( static_cast<std::size_t>( range.location ),
                                 static_cast<std::size_t>( range.length ) ),
            { .encoding = encoding,
                .lossByte = lossByte,
                .isExternal = isExternalRepresentation != 0,
                .buffer = buffer,
                .bufferLength = static_cast<std::size_t>( std::max( maxBufLen, CFIndex{ 0 } ) ) } );
    }
    catch ( std::exception const& )
    {
        // Only iconv's way needs memory. Without any, nothing is converted.
    }
    if ( usedBufLen != nullptr )
    {
        *usedBufLen = static_cast<CFIndex>( result.bytes );
    }
    return static_cast<CFIndex>( result.units );
}
