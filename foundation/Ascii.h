#pragma once

#include "foundation/Buffer.h"
#include "foundation/ConstData.h"
#include "foundation/Data.h"

#include <cstdint>
#include <string>

/// Text handling that does not depend on the locale. Bytes of 128 and above have no case and belong
/// to no set but Unprintable and High.
///
/// All tables are constants of the program: any thread may use them at any time.
namespace Ascii
{

// Character sets: bitmaps of eight words, in which byte c is a member when bit (c mod 32) of word
// (c div 32) is set.

std::uint32_t const* UppercaseAlphabet();
std::uint32_t const* LowercaseAlphabet();

/// Letters.
std::uint32_t const* Alphabetic();

/// Letters and '_'.
std::uint32_t const* Alphabetic_();
std::uint32_t const* Numeric();

/// Letters and digits.
std::uint32_t const* Alphanumeric();

/// Letters, digits and '_'.
std::uint32_t const* Alphanumeric_();

/// Digits and 'A' to 'F' in either case.
std::uint32_t const* HexDigits();

/// Every visible character that is neither a letter nor a digit.
std::uint32_t const* Punctuation();

/// Tab and space.
std::uint32_t const* LinearWhiteSpace();

/// Tab, line feed, carriage return and space, but not vertical tab and form feed.
std::uint32_t const* WhiteSpace();

/// 0 to 31 and 127.
std::uint32_t const* Control();

/// 33 to 126; space is no member.
std::uint32_t const* Printable();

/// 32 to 126; space is a member, tab and the line ends are not.
std::uint32_t const* PlainText();

/// The complement of Printable.
std::uint32_t const* Unprintable();

/// 0 to 127.
std::uint32_t const* Low();

/// 128 to 255.
std::uint32_t const* High();

/// Whether `c` belongs to `set`, the result of one of the functions above.
constexpr bool IsMember( std::uint32_t const* set, unsigned char c )
{
    return ( set[c / 32] >> ( c % 32 ) & 1 ) != 0;
}

// Case.

std::string RaiseCase( ConstData text );
std::string LowerCase( ConstData text );

/// Writes the mapped bytes of `from` to the start of `to`. Throws DataOverflow where `to` has no
/// room for the next byte; what was written before stays written.
void RaiseCase( ConstData from, Data to );
void LowerCase( ConstData from, Data to );

/// Moves as many bytes as `from` has and `to` has room for, mapped, advancing both.
void RaiseCase( ConstBuffer& from, Buffer& to );
void LowerCase( ConstBuffer& from, Buffer& to );

/// Whether `text` holds no upper-case letter.
bool IsLowercase( ConstData text );

/// Whether `text` holds no lower-case letter.
bool IsUppercase( ConstData text );

bool EqualIgnoringCase( ConstData a, ConstData b );

/// The difference of the first two unsigned bytes that differ once both are mapped to upper case,
/// a's minus b's. If none differs over the shorter length, -1, 0 or 1 as `a` is shorter than, as
/// long as or longer than `b`. The six characters between 'Z' and 'a' come after the letters.
std::int32_t CompareUppercase( ConstData a, ConstData b );

/// The same with lower case: the six characters between 'Z' and 'a' come before the letters.
std::int32_t CompareLowercase( ConstData a, ConstData b );

/// The same for two zero-terminated texts, but where one ends the result is the difference of the
/// two current characters taken as signed. So a text comes before its own prefix if it goes on with
/// a byte of 128 or above.
std::int32_t CompareLowercase( char const* a, char const* b );

/// Whether both case tables map the 26 letters and nothing else.
bool CaseTablesAreCorrect();

// Hexadecimal digits.

/// The value of a hexadecimal digit of either case. Meaningless for any other byte: ask HexDigits
/// first.
unsigned int HexDigitValue( unsigned char c );

/// The lower-case digit for a `value` of 0 to 15. Meaningless for other values.
unsigned char HexDigit( unsigned int value );

} // namespace Ascii
