#pragma once

/// Points in time. They come from property lists.

#include <CoreFoundation/CFBase.h>

extern "C"
{

    /// Seconds since 2001-01-01 00:00:00 UTC, leap seconds not counted.
    typedef double CFAbsoluteTime;

    CFTypeID CFDateGetTypeID( void );

    /// A null date is a programming error and traps.
    CFAbsoluteTime CFDateGetAbsoluteTime( CFDateRef date );
}
