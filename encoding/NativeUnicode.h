#pragma once

#include "encoding/AutoUString.h"
#include "encoding/UStringRef.h"
#include "foundation/ConstDataOfCapacity.h"
#include "foundation/DebuggableException.h"

/// Text in the encoding of the process's C locale, converted by the C library. No state is kept
/// between calls. The locale must not be changed while another thread converts.

namespace MacintoshPlatform
{

/// Thrown for a code point that the locale's encoding cannot represent.
class WideToMultiByteConvertError : public DebuggableException
{
};

/// Thrown for bytes that are invalid in the locale's encoding.
class MultiByteToWideConvertError : public DebuggableException
{
};

/// The name of the locale's encoding as the C library gives it, for example "UTF-8". Throws
/// ConstDataCapacityExceeded if it is longer than 48 bytes.
ConstDataOfCapacity<48> IANAEncodingName( Local8Bit );

/// Converts to the locale's encoding, up to the first zero unit. The result always has its zero
/// unit, even if it is empty. Throws WideToMultiByteConvertError.
AutoUString<Local8Bit> FromNativeUnicode( UStringRef<UTF32> text );

/// Converts from the locale's encoding, up to the first zero byte. The result always has its zero
/// unit, even if it is empty. Throws MultiByteToWideConvertError.
AutoUString<UTF32> ToNativeUnicode( UStringRef<Local8Bit> text );

} // namespace MacintoshPlatform
