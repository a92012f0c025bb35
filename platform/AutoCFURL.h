#pragma once

#include "platform/AutoCF.h"

#include <CoreFoundation/CFURL.h>

/// Owns a reference to a URL, or none.
class AutoCFURL : public AutoCF<CFURLRef>
{
  public:
    using AutoCF::AutoCF;

    /// Releases `url` unless it is null.
    static void DisposeCFURLRef( CFURLRef url ) noexcept { Dispose( url ); }
};

/// A holder that shares `url`, which may be null.
inline AutoCFURL Duplicate( CFURLRef url ) noexcept
{
    return DuplicateInto<AutoCFURL>( url );
}
