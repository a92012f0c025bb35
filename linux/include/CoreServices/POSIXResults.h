#pragma once

/// From the C library's errors to the file manager's codes.

#include <CoreFoundation/CFBase.h>

extern "C"
{

    /// The code of MacErrors.h for the value of errno that a call left for the item at `path`;
    /// 0 for 0. Looks at the item and its folder where errno alone does not tell: whether the
    /// folder is missing, whether the item is immutable, whether the device refuses writes. The
    /// path may be of any length, and the item may be gone meanwhile: then errno decides.
    OSErr FSResultOfError( int error, char const* path );
}
