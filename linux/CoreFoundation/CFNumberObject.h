#pragma once

// The objects behind CFNumberRef and CFBooleanRef. Internal to linux/.

#include <CoreFoundation/CFNumber.h>

#include "linux/CoreFoundation/CFObject.h"

#include <cstdint>
#include <limits>
#include <variant>

/// Wide enough for every integer a number can hold.
__extension__ typedef __int128 WideInteger;

struct CFNumberObject final : CFObject
{
    /// An integer from -2^63 to 2^64 - 1.
    explicit CFNumberObject( WideInteger integer )
        : CFObject( CFKind::kNumber ), value( Narrowed( integer ) )
    {
    }

    explicit CFNumberObject( double real ) : CFObject( CFKind::kNumber ), value( real ) {}

    bool Equal( CFObject const& other ) const override;
    CFHashCode Hash() const override;

    /// Unsigned only what is above 2^63 - 1.
    using Value = std::variant<std::int64_t, std::uint64_t, double>;

    Value const value;

  private:
    static Value Narrowed( WideInteger integer )
    {
        if ( integer > std::numeric_limits<std::int64_t>::max() )
        {
            return static_cast<std::uint64_t>( integer );
        }
        return static_cast<std::int64_t>( integer );
    }
};

struct CFBooleanObject final : CFObject
{
    explicit constexpr CFBooleanObject( bool itsValue )
        : CFObject( CFKind::kBoolean, Lifetime::kConstant ), value( itsValue )
    {
    }

    bool const value;
};
