#include <CoreFoundation/CFBase.h>

#include "linux/CoreFoundation/CFObject.h"

#include <limits>

CFAllocatorRef const kCFAllocatorDefault = nullptr;

namespace
{

CFObject const& Checked( CFTypeRef reference )
{
    Require( reference != nullptr );
    return AsObject( reference );
}

} // namespace

CFIndex CFObject::RetainCount() const
{
    return mLifetime == Lifetime::kConstant ? std::numeric_limits<CFIndex>::max()
                                            : mReferences.load( std::memory_order_relaxed );
}

CFTypeRef CFRetain( CFTypeRef object )
{
    Checked( object ).Retain();
    return object;
}

void CFRelease( CFTypeRef object )
{
    Checked( object ).Release();
}

CFIndex CFGetRetainCount( CFTypeRef object )
{
    return Checked( object ).RetainCount();
}

CFTypeID CFGetTypeID( CFTypeRef object )
{
    return static_cast<CFTypeID>( Checked( object ).Kind() );
}

Boolean CFEqual( CFTypeRef a, CFTypeRef b )
{
    CFObject const& first = Checked( a );
    CFObject const& second = Checked( b );
    return &first == &second || ( first.Kind() == second.Kind() && first.Equal( second ) );
}

CFHashCode CFHash( CFTypeRef object )
{
    return Checked( object ).Hash();
}
