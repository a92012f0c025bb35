#pragma once

/// Reading what a URL designates.

#include <CoreFoundation/CFArray.h>
#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFData.h>
#include <CoreFoundation/CFDictionary.h>
#include <CoreFoundation/CFURL.h>

extern "C"
{

    /// What the error code of CFURLCreateDataAndPropertiesFromResource says.
    enum : SInt32
    {
        kCFURLUnknownError = -10, ///< includes: no regular file, too long, no memory
        kCFURLUnknownSchemeError = -11,
        kCFURLResourceNotFoundError = -12,
        kCFURLResourceAccessViolationError = -13,
        kCFURLImproperArgumentsError = -15
    };

    /// Files beyond this many bytes (16 MiB) are not read.
    enum : CFIndex
    {
        kCFURLMaximumResourceLength = 16L * 1024 * 1024
    };

    /// Reads the whole of the file that a file URL designates, a trailing "/" of its path
    /// disregarded. Links are followed.
    ///
    /// On success answers true, `*resourceData` is the content, which the caller releases, and
    /// `*errorCode` is 0. On failure answers false, `*resourceData` is null and `*errorCode` one
    /// of the codes above. `properties` and `errorCode` may be null; there are no properties here,
    /// so `*properties` always becomes null.
    ///
    /// Only regular files are read, and other things not even opened, so that no device or pipe
    /// notices and the call never waits for one. The file may change meanwhile: what is read is
    /// what is there, never more than the limit.
    Boolean CFURLCreateDataAndPropertiesFromResource( CFAllocatorRef allocator, CFURLRef url,
        CFDataRef* resourceData, CFDictionaryRef* properties, CFArrayRef desiredProperties,
        SInt32* errorCode );
}
