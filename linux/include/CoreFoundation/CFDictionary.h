#pragma once

/// Dictionaries: values under keys, all of them objects, which the dictionary retains.
///
/// Keys are compared with CFEqual and found with CFHash, so a key must not change while it is
/// one. Looking up takes constant time on average, also for keys chosen by somebody hostile: the
/// hash of a string differs from process to process. A null dictionary, key or value is a
/// programming error and traps.

#include <CoreFoundation/CFBase.h>

extern "C"
{

    typedef struct CFDictionaryObject* CFMutableDictionaryRef;

    /// How a dictionary treats its keys and values. There is one way: as objects, by
    /// `kCFTypeDictionaryKeyCallBacks` and `kCFTypeDictionaryValueCallBacks`; functions that are
    /// given others answer null.
    typedef struct CFDictionaryKeyCallBacks
    {
        CFIndex version;
    } CFDictionaryKeyCallBacks;

    /// The same for values.
    typedef struct CFDictionaryValueCallBacks
    {
        CFIndex version;
    } CFDictionaryValueCallBacks;

    extern CFDictionaryKeyCallBacks const kCFTypeDictionaryKeyCallBacks;
    extern CFDictionaryValueCallBacks const kCFTypeDictionaryValueCallBacks;

    CFTypeID CFDictionaryGetTypeID( void );

    /// A dictionary of `count` keys and values; of equal keys the last one's value stays. Null for
    /// a negative count or lack of memory. Both lists may be null when `count` is 0.
    CFDictionaryRef CFDictionaryCreate( CFAllocatorRef allocator, void const** keys,
        void const** values, CFIndex count, CFDictionaryKeyCallBacks const* keyCallBacks,
        CFDictionaryValueCallBacks const* valueCallBacks );

    /// An empty dictionary to fill. `capacity` is a hint of the original interface and is ignored.
    CFMutableDictionaryRef CFDictionaryCreateMutable( CFAllocatorRef allocator, CFIndex capacity,
        CFDictionaryKeyCallBacks const* keyCallBacks,
        CFDictionaryValueCallBacks const* valueCallBacks );

    CFIndex CFDictionaryGetCount( CFDictionaryRef dictionary );

    /// The value, which the dictionary goes on owning, or null.
    void const* CFDictionaryGetValue( CFDictionaryRef dictionary, void const* key );

    /// Whether there is a value; if so, and `value` is not null, stores it there. The dictionary
    /// goes on owning it.
    Boolean CFDictionaryGetValueIfPresent(
        CFDictionaryRef dictionary, void const* key, void const** value );

    /// Stores all keys and the values that belong to them, in no particular order. Each list has
    /// room for the dictionary's count or is null.
    void CFDictionaryGetKeysAndValues(
        CFDictionaryRef dictionary, void const** keys, void const** values );

    /// Puts a value under a key; the value that was there is released, the key that was there
    /// stays. When memory runs out the dictionary stays as it was.
    void CFDictionarySetValue(
        CFMutableDictionaryRef dictionary, void const* key, void const* value );
}
