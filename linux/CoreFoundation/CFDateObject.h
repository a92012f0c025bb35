#pragma once

// The object behind a CFDateRef. Internal to linux/.

#include <CoreFoundation/CFDate.h>

#include "linux/CoreFoundation/CFObject.h"

struct CFDateObject final : CFObject
{
    explicit CFDateObject( CFAbsoluteTime itsTime ) : CFObject( CFKind::kDate ), time( itsTime ) {}

    bool Equal( CFObject const& other ) const override;
    CFHashCode Hash() const override;

    CFAbsoluteTime const time;
};
