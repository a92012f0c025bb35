#include <CoreFoundation/CFArray.h>

#include "linux/CoreFoundation/CFArrayObject.h"

#include <algorithm>

bool CFArrayObject::Equal( CFObject const& other ) const
{
    return std::ranges::equal( values, static_cast<CFArrayObject const&>( other ).values,
        []( auto const& a, auto const& b ) { return CFEqual( a.get(), b.get() ) != 0; } );
}

CFHashCode CFArrayObject::Hash() const
{
    return values.size();
}

CFTypeID CFArrayGetTypeID( void )
{
    return static_cast<CFTypeID>( CFKind::kArray );
}

CFIndex CFArrayGetCount( CFArrayRef array )
{
    Require( array != nullptr );
    return static_cast<CFIndex>( array->values.size() );
}

void const* CFArrayGetValueAtIndex( CFArrayRef array, CFIndex index )
{
    Require( index >= 0 && index < CFArrayGetCount( array ) );
    return array->values[static_cast<std::size_t>( index )].get();
}

void CFArrayAppendValue( CFMutableArrayRef array, void const* value )
{
    Require( array != nullptr );
    NullIfThrown(
        [&]
        {
            array->values.push_back( RetainedObject( value ) );
            return array;
        } );
}
