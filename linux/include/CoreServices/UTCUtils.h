#pragma once

/// The file system's time.

#include <CoreFoundation/CFBase.h>

extern "C"
{

    /// Seconds since 1904-01-01 00:00:00 UTC in 48 bits, and a fraction in units of 1/65536 second.
    /// Together they are one 64-bit number in two's complement.
    typedef struct UTCDateTime
    {
        UInt16 highSeconds;
        UInt32 lowSeconds;
        UInt16 fraction;
    } UTCDateTime;
}
