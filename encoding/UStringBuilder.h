#pragma once

#include "encoding/UTextReceiver.h"

#include <cstddef>
#include <memory>

/// Collects a text in one growing array.
///
/// An operation that runs out of memory passes on std::bad_alloc and leaves what is held as it was.
/// There are instances for UTF8, UTF16 and UTF32.
template<typename E>
class UStringBuilder : public UTextReceiver<E>
{
  public:
    using Unit = typename E::Unit;

    /// Start will allocate room for `initialCapacity` units.
    explicit UStringBuilder( std::size_t initialCapacity );

    UStringBuilder( UStringBuilder const& ) = delete;
    UStringBuilder& operator=( UStringBuilder const& ) = delete;

    ~UStringBuilder() override;

    void Start( E encoding ) override;

    /// Appends the units. An array that becomes too small is replaced by one at least twice as
    /// large.
    void Receive( ConstArrayOf<Unit> units ) override;

    void ReceiveEnd() override;

    /// How many units would be held once `units` were appended. For UTF32 these are code points,
    /// not bytes.
    std::size_t SizeOfReceivedBytes( ConstArrayOf<Unit> units ) override;

    Unit const* begin() const { return mBegin.get(); }

    Unit const* end() const { return mEnd; }

    /// For how many units there is room without allocating.
    std::size_t Capacity() const { return mCapacity; }

  private:
    std::size_t mInitialCapacity;
    std::size_t mCapacity = 0;
    std::unique_ptr<Unit[]> mBegin;
    Unit* mEnd = nullptr;
};

extern template class UStringBuilder<UTF8>;
extern template class UStringBuilder<UTF16>;
extern template class UStringBuilder<UTF32>;
