#pragma once

#include "foundation/ConstData.h"

#include <cstdint>

/// Numbers from their text.
///
/// The whole text must be the numeral: at least one digit, for a signed number after a '-' if it is
/// negative. There are no blanks, no '+', no prefix like "0x" and no separators. Leading zeros, as
/// many as you like, mean nothing; hexadecimal digits may be of either case, and signed hexadecimal
/// numerals are a sign and a magnitude too ("-1f" is -31), not two's complement. "-0" is 0 for a
/// signed number, and for an unsigned one no numeral, like any text with a '-'.
///
/// The Read forms throw NotANumeral for any other text and NumeralTooLarge for a numeral above or
/// below what the result can hold. The Try forms return false for both and leave `value` as it was;
/// they never throw. Nothing here allocates or depends on the locale, and the time is linear in the
/// length of the text.

namespace ReadNumeralResult
{

enum Value
{
    kRead,
    kNotANumeral,
    kTooLarge
};

} // namespace ReadNumeralResult

/// Throws NotANumeral or NumeralTooLarge as `result` says; returns only for kRead.
void ThrowError( ReadNumeralResult::Value result );

std::uint32_t ReadAsciiDecimalNumeral( ConstData text );
std::int32_t ReadAsciiSignedDecimalNumeral( ConstData text );
std::uint32_t ReadAsciiHexNumeral( ConstData text );
std::int32_t ReadAsciiSignedHexNumeral( ConstData text );

std::uint64_t ReadAsciiDecimalNumeral64( ConstData text );
std::int64_t ReadAsciiSignedDecimalNumeral64( ConstData text );
std::uint64_t ReadAsciiHexNumeral64( ConstData text );
std::int64_t ReadAsciiSignedHexNumeral64( ConstData text );

bool TryReadAsciiDecimalNumeral( ConstData text, std::uint32_t& value );
bool TryReadAsciiSignedDecimalNumeral( ConstData text, std::int32_t& value );
bool TryReadAsciiHexNumeral( ConstData text, std::uint32_t& value );
bool TryReadAsciiSignedHexNumeral( ConstData text, std::int32_t& value );

bool TryReadAsciiDecimalNumeral64( ConstData text, std::uint64_t& value );
bool TryReadAsciiSignedDecimalNumeral64( ConstData text, std::int64_t& value );
bool TryReadAsciiHexNumeral64( ConstData text, std::uint64_t& value );
bool TryReadAsciiSignedHexNumeral64( ConstData text, std::int64_t& value );
