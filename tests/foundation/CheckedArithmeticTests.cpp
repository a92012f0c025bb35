#include "foundation/CheckedArithmetic.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <tuple>
#include <utility>
#include <vector>

namespace
{
__extension__ typedef __int128 Wide;

constexpr auto kAdd = []( auto a, auto b, auto* sum )
{ return __builtin_add_overflow( a, b, sum ); };
constexpr auto kSubtract = []( auto a, auto b, auto* difference )
{ return __builtin_sub_overflow( a, b, difference ); };
constexpr auto kMultiply = []( auto a, auto b, auto* product )
{ return __builtin_mul_overflow( a, b, product ); };

enum Unscoped : int;

// Signed types at even places, each before its unsigned counterpart; then those nobody may pass.
using Types = std::tuple<signed char, unsigned char, short, unsigned short, int, unsigned int, long,
    unsigned long, long long, unsigned long long, bool, char, wchar_t, char8_t, char16_t, char32_t,
    float, Unscoped>;
constexpr std::size_t kTypes = std::tuple_size_v<Types>;
constexpr std::size_t kCheckedTypes = 10;

template<std::size_t aPlace, std::size_t bPlace>
constexpr bool OnlyTheRightFamiliesTakeTypes()
{
    using A = std::tuple_element_t<aPlace, Types>;
    using B = std::tuple_element_t<bPlace, Types>;
    constexpr bool checked = aPlace < kCheckedTypes && bPlace < kCheckedTypes;
    constexpr bool same = checked && aPlace == bPlace;
    constexpr bool signedFirst = checked && aPlace % 2 == 0 && bPlace == aPlace + 1;
    constexpr bool unsignedFirst = checked && bPlace % 2 == 0 && aPlace == bPlace + 1;
    static_assert( requires( A a, B b ) { CanAdd( a, b ); } == same );
    static_assert( requires( A a, B b ) { CanSubtract( a, b ); } == same );
    static_assert( requires( A a, B b ) { CanMultiply( a, b ); } == same );
    static_assert( requires( A a, B b ) { CanAddSigned( a, b ); } == signedFirst );
    static_assert( requires( A a, B b ) { CanAddUnsigned( a, b ); } == signedFirst );
    static_assert( requires( A a, B b ) { CanSubtractSigned( a, b ); } ==
                   ( signedFirst || unsignedFirst || ( same && aPlace % 2 == 1 ) ) );
    static_assert(
        requires( A a, B b ) { CanSubtractUnsigned( a, b ); } == ( signedFirst || unsignedFirst ) );
    static_assert( requires( A a ) { CanOverflowWithAdd( a ); } == ( aPlace < kCheckedTypes ) );
    return true;
}

template<std::size_t... pairs>
constexpr bool OnlyTheRightFamiliesTakeAnyTypes( std::index_sequence<pairs...> )
{
    return std::min( { OnlyTheRightFamiliesTakeTypes<pairs / kTypes, pairs % kTypes>()... } );
}

static_assert( OnlyTheRightFamiliesTakeAnyTypes( std::make_index_sequence<kTypes * kTypes>() ) );

// Where CanSubtractSigned does not answer whether a - b fits in the signed type.
template<typename A, typename B>
bool IsDeliberatelyWrong( A a, B b )
{
    Wide const half = Wide{ 1 } << ( 8 * sizeof( A ) - 1 );
    if ( std::is_signed_v<A> )
        return false;
    if ( std::is_signed_v<B> )
        return b >= 0 || b == -half; // the reverse; true, although nothing fits
    // Both branches: false, although the difference fits.
    return a >= half && ( b < half ? Wide{ a } - b < half : Wide{ a } + b >= 3 * half );
}

template<typename Result>
bool Fits( auto operation, auto a, auto b )
{
    std::conditional_t<sizeof( Result ) == 1, int, Result> result = 0;
    return !operation( a, b, &result ) && std::in_range<Result>( result );
}

template<typename A, typename B>
void ExpectAnswers( A a, B b )
{
    using Signed = std::make_signed_t<A>;
    using Unsigned = std::make_unsigned_t<A>;
    auto const expect = [&]( bool answer, bool expected )
    { EXPECT_EQ( answer, expected ) << +a << " and " << +b; };
    if constexpr ( std::same_as<A, B> )
    {
        expect( CanAdd( a, b ), Fits<A>( kAdd, a, b ) );
        expect( CanSubtract( a, b ), Fits<A>( kSubtract, a, b ) );
        expect( CanMultiply( a, b ), Fits<A>( kMultiply, a, b ) );
    }
    else
        expect( CanSubtractUnsigned( a, b ), Fits<Unsigned>( kSubtract, a, b ) );
    if constexpr ( std::is_signed_v<A> && std::is_unsigned_v<B> )
    {
        expect( CanAddSigned( a, b ), Fits<Signed>( kAdd, a, b ) );
        expect( CanAddUnsigned( a, b ), Fits<Unsigned>( kAdd, a, b ) );
    }
    if constexpr ( std::is_unsigned_v<A> || std::is_unsigned_v<B> )
        expect( CanSubtractSigned( a, b ),
            Fits<Signed>( kSubtract, a, b ) != IsDeliberatelyWrong( a, b ) );
}

// All values of 8 bits; of more bits those near the bounds of both signs, their halves and zero,
// then random ones of every length.
template<typename Integer>
std::vector<Integer> Values()
{
    std::vector<Integer> values;
    for ( int value = 0; sizeof( Integer ) == 1 && value < 256; ++value )
        values.push_back( static_cast<Integer>( value ) );
    for ( Wide quarter = 0; quarter < 4; ++quarter )
        for ( Wide step = -2; step <= 2; ++step )
            values.push_back(
                static_cast<Integer>( ( quarter << ( 8 * sizeof( Integer ) - 2 ) ) + step ) );
    std::mt19937_64 random;
    for ( unsigned int i = 0; i < 128; ++i )
        values.push_back( static_cast<Integer>( static_cast<std::int64_t>( random() ) >> i % 64 ) );
    return values;
}

template<typename A, typename B>
void ExpectAnswersForAllValues()
{
    auto const bounds = { Wide{ std::numeric_limits<A>::min() },
        Wide{ std::numeric_limits<A>::max() }, Wide{ std::numeric_limits<B>::min() },
        Wide{ std::numeric_limits<B>::max() } };
    for ( A const a : Values<A>() )
    {
        EXPECT_EQ( CanOverflowWithAdd( a ), a == std::numeric_limits<A>::max() ) << +a;
        for ( B const b : Values<B>() )
            ExpectAnswers( a, b );
        for ( Wide const bound : bounds ) // the partners at which an answer turns over
            for ( Wide const partner : { bound - a, a - bound, bound / ( a == 0 ? 1 : a ) } )
                for ( int const step : { -1, 0, 1 } )
                    ExpectAnswers( a, static_cast<B>( partner + step ) );
    }
}

template<typename Signed>
class CheckedArithmeticTest : public testing::Test
{
};

using SignedTypes = testing::Types<signed char, short, int, long, long long>;
TYPED_TEST_SUITE( CheckedArithmeticTest, SignedTypes );

TYPED_TEST( CheckedArithmeticTest, AnswersWhetherResultsFitButForTheKnownDifferences )
{
    using Unsigned = std::make_unsigned_t<TypeParam>;
    ExpectAnswersForAllValues<TypeParam, TypeParam>();
    ExpectAnswersForAllValues<TypeParam, Unsigned>();
    ExpectAnswersForAllValues<Unsigned, TypeParam>();
    ExpectAnswersForAllValues<Unsigned, Unsigned>();
}

// The known differences themselves, at values worked out by hand.
using U8 = unsigned char;
using S8 = signed char;
static_assert( !CanSubtractSigned( U8{ 200 }, U8{ 100 } ) );
static_assert( CanSubtractSigned( U8{ 200 }, U8{ 150 } ) );
static_assert( CanSubtractSigned( U8{ 255 }, S8{ -128 } ) );
static_assert( !CanSubtractSigned( U8{ 5 }, S8{ 3 } ) && CanSubtractSigned( U8{ 131 }, S8{ 3 } ) );
} // namespace
