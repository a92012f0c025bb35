#pragma once

/// Strings: immutable runs of UTF-16 units, except those that a property list makes mutable.
///
/// Lengths, indices and ranges count UTF-16 units; unpaired surrogates and U+0000 are allowed. A
/// string is made with at most 4,294,967,295 units; more are refused as lack of memory.
/// CFEqual compares units one by one (no composition, no case), and CFHash agrees with it. A null
/// string, or a range outside the string, is a programming error and traps.

#include <CoreFoundation/CFBase.h>

extern "C"
{

    typedef struct CFStringObject* CFMutableStringRef;

    /// The name of a text encoding. Besides the constants below, the ISO 8859, Windows and some
    /// East Asian encodings are understood under their public numbers, as far as the C library's
    /// iconv knows them.
    typedef UInt32 CFStringEncoding;

    enum : CFStringEncoding
    {
        kCFStringEncodingMacRoman = 0,
        kCFStringEncodingUTF16 = 0x0100,
        kCFStringEncodingISOLatin1 = 0x0201,
        kCFStringEncodingWindowsLatin1 = 0x0500,
        kCFStringEncodingASCII = 0x0600,
        kCFStringEncodingUTF8 = 0x08000100,
        kCFStringEncodingUTF16BE = 0x10000100,
        kCFStringEncodingUTF16LE = 0x14000100,
        kCFStringEncodingUTF32BE = 0x18000100,
        kCFStringEncodingUTF32LE = 0x1c000100,
        kCFStringEncodingInvalidId = 0xffffffff
    };

    CFTypeID CFStringGetTypeID( void );

    /// A string of `length` bytes in `encoding`; null for invalid bytes, an unknown encoding, a
    /// negative length or lack of memory.
    ///
    /// - UTF-8 is read strictly: one invalid sequence refuses the whole; a leading byte-order mark
    ///   is dropped.
    /// - ASCII takes bytes above 0x7F as the characters U+0080 to U+00FF. Windows Latin-1 takes its
    ///   five unassigned bytes as the C1 controls of the same number.
    /// - UTF-16 of no stated order is in host order when it is not external. External text obeys
    ///   and loses its byte-order mark and is big-endian without one. An odd last byte is ignored.
    CFStringRef CFStringCreateWithBytes( CFAllocatorRef allocator, UInt8 const* bytes,
        CFIndex length, CFStringEncoding encoding, Boolean isExternalRepresentation );

    /// The same for a zero-terminated text, not external.
    CFStringRef CFStringCreateWithCString(
        CFAllocatorRef allocator, char const* text, CFStringEncoding encoding );

    /// Null for a negative length or lack of memory. `units` may be null when `length` is 0.
    CFStringRef CFStringCreateWithCharacters(
        CFAllocatorRef allocator, UniChar const* units, CFIndex length );

    /// Appends to a mutable string; an immutable one traps. When memory runs out the string stays
    /// as it was.
    void CFStringAppend( CFMutableStringRef string, CFStringRef appended );

    CFIndex CFStringGetLength( CFStringRef string );

    /// Copies the units of `range` to `buffer`, which has room for them.
    void CFStringGetCharacters( CFStringRef string, CFRange range, UniChar* buffer );

    /// Converts the units of `range` to `encoding` and returns how many were converted.
    ///
    /// With `buffer` null nothing is written, `maxBufLen` does not count and `usedBufLen` becomes
    /// the length needed; that is the length a call with a large enough buffer writes. A character
    /// that does not fit whole is not begun. With `lossByte` 0 the conversion stops at the first
    /// character that the encoding lacks; otherwise each UTF-16 unit of it becomes one such byte.
    /// An unpaired surrogate stops a conversion to UTF-8 either way. External UTF-16 of no stated
    /// order begins with a byte-order mark. `usedBufLen` may be null. An unknown encoding converts
    /// nothing, and so does lack of memory: encodings that are left to iconv need some.
    CFIndex CFStringGetBytes( CFStringRef string, CFRange range, CFStringEncoding encoding,
        UInt8 lossByte, Boolean isExternalRepresentation, UInt8* buffer, CFIndex maxBufLen,
        CFIndex* usedBufLen );
}
