// Checked arithmetic against numbers of 128 bits, in every width and mixture of signs.

#include "foundation/CheckedArithmetic.h"
#include "fuzz/FuzzInput.h"

namespace
{

__extension__ typedef __int128 Wide;

template<class Integer>
bool Fits( Wide number )
{
    return number >= std::numeric_limits<Integer>::min() &&
           number <= std::numeric_limits<Integer>::max();
}

// Any number, or one near an edge of either sign, or a quarter of the way.
template<class Integer>
Integer TakeNumber( FuzzInput& input )
{
    unsigned const choice = input.Take<std::uint8_t>();
    if ( choice % 2 == 0 )
        return input.Take<Integer>();
    Wide const edge = Wide{ choice / 2 % 4 } << ( 8 * sizeof( Integer ) - 2 );
    return static_cast<Integer>( edge + input.Take<std::int8_t>() % 8 );
}

template<class Signed>
void Check( FuzzInput& input )
{
    using Unsigned = std::make_unsigned_t<Signed>;
    auto const s = TakeNumber<Signed>( input ), t = TakeNumber<Signed>( input );
    auto const u = TakeNumber<Unsigned>( input ), v = TakeNumber<Unsigned>( input );
    Wide const a = s, b = t, c = u, d = v;
    Wide const signedMax = std::numeric_limits<Signed>::max();
    Wide const unsignedMax = std::numeric_limits<Unsigned>::max();

    Require( CanAdd( s, t ) == Fits<Signed>( a + b ), "s + s" );
    Require( CanAdd( u, v ) == Fits<Unsigned>( c + d ), "u + u" );
    Require( CanAddSigned( s, u ) == Fits<Signed>( a + c ), "s + u, signed" );
    Require( CanAddUnsigned( s, u ) == Fits<Unsigned>( a + c ), "s + u, unsigned" );
    Require( CanOverflowWithAdd( s ) == !Fits<Signed>( a + 1 ), "s + 1" );
    Require( CanOverflowWithAdd( u ) == !Fits<Unsigned>( c + 1 ), "u + 1" );

    Require( CanSubtract( s, t ) == Fits<Signed>( a - b ), "s - s" );
    Require( CanSubtract( u, v ) == Fits<Unsigned>( c - d ), "u - u" );
    Require( CanSubtractUnsigned( s, u ) == Fits<Unsigned>( a - c ), "s - u, unsigned" );
    Require( CanSubtractUnsigned( u, s ) == Fits<Unsigned>( c - a ), "u - s, unsigned" );
    Require( CanSubtractSigned( s, u ) == Fits<Signed>( a - c ), "s - u, signed" );
    // The answers that differ from the question, as they are documented.
    bool const isAlways = a < 0 && s == std::numeric_limits<Signed>::min();
    bool const unsignedLessSigned = a < 0 ? isAlways || Fits<Signed>( c - a ) : c - a > signedMax;
    Require( CanSubtractSigned( u, s ) == unsignedLessSigned, "u - s, signed" );
    bool const unsignedLessUnsigned = c <= signedMax
                                          ? Fits<Signed>( c - d )
                                          : d > signedMax && c + d <= unsignedMax + signedMax + 1;
    Require( CanSubtractSigned( u, v ) == unsignedLessUnsigned, "u - u, signed" );

    // Of two 64-bit numbers only the magnitude of the product needs all 128 bits, without a sign.
    Signed signedProduct;
    Unsigned unsignedProduct;
    Require( CanMultiply( s, t ) == !__builtin_mul_overflow( s, t, &signedProduct ), "s * s" );
    Require( CanMultiply( u, v ) == !__builtin_mul_overflow( u, v, &unsignedProduct ), "u * u" );
}

} // namespace

int LLVMFuzzerTestOneInput( std::uint8_t const* data, std::size_t size )
{
    FuzzInput input( data, size );
    do
    {
        switch ( input.TakeUpTo( 4 ) )
        {
        case 0:
            Check<signed char>( input );
            break;
        case 1:
            Check<short>( input );
            break;
        case 2:
            Check<int>( input );
            break;
        case 3:
            Check<long>( input );
            break;
        default:
            Check<long long>( input );
        }
    } while ( !input.IsEmpty() );
    return 0;
}
