#pragma once

/// Property lists in XML, read into dictionaries, arrays, strings, numbers, truth values, dates and
/// data.

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFData.h>
#include <CoreFoundation/CFString.h>

extern "C"
{

    typedef CFOptionFlags CFPropertyListMutabilityOptions;

    enum : CFPropertyListMutabilityOptions
    {
        kCFPropertyListImmutable = 0,
        kCFPropertyListMutableContainers = 1,
        kCFPropertyListMutableContainersAndLeaves = 2
    };

    /// Data beyond this many bytes (16 MiB) is refused.
    enum : CFIndex
    {
        kCFPropertyListMaximumDataLength = 16L * 1024 * 1024
    };

    /// Elements nested deeper than this, `<plist>` and leaves counted, are refused.
    enum : CFIndex
    {
        kCFPropertyListMaximumDepth = 512
    };

    /// Reads an XML property list; the caller owns the result, whatever its type.
    ///
    /// When the data is refused, the result is null and `*errorString`, if wanted, becomes a
    /// string for people that the caller releases; otherwise it becomes null. A refusal gives a
    /// string even when memory runs out.
    ///
    /// With kCFPropertyListMutableContainersAndLeaves strings are mutable; keys never are.
    /// Containers can be changed whatever the option.
    ///
    /// What is read, where it departs from plain XML or is stricter:
    /// - The XML declaration, the DOCTYPE, and `<plist>` round the one root object may be missing;
    ///   blanks may come first; whatever follows `</plist>` is not looked at. Attributes are
    ///   ignored.
    /// - UTF-8 with or without a byte-order mark, UTF-16 with one, and by declaration US-ASCII,
    ///   ISO-8859-1, windows-1252 and other encodings that iconv knows, as far as each byte stands
    ///   for one character. A mark outweighs the declaration.
    /// - No entities but the five predefined ones; a DOCTYPE with an internal subset is refused and
    ///   an external one never fetched.
    /// - Text in `<string>` and `<key>` stays as it is, line ends too; CDATA is allowed in these
    ///   two alone. No comment or element inside a leaf, no text but blanks outside of one.
    /// - Of equal keys the last one's value stays.
    /// - `<integer>`: blanks, a sign, then decimal digits or 0x and hexadecimal ones, from -2^63 to
    ///   2^64 - 1. `<real>`: blanks, a sign, then a decimal number within the range of a double, or
    ///   "infinity" or "inf"; or only "nan"; these in any case. `<date>`: YYYY-MM-DDThh:mm:ssZ;
    ///   fields beyond their range carry over. `<data>`: base64 with padding, and blanks anywhere.
    ///
    /// Time and memory are linear in the data's length.
    CFPropertyListRef CFPropertyListCreateFromXMLData( CFAllocatorRef allocator, CFDataRef data,
        CFOptionFlags mutabilityOption, CFStringRef* errorString );
}
