#pragma once

#include <cstddef>

/// A range of code units [begin, end) that it does not own; the units must outlive it. An empty
/// range may have null pointers.
template<typename Unit>
class ConstArrayOf
{
  public:
    constexpr ConstArrayOf() = default;

    constexpr ConstArrayOf( Unit const* begin, Unit const* end ) : mBegin( begin ), mEnd( end ) {}

    constexpr Unit const* begin() const { return mBegin; }

    constexpr Unit const* end() const { return mEnd; }

    constexpr std::size_t Length() const { return static_cast<std::size_t>( mEnd - mBegin ); }

    constexpr bool IsEmpty() const { return mBegin == mEnd; }

  private:
    Unit const* mBegin = nullptr;
    Unit const* mEnd = nullptr;
};
