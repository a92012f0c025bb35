#include "foundation/MakeAsciiNumeral.h"

#include "foundation/ConstDataRopeReference.h"

#include <charconv>
#include <iterator>
#include <string_view>

namespace
{

template<std::uint32_t N, typename Integer>
ConstDataOfCapacity<N> Make( Integer value, int base )
{
    char text[N];
    char* const end = std::to_chars( text, text + N, value, base ).ptr;
    return ConstDataOfCapacity<N>( ConstData( std::string_view( text, end ) ) );
}

} // namespace

ConstDataOfCapacity<10> MakeAsciiDecimalNumeral( std::uint32_t value )
{
    return Make<10>( value, 10 );
}

ConstDataOfCapacity<11> MakeAsciiSignedDecimalNumeral( std::int32_t value )
{
    return Make<11>( value, 10 );
}

ConstDataOfCapacity<8> MakeAsciiHexNumeral( std::uint32_t value )
{
    return Make<8>( value, 16 );
}

ConstDataOfCapacity<20> MakeAsciiDecimalNumeral64( std::uint64_t value )
{
    return Make<20>( value, 10 );
}

ConstDataOfCapacity<21> MakeAsciiSignedDecimalNumeral64( std::int64_t value )
{
    if ( value >= 0 )
        return Make<21>( value, 10 );
    auto const digits = MakeAsciiDecimalNumeral64( 0 - static_cast<std::uint64_t>( value ) );
    ConstData const signAndDigits[] = { ConstData( "-" ), digits };
    return ConstDataOfCapacity<21>(
        ConstDataRopeReference( std::begin( signAndDigits ), std::end( signAndDigits ) ) );
}

ConstDataOfCapacity<16> MakeAsciiHexNumeral64( std::uint64_t value )
{
    return Make<16>( value, 16 );
}
