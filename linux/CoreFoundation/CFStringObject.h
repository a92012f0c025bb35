#pragma once

// The object behind a CFStringRef. Internal to linux/.

#include <CoreFoundation/CFString.h>

#include "linux/CoreFoundation/CFObject.h"

#include <string>
#include <string_view>
#include <utility>

struct CFStringObject final : CFObject
{
    enum class Mutability
    {
        kImmutable,
        kMutable
    };

    explicit CFStringObject(
        std::u16string&& text, Mutability itsMutability = Mutability::kImmutable )
        : CFObject( CFKind::kString ), units( std::move( text ) ), mutability( itsMutability )
    {
    }

    CFStringObject( std::u16string&& text, Lifetime lifetime )
        : CFObject( CFKind::kString, lifetime ),
          units( std::move( text ) ),
          mutability( Mutability::kImmutable )
    {
    }

    bool Equal( CFObject const& other ) const override;
    CFHashCode Hash() const override;

    std::u16string units;
    Mutability const mutability;
};

/// The units of a string; a null string traps.
inline std::u16string_view UnitsOf( CFStringRef string )
{
    Require( string != nullptr );
    return string->units;
}
