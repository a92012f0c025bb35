#pragma once

/// From URLs to references of the file manager and back.
///
/// These two stand here and not in CFURL.h because references are the file manager's, which is
/// built on Core Foundation and not the other way round.

#include <CoreFoundation/CFURL.h>
#include <CoreServices/Files.h>

extern "C"
{

    /// Makes a reference to the item that a file URL designates, trailing slashes of its path
    /// disregarded. False when there is none or it cannot be reached, and for a null URL or one of
    /// another scheme; `fsRef` is then as it was.
    Boolean CFURLGetFSRef( CFURLRef url, FSRef* fsRef );

    /// The URL of the item, in directory form for a folder; null when it is gone.
    CFURLRef CFURLCreateFromFSRef( CFAllocatorRef allocator, FSRef const* fsRef );
}
