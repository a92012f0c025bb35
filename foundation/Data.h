#pragma once

#include "foundation/ConstData.h"

#include <cstdint>

/// A writable byte range [begin, end).
///
/// It owns nothing: the bytes must outlive it. An empty range may have null pointers. Holds at most
/// 4,294,967,295 bytes. Converts to a ConstData of the same bytes.
class Data
{
  public:
    constexpr Data() = default;

    /// The bytes from `begin` up to `end`, both null or both into the same array.
    constexpr Data( unsigned char* begin, unsigned char* end ) : mBegin( begin ), mEnd( end ) {}

    constexpr unsigned char* begin() const { return mBegin; }

    constexpr unsigned char* end() const { return mEnd; }

    constexpr std::uint32_t Length() const { return static_cast<std::uint32_t>( mEnd - mBegin ); }

    constexpr bool IsEmpty() const { return mBegin == mEnd; }

    /// The byte at `index`, which must be less than Length().
    constexpr unsigned char& operator[]( std::uint32_t index ) const { return mBegin[index]; }

    constexpr operator ConstData() const { return { mBegin, mEnd }; }

  private:
    unsigned char* mBegin = nullptr;
    unsigned char* mEnd = nullptr;
};
