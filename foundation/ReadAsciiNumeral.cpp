#include "foundation/ReadAsciiNumeral.h"

#include "foundation/NumeralErrors.h"

#include <charconv>
#include <system_error>

namespace
{

template<typename Integer>
ReadNumeralResult::Value Parse( ConstData text, int base, Integer& value )
{
    char const* const begin = reinterpret_cast<char const*>( text.begin() );
    char const* const end = begin + text.Length();
    auto const [next, error] = std::from_chars( begin, end, value, base );
    if ( next != end || error == std::errc::invalid_argument )
        return ReadNumeralResult::kNotANumeral;
    return error == std::errc() ? ReadNumeralResult::kRead : ReadNumeralResult::kTooLarge;
}

template<typename Integer>
Integer Read( ConstData text, int base )
{
    Integer value = 0;
    ThrowError( Parse( text, base, value ) );
    return value;
}

template<typename Integer>
bool TryRead( ConstData text, int base, Integer& value )
{
    Integer read = 0;
    if ( Parse( text, base, read ) != ReadNumeralResult::kRead )
        return false;
    value = read;
    return true;
}

} // namespace

void ThrowError( ReadNumeralResult::Value result )
{
    if ( result == ReadNumeralResult::kNotANumeral )
        throw NotANumeral();
    if ( result == ReadNumeralResult::kTooLarge )
        throw NumeralTooLarge();
}

std::uint32_t ReadAsciiDecimalNumeral( ConstData text )
{
    return Read<std::uint32_t>( text, 10 );
}

std::int32_t ReadAsciiSignedDecimalNumeral( ConstData text )
{
    return Read<std::int32_t>( text, 10 );
}

std::uint32_t ReadAsciiHexNumeral( ConstData text )
{
    return Read<std::uint32_t>( text, 16 );
}

std::int32_t ReadAsciiSignedHexNumeral( ConstData text )
{
    return Read<std::int32_t>( text, 16 );
}

std::uint64_t ReadAsciiDecimalNumeral64( ConstData text )
{
    return Read<std::uint64_t>( text, 10 );
}

std::int64_t ReadAsciiSignedDecimalNumeral64( ConstData text )
{
    return Read<std::int64_t>( text, 10 );
}

std::uint64_t ReadAsciiHexNumeral64( ConstData text )
{
    return Read<std::uint64_t>( text, 16 );
}

std::int64_t ReadAsciiSignedHexNumeral64( ConstData text )
{
    return Read<std::int64_t>( text, 16 );
}

bool TryReadAsciiDecimalNumeral( ConstData text, std::uint32_t& value )
{
    return TryRead( text, 10, value );
}

bool TryReadAsciiSignedDecimalNumeral( ConstData text, std::int32_t& value )
{
    return TryRead( text, 10, value );
}

bool TryReadAsciiHexNumeral( ConstData text, std::uint32_t& value )
{
    return TryRead( text, 16, value );
}

bool TryReadAsciiSignedHexNumeral( ConstData text, std::int32_t& value )
{
    return TryRead( text, 16, value );
}

bool TryReadAsciiDecimalNumeral64( ConstData text, std::uint64_t& value )
{
    return TryRead( text, 10, value );
}

bool TryReadAsciiSignedDecimalNumeral64( ConstData text, std::int64_t& value )
{
    return TryRead( text, 10, value );
}

bool TryReadAsciiHexNumeral64( ConstData text, std::uint64_t& value )
{
    return TryRead( text, 16, value );
}

bool TryReadAsciiSignedHexNumeral64( ConstData text, std::int64_t& value )
{
    return TryRead( text, 16, value );
}
