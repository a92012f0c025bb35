#pragma once

// The object behind a CFArrayRef. Internal to linux/.

#include <CoreFoundation/CFArray.h>

#include "linux/CoreFoundation/CFObject.h"

#include <vector>

struct CFArrayObject final : CFObject
{
    CFArrayObject() : CFObject( CFKind::kArray ) {}

    bool Equal( CFObject const& other ) const override;
    CFHashCode Hash() const override;

    std::vector<Owned<CFObject const>> values;
};
