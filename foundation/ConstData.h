#pragma once

#include <cstdint>
#include <stdexcept>
#include <string_view>
#include <vector>

class Data;

/// A read-only byte range [begin, end).
///
/// It owns nothing: the bytes must outlive it and every range cut from it. An empty range may
/// have null pointers. A range holds at most 4,294,967,295 bytes; offsets that can be "not found"
/// are signed and -1 then. Passed by value; nothing here allocates but the operations that return
/// a vector.
class ConstData
{
  public:
    constexpr ConstData() = default;

    /// The bytes from `begin` up to `end`, both null or both into the same array.
    constexpr ConstData( unsigned char const* begin, unsigned char const* end )
        : mBegin( begin ), mEnd( end )
    {
    }

    /// The bytes of `text`. Throws std::length_error if there are more than a range can hold.
    ConstData( std::string_view text )
        : mBegin( reinterpret_cast<unsigned char const*>( text.data() ) ),
          mEnd( mBegin + text.size() )
    {
        if ( text.size() > UINT32_MAX )
            throw std::length_error( "ConstData" );
    }

    constexpr unsigned char const* begin() const { return mBegin; }

    constexpr unsigned char const* end() const { return mEnd; }

    constexpr std::uint32_t Length() const { return static_cast<std::uint32_t>( mEnd - mBegin ); }

    constexpr bool IsEmpty() const { return mBegin == mEnd; }

    /// The byte at `index`, which must be less than Length().
    constexpr unsigned char operator[]( std::uint32_t index ) const { return mBegin[index]; }

    /// Whether the first bytes equal `prefix`; true for an empty one.
    bool StartsWith( ConstData prefix ) const;

    /// Whether the last bytes equal `suffix`; true for an empty one.
    bool EndsWith( ConstData suffix ) const;

    /// The offset of the first occurrence of `needle`, or -1. An empty needle occurs nowhere here,
    /// while Contains finds it in every range. Linear in the length. Throws std::length_error if
    /// the offset is beyond 2,147,483,647.
    std::int32_t PositionOf( ConstData needle ) const;

    /// The offset of the first byte `b`, or -1. Throws as above.
    std::int32_t PositionOf( unsigned char b ) const;

    /// Whether `needle` occurs; true for an empty one.
    bool Contains( ConstData needle ) const;

    bool Contains( unsigned char b ) const;

    /// The offsets, ascending, of all occurrences of `needle` that do not overlap an earlier one.
    /// None for an empty needle.
    std::vector<std::uint32_t> PositionsOf( ConstData needle ) const;

    /// Cuts this range at every occurrence of `separator` that PositionsOf finds.
    ///
    /// With `trim`, every piece loses its leading and trailing ASCII white space; without
    /// `keepEmpty`, pieces that are empty after that are left out. A separator that is empty or
    /// longer than this range gives exactly one piece, the whole range (trimmed if asked for),
    /// even if it is empty. The pieces point into this range.
    std::vector<ConstData> Split( ConstData separator, bool trim, bool keepEmpty ) const;

    /// Copies, byte by byte from the front, what fits into `destination`, and returns the part of
    /// this range that did not fit.
    ConstData operator>>( Data destination ) const;

  private:
    unsigned char const* mBegin = nullptr;
    unsigned char const* mEnd = nullptr;
};

/// Whether both ranges hold the same bytes, wherever they lie.
bool operator==( ConstData const& a, ConstData const& b );

/// Whether `a` comes before `b` in lexicographic order of unsigned bytes. A proper prefix comes
/// first.
bool operator<( ConstData const& a, ConstData const& b );

/// The difference (-255 to 255) of the first two unsigned bytes that differ, a's minus b's. If none
/// differs over the shorter length, -1, 0 or 1 as `a` is shorter than, as long as or longer than
/// `b`.
std::int32_t Compare( ConstData a, ConstData b );

/// As Compare, made from the last byte backwards.
std::int32_t CompareReversed( ConstData a, ConstData b );
