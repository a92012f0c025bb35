#include <CoreFoundation/CFData.h>

#include "linux/CoreFoundation/CFDataObject.h"
#include "linux/CoreFoundation/KeyedHash.h"

#include <algorithm>

namespace
{

std::vector<UInt8> const& BytesOf( CFDataRef data )
{
    Require( data != nullptr );
    return data->bytes;
}

} // namespace

bool CFDataObject::Equal( CFObject const& other ) const
{
    return bytes == static_cast<CFDataObject const&>( other ).bytes;
}

CFHashCode CFDataObject::Hash() const
{
    return HashElements<8>( bytes );
}

CFTypeID CFDataGetTypeID( void )
{
    return static_cast<CFTypeID>( CFKind::kData );
}

CFDataRef CFDataCreate( CFAllocatorRef, UInt8 const* bytes, CFIndex length )
{
    return NullIfThrown(
        [&]() -> CFDataRef
        {
            if ( length < 0 || ( bytes == nullptr && length != 0 ) )
            {
                return nullptr;
            }
            return new CFDataObject( std::vector<UInt8>( bytes, bytes + length ) );
        } );
}

CFIndex CFDataGetLength( CFDataRef data )
{
    return static_cast<CFIndex>( BytesOf( data ).size() );
}

UInt8 const* CFDataGetBytePtr( CFDataRef data )
{
    return BytesOf( data ).data();
}

void CFDataGetBytes( CFDataRef data, CFRange range, UInt8* buffer )
{
    std::vector<UInt8> const& bytes = BytesOf( data );
    Require( IsWithin( range, CFDataGetLength( data ) ) );
    std::copy_n( bytes.begin() + range.location, range.length, buffer );
}
