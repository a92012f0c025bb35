#include "files/mac/FileTime.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
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

TEST( FileTime, OfAnInstantIsTruncated )
{
    std::pair<std::int64_t, std::uint64_t> const rows[] = { { 0, 2'082'844'800ull << 16 },
        { 1, 0x7c25b0800000 }, { 15, 0x7c25b0800000 }, { 16, 0x7c25b0800001 },
        { 500'000, 0x7c25b0808000 }, { 1'700'000'000'123'456, 247'912'516'820'890 }, { kEpoch, 0 },
        { kEpoch + 16, 1 }, { 6'924'354'454'740'991, 590'295'810'358'705 },
        { 6'924'354'454'740'992, 590'295'810'358'704 }, { kEpoch - 1, 0x431bde82d7b63 },
        { std::numeric_limits<std::int64_t>::max(), 0x863f7f60b76c400 },
        { std::numeric_limits<std::int64_t>::min(), 0x863f7f60b76c400 } };
    for ( auto const& [instant, time] : rows )
        EXPECT_EQ( time, TimeOf( instant ) ) << instant;
}

TEST( FileTime, BecomesAnInstantRoundedToward1904 )
{
    std::pair<std::uint64_t, std::int64_t> const rows[] = { { 0, kEpoch }, { 1, kEpoch + 15 },
        { 0x7c25b0800000, 0 }, { 0x7c25b0800001, 15 }, { 0xe179a1808000, 1'700'000'000'500'000 },
        { 0x10000000000000, 66'636'631'936'000'000 }, { 0xffffffffffffffff, kEpoch - 15 },
        { 0xffffffffffff0000, kEpoch - 1'000'000 },
        { 0x1000000000000000, -856'640'874'093'551'616 },
        { 0x7fffffffffffffff, -6'838'547'079'148'428'553 },
        { 0x8000000000000000, 6'834'381'389'548'412'928 } };
    for ( auto const& [time, instant] : rows )
        EXPECT_EQ( instant, InstantOf( time ) ) << time;
    for ( std::int64_t instant = kEpoch; instant < 3'500'000'000'000'000;
          instant += 1'234'567'890'123 )
    {
        std::int64_t const lost = instant - InstantOf( TimeOf( instant ) );
        ASSERT_TRUE( lost >= 0 && lost <= 16 ) << instant;
    }
}
