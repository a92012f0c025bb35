#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

/// Calls `action` with `text` cut into consecutive pieces: unit by unit, and into three in every
/// way, empty pieces included.
template<typename Unit>
void ForEverySplit( std::span<Unit const> text,
    std::function<void( std::vector<std::span<Unit const>> const& )> const& action )
{
    std::vector<std::span<Unit const>> units;
    for ( Unit const& unit : text )
        units.push_back( { &unit, 1 } );
    action( units );
    for ( std::size_t first = 0; first <= text.size(); ++first )
        for ( std::size_t second = first; second <= text.size(); ++second )
            action( { text.first( first ), text.subspan( first, second - first ),
                text.subspan( second ) } );
}
