#pragma once

#include "platform/AutoCF.h"

#include <CoreFoundation/CFDictionary.h>

/// Owns a reference to a dictionary, or none.
class AutoCFDictionary : public AutoCF<CFDictionaryRef>
{
  public:
    using AutoCF::AutoCF;

    /// Releases `dictionary` unless it is null.
    static void DisposeCFDictionaryRef( CFDictionaryRef dictionary ) noexcept
    {
        Dispose( dictionary );
    }
};

/// A holder that shares `dictionary`, which may be null.
inline AutoCFDictionary Duplicate( CFDictionaryRef dictionary ) noexcept
{
    return DuplicateInto<AutoCFDictionary>( dictionary );
}
