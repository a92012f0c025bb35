#pragma once

#include "platform/AutoCF.h"

#include <CoreFoundation/CFData.h>

/// Owns a reference to byte data, or none.
class AutoCFData : public AutoCF<CFDataRef>
{
  public:
    using AutoCF::AutoCF;

    /// Releases `data` unless it is null.
    static void DisposeCFDataRef( CFDataRef data ) noexcept { Dispose( data ); }
};

/// A holder that shares `data`, which may be null.
inline AutoCFData Duplicate( CFDataRef data ) noexcept
{
    return DuplicateInto<AutoCFData>( data );
}
