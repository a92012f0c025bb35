#pragma once

// A hash that nobody outside the process can prepare collisions for. Internal to linux/.

#include <CoreFoundation/CFBase.h>

#include <cstddef>
#include <cstdint>
#include <iterator>

inline constexpr std::uint64_t kHashPrime = ( std::uint64_t{ 1 } << 61 ) - 1;

/// Drawn at random once per process, from 2 to kHashPrime - 1.
std::uint64_t HashPoint();

/// One more coefficient of a polynomial modulo kHashPrime, taken at `point`.
inline std::uint64_t AddCoefficient(
    std::uint64_t value, std::uint64_t point, std::uint64_t coefficient )
{
    __extension__ typedef unsigned __int128 Wide;
    Wide const product = Wide{ value } * point + coefficient;
    std::uint64_t const folded = static_cast<std::uint64_t>( product & kHashPrime ) +
                                 static_cast<std::uint64_t>( product >> 61 );
    return folded >= kHashPrime ? folded - kHashPrime : folded;
}

/// The elements, of at most kBits bits each and as many at a time as fit, as coefficients of a
/// polynomial without a constant term, taken at HashPoint (Carter and Wegman's universal hashing):
/// two different runs of n elements collide, or differ by a number chosen beforehand, with a
/// probability below ( n + 1 ) / 2^60.
template<unsigned kBits, class Elements>
CFHashCode HashElements( Elements const& elements )
{
    constexpr std::size_t kAtATime = 60 / kBits;
    std::uint64_t const point = HashPoint();
    auto const* element = std::data( elements );
    auto const* const end = element + std::size( elements );
    // The leading 1 tells how many elements there are.
    auto const take = [&element]( std::size_t count )
    {
        std::uint64_t coefficient = 1;
        for ( std::size_t i = 0; i < count; ++i )
        {
            coefficient = coefficient << kBits | static_cast<std::uint64_t>( *element++ );
        }
        return coefficient;
    };
    std::uint64_t value = 0;
    while ( static_cast<std::size_t>( end - element ) >= kAtATime )
    {
        value = AddCoefficient( value, point, take( kAtATime ) );
    }
    value = AddCoefficient( value, point, take( static_cast<std::size_t>( end - element ) ) );
    return AddCoefficient( value, point, 0 );
}
