#include <CoreFoundation/CFNumber.h>

#include "linux/CoreFoundation/CFNumberObject.h"

#include <bit>
#include <cmath>
#include <concepts>
#include <cstring>
#include <limits>
#include <optional>
#include <utility>

namespace
{

// A value as another type, and whether it is still the same.
template<class Target>
struct Converted
{
    Target value;
    bool isExact;
};

template<std::integral Target>
Converted<Target> Convert( std::integral auto integer )
{
    auto const value = static_cast<Target>( integer );
    return { value, std::cmp_equal( value, integer ) };
}

template<std::floating_point Target>
Converted<Target> Convert( std::integral auto integer )
{
    auto const value = static_cast<Target>( integer );
    return { value, static_cast<WideInteger>( value ) == integer };
}

template<std::integral Target>
Converted<Target> Convert( double real )
{
    using Limits = std::numeric_limits<Target>;
    double const limit = std::ldexp( 1.0, Limits::digits );
    if ( std::isnan( real ) )
    {
        return { 0, false };
    }
    if ( real >= limit )
    {
        return { Limits::max(), false };
    }
    if ( real < -limit )
    {
        return { Limits::min(), false };
    }
    return { static_cast<Target>( real ), real == std::trunc( real ) };
}

template<std::floating_point Target>
Converted<Target> Convert( double real )
{
    auto const value = static_cast<Target>( real );
    return { value, std::isnan( real ) || static_cast<double>( value ) == real };
}

// Stores the number as a Target; whether nothing was lost.
template<class Target>
bool Store( CFNumberObject const& number, void* value )
{
    Converted<Target> const converted =
        std::visit( []( auto const kept ) { return Convert<Target>( kept ); }, number.value );
    std::memcpy( value, &converted.value, sizeof converted.value );
    return converted.isExact;
}

// The number as an integer, if it is one within the range of integers.
std::optional<WideInteger> ExactInteger( CFNumberObject const& number )
{
    if ( auto const* const integer = std::get_if<std::int64_t>( &number.value ) )
    {
        return *integer;
    }
    if ( auto const* const integer = std::get_if<std::uint64_t>( &number.value ) )
    {
        return *integer;
    }
    double const real = std::get<double>( number.value );
    if ( real >= -0x1p63 && real < 0x1p64 && real == std::trunc( real ) )
    {
        return static_cast<WideInteger>( real );
    }
    return std::nullopt;
}

constinit CFBooleanObject const gTrue( true );
constinit CFBooleanObject const gFalse( false );

} // namespace

CFBooleanRef const kCFBooleanTrue = &gTrue;
CFBooleanRef const kCFBooleanFalse = &gFalse;

bool CFNumberObject::Equal( CFObject const& object ) const
{
    auto const& other = static_cast<CFNumberObject const&>( object );
    std::optional<WideInteger> const mine = ExactInteger( *this );
    std::optional<WideInteger> const theirs = ExactInteger( other );
    if ( mine || theirs )
    {
        return mine == theirs;
    }
    double const a = std::get<double>( value );
    double const b = std::get<double>( other.value );
    return a == b || ( std::isnan( a ) && std::isnan( b ) );
}

CFHashCode CFNumberObject::Hash() const
{
    if ( std::optional<WideInteger> const integer = ExactInteger( *this ) )
    {
        return static_cast<CFHashCode>( *integer );
    }
    double const real = std::get<double>( value );
    return std::isnan( real ) ? 0 : std::bit_cast<std::uint64_t>( real );
}

CFTypeID CFNumberGetTypeID( void )
{
    return static_cast<CFTypeID>( CFKind::kNumber );
}

CFNumberType CFNumberGetType( CFNumberRef number )
{
    Require( number != nullptr );
    return std::holds_alternative<double>( number->value ) ? kCFNumberFloat64Type
                                                           : kCFNumberSInt64Type;
}

Boolean CFNumberGetValue( CFNumberRef number, CFNumberType type, void* value )
{
    Require( number != nullptr && value != nullptr );
    switch ( type )
    {
    case kCFNumberSInt8Type:
    case kCFNumberCharType:
        return Store<SInt8>( *number, value );
    case kCFNumberSInt16Type:
    case kCFNumberShortType:
        return Store<SInt16>( *number, value );
    case kCFNumberSInt32Type:
    case kCFNumberIntType:
        return Store<SInt32>( *number, value );
    case kCFNumberSInt64Type:
    case kCFNumberLongType:
    case kCFNumberLongLongType:
    case kCFNumberCFIndexType:
        return Store<SInt64>( *number, value );
    case kCFNumberFloat32Type:
    case kCFNumberFloatType:
        return Store<float>( *number, value );
    case kCFNumberFloat64Type:
    case kCFNumberDoubleType:
        return Store<double>( *number, value );
    default:
        return false;
    }
}

CFTypeID CFBooleanGetTypeID( void )
{
    return static_cast<CFTypeID>( CFKind::kBoolean );
}

Boolean CFBooleanGetValue( CFBooleanRef boolean )
{
    Require( boolean != nullptr );
    return boolean->value;
}
