#pragma once

/// The ground types of the Core Foundation-compatible layer, and reference counting.
///
/// Ownership follows the names: a function with "Create" or "Copy" in its name hands out an object
/// that the caller releases with CFRelease; one with "Get" in its name lends it. A null reference
/// given to a function of this header is a programming error and traps.

#include <stddef.h>
#include <stdint.h>

extern "C"
{

    typedef signed long CFIndex;
    typedef unsigned long CFTypeID;
    typedef unsigned long CFHashCode;
    typedef unsigned long CFOptionFlags;
    typedef unsigned char Boolean;
    typedef uint8_t UInt8;
    typedef int8_t SInt8;
    typedef uint16_t UInt16;
    typedef int16_t SInt16;
    typedef uint32_t UInt32;
    typedef int32_t SInt32;
    typedef uint64_t UInt64;
    typedef int64_t SInt64;
    typedef uint16_t UniChar;
    typedef SInt32 OSStatus;
    typedef SInt16 OSErr;

    typedef void const* CFTypeRef;
    typedef struct CFStringObject const* CFStringRef;
    typedef struct CFDataObject const* CFDataRef;
    typedef struct CFArrayObject const* CFArrayRef;
    typedef struct CFDictionaryObject const* CFDictionaryRef;
    typedef struct CFNumberObject const* CFNumberRef;
    typedef struct CFBooleanObject const* CFBooleanRef;
    typedef struct CFDateObject const* CFDateRef;
    typedef struct CFURLObject const* CFURLRef;
    typedef struct CFBundleObject* CFBundleRef;
    typedef struct CFAllocatorObject const* CFAllocatorRef;
    typedef CFTypeRef CFPropertyListRef;

    /// A run of elements: the index of the first, and how many.
    typedef struct CFRange
    {
        CFIndex location;
        CFIndex length;
    } CFRange;

    static inline CFRange CFRangeMake( CFIndex location, CFIndex length )
    {
        CFRange range = { location, length };
        return range;
    }

    /// The only allocator: the C++ heap. Functions that take an allocator ignore it.
    extern CFAllocatorRef const kCFAllocatorDefault;

    /// Adds one reference and returns the object. Safe from any thread.
    CFTypeRef CFRetain( CFTypeRef object );

    /// Takes one reference away; the last one destroys the object. Safe from any thread.
    void CFRelease( CFTypeRef object );

    /// How many references there are; for constants such as kCFBooleanTrue a large fixed number.
    CFIndex CFGetRetainCount( CFTypeRef object );

    CFTypeID CFGetTypeID( CFTypeRef object );

    /// Whether two objects hold the same value; objects of different types are never equal.
    Boolean CFEqual( CFTypeRef a, CFTypeRef b );

    /// A hash that is the same for objects that CFEqual calls equal.
    CFHashCode CFHash( CFTypeRef object );
}
