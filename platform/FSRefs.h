#pragma once

#include <CoreFoundation/CFURL.h>
#include <CoreServices/Files.h>

/// A reference to the item that a URL designates. Throws CFURLGetFSRefFailed when there is none or
/// it cannot be reached, and for a null URL.
FSRef MakeFSRef( CFURLRef url );

/// A reference to the item that an FSSpec names. Throws what ThrowRealOSError makes of the
/// file manager's code when there is none.
FSRef MakeFSRef( FSSpec const& spec );
