#pragma once

#include "foundation/ConstData.h"

#include <cstddef>

/// A view of an array of pieces that together form one sequence of bytes.
///
/// It owns neither the array nor the bytes; both must outlive it. Pieces may be empty, and there
/// may be none.
class ConstDataRopeReference
{
  public:
    constexpr ConstDataRopeReference() = default;

    /// The pieces from `first` up to `last`, both null or both into the same array.
    constexpr ConstDataRopeReference( ConstData const* first, ConstData const* last )
        : mFirst( first ), mLast( last )
    {
    }

    constexpr ConstData const* begin() const { return mFirst; }

    constexpr ConstData const* end() const { return mLast; }

  private:
    ConstData const* mFirst = nullptr;
    ConstData const* mLast = nullptr;
};

/// The sum of the pieces' lengths. It can exceed what a single range holds.
std::size_t TotalLength( ConstDataRopeReference rope );
