#include "files/mac/FileTime.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <utility>

namespace
{

constexpr std::int64_t kEpoch = -2'082'844'800'000'000; // 1904 as an instant

std::uint64_t TimeOf( std::int64_t instant )
{
    UTCDateTime const time = MacintoshPlatform::InstantToFileTime( { instant } );
    return std::uint64_t{ time.highSeconds } << 48 | std::uint64_t{ time.lowSeconds } << 16 |
           time.fraction;
}

std::int64_t InstantOf( std::uint64_t time )
{
    UTCDateTime const fields = { static_cast<UInt16>( time >> 48 ),
        static_cast<UInt32>( time >> 16 ), static_cast<UInt16>( time ) };
    return MacintoshPlatform::FileTimeToInstant( fields ).microseconds;
}

} // namespace

// Expected values from arithmetic without a limit of width.
TEST( FileTime, IsTruncatedAndOutOfTheRangeOfTheOtherFormStaysWithinItsOwn )
{
    for ( auto const& [instant, time] : { std::pair( kEpoch, 0ull ), { 15, 0x7c25b0800000 },
              { 16, 0x7c25b0800001 }, { 6'924'354'454'740'991, 590'295'810'358'705 },
              { 6'924'354'454'740'992, 590'295'810'358'704 }, { kEpoch - 1, 0x431bde82d7b63 },
              { INT64_MAX, 0x863f7f60b76c400 }, { INT64_MIN, 0x863f7f60b76c400 } } )
        EXPECT_EQ( time, TimeOf( instant ) ) << instant;
    for ( auto const& [time, instant] :
        { std::pair( 0x7c25b0800001ull, INT64_C( 15 ) ), { 0, kEpoch },
            { 0xffffffffffffffff, kEpoch - 15 }, { 0x10000000000003ff, -856'640'874'093'551'616 },
            { 0x10000000000000, 66'636'631'936'000'000 },
            { 0x7fffffffffffffff, -6'838'547'079'148'428'553 },
            { 0x8000000000000000, 6'834'381'389'548'412'928 } } )
        EXPECT_EQ( instant, InstantOf( time ) ) << time;
}
