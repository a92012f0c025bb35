#pragma once

/// Byte data. A null reference is a programming error and traps.

#include <CoreFoundation/CFBase.h>

extern "C"
{

    CFTypeID CFDataGetTypeID( void );

    /// A copy of `length` bytes; null for a negative length or lack of memory. `bytes` may be null
    /// when `length` is 0.
    CFDataRef CFDataCreate( CFAllocatorRef allocator, UInt8 const* bytes, CFIndex length );

    CFIndex CFDataGetLength( CFDataRef data );

    /// The bytes, which live as long as the object; null or not when there are none.
    UInt8 const* CFDataGetBytePtr( CFDataRef data );

    /// Copies the bytes of `range` to `buffer`, which has room for them. A range outside the data
    /// is a programming error and traps.
    void CFDataGetBytes( CFDataRef data, CFRange range, UInt8* buffer );
}
