#pragma once

/// Two positions, of which the second is past the end. Nothing is checked: a range whose end lies
/// before its beginning can be made.
template<typename Position>
struct Range
{
    Position first = {};
    Position last = {}; ///< past the end

    constexpr bool operator==( Range const& ) const = default;
};
