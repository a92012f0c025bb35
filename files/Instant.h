#pragma once

#include <compare>
#include <cstdint>

/// A point in time, in microseconds since 1970-01-01 00:00:00 UTC.
struct Instant
{
    std::int64_t microseconds = 0;

    auto operator<=>( Instant const& ) const = default;
};
