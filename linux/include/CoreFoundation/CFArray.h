#pragma once

/// Arrays of objects, each of which the array retains. They come from property lists.
///
/// CFEqual compares element by element. A null array or element, or an index outside the array, is
/// a programming error and traps.

#include <CoreFoundation/CFBase.h>

extern "C"
{

    typedef struct CFArrayObject* CFMutableArrayRef;

    CFTypeID CFArrayGetTypeID( void );

    CFIndex CFArrayGetCount( CFArrayRef array );

    /// The element, which the array goes on owning.
    void const* CFArrayGetValueAtIndex( CFArrayRef array, CFIndex index );

    /// When memory runs out the array stays as it was.
    void CFArrayAppendValue( CFMutableArrayRef array, void const* value );
}
