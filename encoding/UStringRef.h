#pragma once

#include "encoding/ConstArrayOf.h"
#include "encoding/Encodings.h"
#include "foundation/ConstData.h"

#include <concepts>
#include <string_view>

/// A reference to a text in the encoding `E`.
///
/// It owns nothing: the units must outlive it. An empty text may have null pointers. The units need
/// not be valid in the encoding, nor followed by a zero unit.
template<typename E>
class UStringRef : public ConstArrayOf<typename E::Unit>
{
  public:
    using Unit = typename E::Unit;

    constexpr UStringRef() = default;

    constexpr UStringRef( Unit const* begin, Unit const* end ) : ConstArrayOf<Unit>( begin, end ) {}

    /// The bytes of `text`, said to be in the encoding `E`.
    constexpr explicit UStringRef( std::string_view text ) requires std::same_as<Unit, char>
        : UStringRef( text.data(), text.data() + text.size() )
    {
    }

    /// The bytes of the text. Throws std::length_error beyond what a ConstData can hold.
    ConstData Bytes() const requires std::same_as<Unit, char>
    {
        return std::string_view( this->begin(), this->end() );
    }
};
