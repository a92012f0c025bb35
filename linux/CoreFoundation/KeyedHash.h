#pragma once

// A hash that nobody outside the process can prepare collisions for. Internal to linux/.

#include <CoreFoundation/CFBase.h>

#include <cstdint>

inline constexpr std::uint64_t kHashPrime = ( std::uint64_t{ 1 } << 61 ) - 1;

/// Drawn at random once per process, from 2 to kHashPrime - 1.
std::uint64_t HashPoint();

/// The elements as coefficients of a polynomial modulo 2^61 - 1, taken at HashPoint (Carter and
/// Wegman's universal hashing): two different runs of n elements collide with a probability below
/// n / 2^60.
template<class Elements>
CFHashCode HashElements( Elements const& elements )
{
    __extension__ typedef unsigned __int128 Wide;
    std::uint64_t const point = HashPoint();
    std::uint64_t value = 0;
    for ( auto const element : elements )
    {
        Wide const product = Wide{ value } * point + element + 1;
        std::uint64_t const folded = static_cast<std::uint64_t>( product & kHashPrime ) +
                                     static_cast<std::uint64_t>( product >> 61 );
        value = folded >= kHashPrime ? folded - kHashPrime : folded;
    }
    return value;
}
