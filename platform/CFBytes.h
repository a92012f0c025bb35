#pragma once

#include "foundation/ConstData.h"
#include "foundation/Data.h"
#include "platform/AutoCFData.h"

/// A copy of `bytes`. Throws CFDataCreateError.
AutoCFData MakeCFData( ConstData bytes );

/// A copy of the content in an array of its own, which the caller releases with delete[] on the
/// range's begin. A null reference gives an empty range without an array. Throws std::bad_alloc,
/// and std::length_error for more than a range can hold.
Data ExtractCFData( CFDataRef data );
