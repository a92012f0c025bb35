#pragma once

#include "foundation/ConstDataOfCapacity.h"
#include "foundation/MakeAsciiNumeral.h"

#include <cstdint>

/// The decimal text of a 64-bit number, held inside the object: digits without leading zeros, after
/// a '-' if it is negative.
class Numeral
{
  public:
    explicit Numeral( std::int64_t value ) : mText( MakeAsciiSignedDecimalNumeral64( value ) ) {}

    explicit Numeral( std::uint64_t value )
        : mText( ConstData( MakeAsciiDecimalNumeral64( value ) ) )
    {
    }

    /// The text; valid as long as this object.
    operator ConstData() const { return mText; }

  private:
    ConstDataOfCapacity<21> mText;
};
