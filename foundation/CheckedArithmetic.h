#pragma once

#include <concepts>
#include <cstdint>
#include <limits>
#include <type_traits>

/// \file
/// Whether an addition, subtraction or multiplication of two integers fits, asked before it is
/// made.
///
///     if ( !CanAdd( used, more ) )
///         throw DataOverflow();
///     used += more;
///
/// Each question is a pure function of its arguments: nothing is computed for the caller, nothing
/// is thrown, and no argument makes it overflow. Below, n is the arguments' width in bits, SMIN and
/// SMAX are the bounds of its signed type, UMAX is the maximum of its unsigned type.
///
/// The arguments' types choose the question, so they are those of the operation that follows,
/// exactly: both of one type, or one of them the unsigned counterpart of the other. Nothing is
/// promoted or converted on the way. A call that mixes widths (`unsigned char` with `int`, or with
/// a literal) does not compile, nor does one with `bool` or a character type; `signed char` and
/// `unsigned char` are the 8-bit integers. `long` and `long long` do not mix either, although both
/// may have 64 bits: that depends on the system, and a call should compile on all systems or on
/// none.
///
/// Beware of `CanSubtractSigned` with an unsigned first argument: two of its forms answer something
/// else than their name says.

/// What the questions are written with; not for callers.
namespace CheckedArithmetic
{

template<typename Type, typename... Types>
concept OneOf = ( std::same_as<Type, Types> || ... );

template<typename Type>
concept SignedInteger = OneOf<Type, signed char, short, int, long, long long>;

template<typename Type>
concept UnsignedInteger =
    OneOf<Type, unsigned char, unsigned short, unsigned int, unsigned long, unsigned long long>;

template<typename Type, typename Unsigned>
concept SignedOf = SignedInteger<Type> && std::same_as<std::make_unsigned_t<Type>, Unsigned>;

template<typename Type, typename Signed>
concept UnsignedOf = UnsignedInteger<Type> && std::same_as<std::make_signed_t<Type>, Signed>;

template<typename Integer>
inline constexpr Integer kMin = std::numeric_limits<Integer>::min();

template<typename Integer>
inline constexpr Integer kMax = std::numeric_limits<Integer>::max();

/// The bits of `x` read as unsigned.
template<typename Integer>
constexpr auto AsUnsigned( Integer x ) noexcept
{
    return static_cast<std::make_unsigned_t<Integer>>( x );
}

/// The bits of `x` read as signed.
template<typename Integer>
constexpr auto AsSigned( Integer x ) noexcept
{
    return static_cast<std::make_signed_t<Integer>>( x );
}

/// SMAX as an unsigned number: all bits but the top one.
template<UnsignedInteger Unsigned>
inline constexpr Unsigned kSignedMax = AsUnsigned( kMax<std::make_signed_t<Unsigned>> );

/// a - b modulo 2^n, in the arguments' own n bits whatever they are promoted to.
template<UnsignedInteger Unsigned>
constexpr Unsigned Difference( Unsigned a, Unsigned b ) noexcept
{
    return static_cast<Unsigned>( a - b );
}

/// `x` with its top bit turned over. Read as unsigned that is x + 2^(n-1) for an `x` below
/// 2^(n-1); read as signed it is x - 2^(n-1) for every `x`.
template<UnsignedInteger Unsigned>
constexpr Unsigned FlipSignBit( Unsigned x ) noexcept
{
    return static_cast<Unsigned>( x ^ ( kSignedMax<Unsigned> + 1u ) );
}

} // namespace CheckedArithmetic

/// Whether a + b fits in the unsigned type of both.
template<CheckedArithmetic::UnsignedInteger Unsigned>
constexpr bool CanAdd( Unsigned a, Unsigned b ) noexcept
{
    return CheckedArithmetic::kMax<Unsigned> - a >= b;
}

/// Whether a + b fits in the signed type of both.
template<CheckedArithmetic::SignedInteger Signed>
constexpr bool CanAdd( Signed a, Signed b ) noexcept
{
    if ( a < 0 )
        return CheckedArithmetic::kMin<Signed> - a <= b;
    return CheckedArithmetic::kMax<Signed> - a >= b;
}

/// Whether a + b fits in the signed type of the two.
template<CheckedArithmetic::SignedInteger Signed, CheckedArithmetic::UnsignedOf<Signed> Unsigned>
constexpr bool CanAddSigned( Signed a, Unsigned b ) noexcept
{
    using namespace CheckedArithmetic;
    return Difference( kSignedMax<Unsigned>, AsUnsigned( a ) ) >= b;
}

/// Whether a + b fits in the unsigned type of the two.
template<CheckedArithmetic::SignedInteger Signed, CheckedArithmetic::UnsignedOf<Signed> Unsigned>
constexpr bool CanAddUnsigned( Signed a, Unsigned b ) noexcept
{
    using namespace CheckedArithmetic;
    if ( a < 0 )
        return Difference( Unsigned{ 0 }, AsUnsigned( a ) ) <= b;
    return Difference( kMax<Unsigned>, AsUnsigned( a ) ) >= b;
}

/// Whether adding one to `x` overflows: true for UMAX alone. Despite the name, it does not ask
/// whether there is any number that overflows when added.
template<CheckedArithmetic::UnsignedInteger Unsigned>
constexpr bool CanOverflowWithAdd( Unsigned x ) noexcept
{
    return x == CheckedArithmetic::kMax<Unsigned>;
}

/// Whether adding one to `x` overflows: true for SMAX alone, and so for no negative number.
///
/// The test of negative numbers from 32 bits on never succeeds: -SMIN is 2^(n-1), and the least
/// magnitude it asks for is two more.
template<CheckedArithmetic::SignedInteger Signed>
constexpr bool CanOverflowWithAdd( Signed x ) noexcept
{
    using namespace CheckedArithmetic;
    using Unsigned = std::make_unsigned_t<Signed>;
    if ( x >= 0 )
        return kMax<Signed> - x < 1;
    if constexpr ( sizeof( Signed ) < sizeof( std::int32_t ) )
        return false;
    else
        return Difference( Unsigned{ 0 }, AsUnsigned( x ) ) >= kSignedMax<Unsigned> + 3;
}

/// Whether a - b fits in the unsigned type of both.
template<CheckedArithmetic::UnsignedInteger Unsigned>
constexpr bool CanSubtract( Unsigned a, Unsigned b ) noexcept
{
    return a >= b;
}

/// Whether a - b fits in the signed type of both.
template<CheckedArithmetic::SignedInteger Signed>
constexpr bool CanSubtract( Signed a, Signed b ) noexcept
{
    if ( a < 0 )
        return a - CheckedArithmetic::kMin<Signed> >= b;
    return a - CheckedArithmetic::kMax<Signed> <= b;
}

/// Whether a - b fits in the signed type of the two.
template<CheckedArithmetic::SignedInteger Signed, CheckedArithmetic::UnsignedOf<Signed> Unsigned>
constexpr bool CanSubtractSigned( Signed a, Unsigned b ) noexcept
{
    using namespace CheckedArithmetic;
    return AsSigned( FlipSignBit( b ) ) <= a;
}

/// NOT whether a - b fits in the signed type of the two, except for `b` from SMIN + 1 to -1.
///
/// From zero on the answer is the reverse: true when a - b is above SMAX. For SMIN it is always
/// true, although no difference fits. These answers are part of the interface; they stay.
template<CheckedArithmetic::UnsignedInteger Unsigned, CheckedArithmetic::SignedOf<Unsigned> Signed>
constexpr bool CanSubtractSigned( Unsigned a, Signed b ) noexcept
{
    using namespace CheckedArithmetic;
    if ( b < 0 )
        return AsUnsigned( static_cast<Signed>( b + kMax<Signed> ) ) >= a;
    return FlipSignBit( AsUnsigned( b ) ) <= a;
}

/// Whether a - b fits in the signed type of their width, for `a` up to SMAX; NOT so above.
///
/// For `a` above SMAX the answer is false when `b` is at most SMAX, although a difference of up to
/// SMAX would fit; when `b` is above SMAX too, every difference fits, but the answer is true only
/// if a + b is at most UMAX + SMAX + 1. So with 8 bits 200 and 100 give false, 200 and 150 true.
/// These answers are part of the interface; they stay.
template<CheckedArithmetic::UnsignedInteger Unsigned>
constexpr bool CanSubtractSigned( Unsigned a, Unsigned b ) noexcept
{
    using namespace CheckedArithmetic;
    if ( AsSigned( a ) < 0 )
        return Difference( kSignedMax<Unsigned>, b ) >= a;
    return AsSigned( FlipSignBit( b ) ) <= AsSigned( a );
}

/// Whether a - b fits in the unsigned type of the two.
template<CheckedArithmetic::SignedInteger Signed, CheckedArithmetic::UnsignedOf<Signed> Unsigned>
constexpr bool CanSubtractUnsigned( Signed a, Unsigned b ) noexcept
{
    using namespace CheckedArithmetic;
    return AsSigned( b ) >= 0 && a >= AsSigned( b );
}

/// Whether a - b fits in the unsigned type of the two.
template<CheckedArithmetic::UnsignedInteger Unsigned, CheckedArithmetic::SignedOf<Unsigned> Signed>
constexpr bool CanSubtractUnsigned( Unsigned a, Signed b ) noexcept
{
    using namespace CheckedArithmetic;
    if ( b >= 0 )
        return a >= AsUnsigned( b );
    return Difference( AsUnsigned( b ), Unsigned{ 1 } ) >= a;
}

/// Whether a × b fits in the unsigned type of both.
template<CheckedArithmetic::UnsignedInteger Unsigned>
constexpr bool CanMultiply( Unsigned a, Unsigned b ) noexcept
{
    return a == 0 || CheckedArithmetic::kMax<Unsigned> / a >= b;
}

/// Whether a × b fits in the signed type of both.
template<CheckedArithmetic::SignedInteger Signed>
constexpr bool CanMultiply( Signed a, Signed b ) noexcept
{
    using namespace CheckedArithmetic;
    if constexpr ( sizeof( Signed ) < sizeof( std::int32_t ) )
    {
        std::int32_t const product = std::int32_t{ a } * std::int32_t{ b };
        return kMin<Signed> <= product && product <= kMax<Signed>;
    }
    else if ( a == -1 ) // SMIN / -1 would overflow
        return b != kMin<Signed>;
    else if ( a == 0 )
        return true;
    else if ( a > 0 )
        return b >= 1 ? kMax<Signed> / a >= b : kMin<Signed> / a <= b;
    else
        return b >= 1 ? kMin<Signed> / a >= b : kMax<Signed> / a <= b;
}
