#include "files/mac/FileTime.h"

#include <cstdint>

namespace MacintoshPlatform
{

namespace
{

// Microseconds from 1904-01-01 to 1970-01-01.
constexpr std::uint64_t kOffset = 2'082'844'800'000'000;

// A microsecond is 1024 / 15625 units of 1/65536 second; 15625 is the sixth power of five.
constexpr std::uint64_t kUnits = 15625;
constexpr int kPowersOfTwo = 10;
constexpr int kPowersOfFive = 6;

} // namespace

UTCDateTime InstantToFileTime( Instant const& instant )
{
    std::uint64_t time = static_cast<std::uint64_t>( instant.microseconds ) + kOffset;
    int shifts = 0;
    while ( shifts < kPowersOfTwo && time >> 63 == ( time >> 62 & 1 ) )
    {
        time <<= 1;
        ++shifts;
    }
    time = time / kUnits << ( kPowersOfTwo - shifts );
    return { static_cast<UInt16>( time >> 48 ), static_cast<UInt32>( time >> 16 ),
        static_cast<UInt16>( time ) };
}

Instant FileTimeToInstant( UTCDateTime const& time )
{
    // Products that do not fit wrap round, so they are taken without sign.
    std::uint64_t value = std::uint64_t{ time.highSeconds } << 48 |
                          std::uint64_t{ time.lowSeconds } << 16 | time.fraction;
    int fives = kPowersOfFive;
    while ( fives > 0 && ( value >> 60 == 0 || value >> 60 == 15 ) )
    {
        value *= 5;
        --fives;
    }
    value = static_cast<std::uint64_t>( static_cast<std::int64_t>( value ) / 1024 );
    for ( ; fives > 0; --fives )
    {
        value *= 5;
    }
    return { static_cast<std::int64_t>( value - kOffset ) };
}

} // namespace MacintoshPlatform
