#pragma once

#include "foundation/ConstDataOfCapacity.h"

#include <cstdint>

/// The text of a number, at least one digit, without leading zeros, padding or separators. Negative
/// numbers begin with '-', others with no sign; hexadecimal digits are lower-case, without a
/// prefix. Nothing here allocates, fails or depends on the locale.

ConstDataOfCapacity<10> MakeAsciiDecimalNumeral( std::uint32_t value );
ConstDataOfCapacity<11> MakeAsciiSignedDecimalNumeral( std::int32_t value );
ConstDataOfCapacity<8> MakeAsciiHexNumeral( std::uint32_t value );

ConstDataOfCapacity<20> MakeAsciiDecimalNumeral64( std::uint64_t value );
ConstDataOfCapacity<21> MakeAsciiSignedDecimalNumeral64( std::int64_t value );
ConstDataOfCapacity<16> MakeAsciiHexNumeral64( std::uint64_t value );
