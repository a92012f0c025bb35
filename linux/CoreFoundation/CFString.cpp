#include <CoreFoundation/CFString.h>

#include "linux/CoreFoundation/CFStringObject.h"
#include "linux/CoreFoundation/KeyedHash.h"
#include "linux/CoreFoundation/TextEncodings.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <optional>
#include <span>
#include <utility>

namespace
{

template<class Units>
bool HaveSame( Units a, Units b )
{
    return a == b;
}

template<class Units, class OtherUnits>
bool HaveSame( Units a, OtherUnits b )
{
    return std::ranges::equal( a, b );
}

CFStringObject const& Checked( CFStringRef string )
{
    Require( string != nullptr );
    return *string;
}

} // namespace

void* CFStringObject::operator new(
    std::size_t size, std::size_t units, std::size_t unitSize, ObjectPool* pool )
{
    if ( units > std::numeric_limits<std::uint32_t>::max() )
    {
        throw std::bad_alloc();
    }
    return ObjectPool::Allocate( size + units * unitSize, pool );
}

void CFStringObject::Append( CFStringObject const& appended )
{
    if ( !mGrown )
    {
        auto grown = std::make_unique<std::u16string>();
        WithUnits( [&grown]( auto units ) { grown->assign( units.begin(), units.end() ); } );
        mGrown = std::move( grown );
    }
    appended.WithUnits( [this]( auto units ) { mGrown->append( units.begin(), units.end() ); } );
}

bool CFStringObject::Equal( CFObject const& other ) const
{
    auto const& string = static_cast<CFStringObject const&>( other );
    if ( Length() != string.Length() )
    {
        return false;
    }
    return WithUnits(
        [&string]( auto mine ) {
            return string.WithUnits( [mine]( auto theirs ) { return HaveSame( mine, theirs ); } );
        } );
}

CFHashCode CFStringObject::Hash() const
{
    return WithUnits( []( auto units ) { return HashElements<16>( units ); } );
}

bool IsASCII( std::string_view text )
{
    std::uint64_t all = 0;
    std::uint64_t word = 0;
    for ( ; text.size() >= sizeof word; text.remove_prefix( sizeof word ) )
    {
        std::memcpy( &word, text.data(), sizeof word );
        all |= word;
    }
    for ( char const byte : text )
    {
        all |= static_cast<unsigned char>( byte );
    }
    return ( all & 0x8080808080808080U ) == 0;
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
            std::string_view const text(
                reinterpret_cast<char const*>( bytes ), static_cast<std::size_t>( length ) );
            if ( encoding == kCFStringEncodingUTF8 && IsASCII( text ) )
            {
                return CFStringObject::Create( text, {} );
            }
            std::optional<std::u16string> const units =
                DecodeText( text, encoding, isExternalRepresentation != 0 );
            return units ? CFStringObject::Create( *units, {} ) : nullptr;
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
            return CFStringObject::Create(
                std::span( units, static_cast<std::size_t>( length ) ), {} );
        } );
}

void CFStringAppend( CFMutableStringRef string, CFStringRef appended )
{
    Require( string != nullptr && string->mutability == CFStringObject::Mutability::kMutable );
    CFStringObject const& added = Checked( appended );
    NullIfThrown(
        [&]() -> CFStringRef
        {
            string->Append( added );
            return string;
        } );
}

CFIndex CFStringGetLength( CFStringRef string )
{
    return static_cast<CFIndex>( Checked( string ).Length() );
}

void CFStringGetCharacters( CFStringRef string, CFRange range, UniChar* buffer )
{
    Require( IsWithin( range, CFStringGetLength( string ) ) );
    string->WithUnits( [&]( auto units )
        { std::copy_n( units.begin() + range.location, range.length, buffer ); } );
}

CFIndex CFStringGetBytes( CFStringRef string, CFRange range, CFStringEncoding encoding,
    UInt8 lossByte, Boolean isExternalRepresentation, UInt8* buffer, CFIndex maxBufLen,
    CFIndex* usedBufLen )
{
    Require( IsWithin( range, CFStringGetLength( string ) ) );
    EncodingRequest const request{ .encoding = encoding,
        .lossByte = lossByte,
        .isExternal = isExternalRepresentation != 0,
        .buffer = buffer,
        .bufferLength = static_cast<std::size_t>( std::max( maxBufLen, CFIndex{ 0 } ) ) };
    EncodingResult result;
    try
    {
        result = string->WithUnits(
            [&]( auto units )
            {
                return EncodeText( units.substr( static_cast<std::size_t>( range.location ),
                                       static_cast<std::size_t>( range.length ) ),
                    request );
            } );
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
