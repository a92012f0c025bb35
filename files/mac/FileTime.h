#pragma once

#include "files/Instant.h"

#include <CoreServices/UTCUtils.h>

namespace MacintoshPlatform
{

/// The file system's time of an instant, truncated to 1/65536 second. After June 2189 the last
/// bits are lost, at most 10 of them. An instant before 1904 gives a time that means nothing.
UTCDateTime InstantToFileTime( Instant const& instant );

/// The instant of a time of the file system, read as one signed 64-bit number of 1/65536 seconds,
/// in whole microseconds rounded toward 1904. After May 2082 the last bits are lost. Times
/// that are more microseconds from 1904 than 64 bits hold (292,000 years) wrap round.
Instant FileTimeToInstant( UTCDateTime const& time );

} // namespace MacintoshPlatform
