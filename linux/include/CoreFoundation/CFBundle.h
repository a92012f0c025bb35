#pragma once

/// Bundles: folders with an Info.plist and resources.
///
/// A null bundle, and lack of memory, answer null; the next call then tries again.

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFDictionary.h>
#include <CoreFoundation/CFString.h>
#include <CoreFoundation/CFURL.h>

extern "C"
{

    /// The bundle of the running program. For the executable PREFIX/bin/NAME, with links resolved,
    /// that is the folder PREFIX/share/NAME, whether or not it exists. Always the same object,
    /// never to be released.
    CFBundleRef CFBundleGetMainBundle( void );

    /// The bundle in a folder; null when `bundleURL` is no file URL of an existing folder.
    CFBundleRef CFBundleCreate( CFAllocatorRef allocator, CFURLRef bundleURL );

    /// The dictionary in the bundle's Info.plist, read on first use; an empty one when the file is
    /// missing or holds none. Lives as long as the bundle.
    CFDictionaryRef CFBundleGetInfoDictionary( CFBundleRef bundle );

    /// The dictionary in the InfoPlist.strings of the first language folder that has one, or null.
    /// Read on first use. Lives as long as the bundle.
    ///
    /// Language folders are LANG.lproj: for the locale de_AT that is de_AT, then de, then en. The
    /// locale is the one the process has set for messages.
    CFDictionaryRef CFBundleGetLocalInfoDictionary( CFBundleRef bundle );

    /// The URL of the resource NAME.TYPE, or null when there is none. It is looked for in the
    /// bundle's folder, then in its language folders; with `subDirName`, in that folder inside
    /// each. `resourceType` and `subDirName` may be null or empty.
    CFURLRef CFBundleCopyResourceURL( CFBundleRef bundle, CFStringRef resourceName,
        CFStringRef resourceType, CFStringRef subDirName );
}
