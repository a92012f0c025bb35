#pragma once

// The object behind a CFDataRef. Internal to linux/.

#include <CoreFoundation/CFData.h>

#include "linux/CoreFoundation/CFObject.h"

#include <utility>
#include <vector>

struct CFDataObject final : CFObject
{
    explicit CFDataObject( std::vector<UInt8>&& content )
        : CFObject( CFKind::kData ), bytes( std::move( content ) )
    {
    }

    bool Equal( CFObject const& other ) const override;
    CFHashCode Hash() const override;

    std::vector<UInt8> const bytes;
};
