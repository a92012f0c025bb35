#pragma once

#include "platform/AutoCF.h"

#include <CoreFoundation/CFString.h>

/// Owns a reference to a string, or none.
class AutoCFString : public AutoCF<CFStringRef>
{
  public:
    using AutoCF::AutoCF;

    /// Releases `string` unless it is null.
    static void DisposeCFStringRef( CFStringRef string ) noexcept { Dispose( string ); }
};

/// A holder that shares `string`, which may be null.
inline AutoCFString Duplicate( CFStringRef string ) noexcept
{
    return DuplicateInto<AutoCFString>( string );
}
