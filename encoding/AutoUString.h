#pragma once

#include "encoding/UStringRef.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>

/// Owns a text in the encoding `E`: its units in a heap block, followed by one zero unit.
///
/// The empty text is two null pointers and no block, unless a block was adopted. Copies are deep;
/// a moved-from object is the empty text.
template<typename E>
class AutoUString
{
  public:
    using Unit = typename E::Unit;

    AutoUString() = default;

    /// Copies the units of `text`; they need not be followed by a zero unit.
    explicit AutoUString( UStringRef<E> text )
    {
        if ( text.IsEmpty() )
            return;
        mBegin = new Unit[text.Length() + 1];
        mEnd = std::copy( text.begin(), text.end(), mBegin );
        *mEnd = Unit();
    }

    /// Adopts a block of `length` units and the zero unit that follows them.
    AutoUString( std::unique_ptr<Unit[]> block, std::size_t length )
        : mBegin( block.release() ), mEnd( mBegin + length )
    {
    }

    AutoUString( AutoUString const& other ) : AutoUString( UStringRef<E>( other ) ) {}

    AutoUString( AutoUString&& other ) noexcept
        : mBegin( std::exchange( other.mBegin, nullptr ) ),
          mEnd( std::exchange( other.mEnd, nullptr ) )
    {
    }

    ~AutoUString() { delete[] mBegin; }

    AutoUString& operator=( AutoUString other ) noexcept
    {
        std::swap( mBegin, other.mBegin );
        std::swap( mEnd, other.mEnd );
        return *this;
    }

    Unit const* begin() const { return mBegin; }

    Unit const* end() const { return mEnd; }

    /// How many units, without the zero unit.
    std::size_t Length() const { return static_cast<std::size_t>( mEnd - mBegin ); }

    bool IsEmpty() const { return mBegin == mEnd; }

    /// The text without the zero unit; valid until this object is assigned to, moved or destroyed.
    operator UStringRef<E>() const { return { mBegin, mEnd }; }

  private:
    Unit* mBegin = nullptr;
    Unit* mEnd = nullptr;
};

/// A copy of the units from `begin` up to `end`. An empty range gives the empty text without
/// allocating.
template<typename E>
AutoUString<E> MakeUString( typename E::Unit const* begin, typename E::Unit const* end, E )
{
    return AutoUString<E>( UStringRef<E>( begin, end ) );
}
