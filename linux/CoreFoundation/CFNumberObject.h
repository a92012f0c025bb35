#pragma once

// The objects behind CFNumberRef and CFBooleanRef. Internal to linux/.

#include <CoreFoundation/CFNumber.h>

#include "linux/CoreFoundation/CFObject.h"

#include <variant>

/// Wide enough for every integer a number can hold.
__extension__ typedef __int128 WideInteger;

struct CFNumberObject final : CFObject
{
    /// An integer from -2^63 to 2^64 - 1.
    explicit CFNumberObject( WideInteger integer ) : CFObject( CFKind::kNumber ), value( integer )
    {
    }

    explicit CFNumberObject( double real ) : CFObject( CFKind::kNumber ), value( real ) {}

    bool Equal( CFObject const& other ) const override;
    CFHashCode Hash() const override;

    std::variant<WideInteger, double> const value;
};

struct CFBooleanObject final : CFObject
{
    explicit constexpr CFBooleanObject( bool itsValue )
        : CFObject( CFKind::kBoolean, Lifetime::kConstant ), value( itsValue )
    {
    }

    bool const value;
};
