#pragma once

#include <CoreFoundation/CFBase.h>

#include <utility>

/// Owns one reference to a Core Foundation object of one kind, or none.
///
/// The ways in: the constructor and Reset adopt a reference that the caller owns; Duplicate (with
/// each kind of holder) retains one that it does not. The ways out: Get lends, GiveUp hands the
/// ownership over. Holders move and do not copy: sharing an object is written Duplicate.
template<typename Reference>
class AutoCF
{
  public:
    AutoCF() = default;

    /// Adopts `reference`, which may be null.
    explicit AutoCF( Reference reference ) noexcept : mReference( reference ) {}

    AutoCF( AutoCF&& other ) noexcept : mReference( other.GiveUp() ) {}

    AutoCF& operator=( AutoCF&& other ) noexcept
    {
        Reset( other.GiveUp() );
        return *this;
    }

    ~AutoCF() { Dispose( mReference ); }

    /// The reference, still owned by the holder.
    Reference Get() const noexcept { return mReference; }

    /// The reference, now owned by the caller; the holder is left empty.
    [[nodiscard]] Reference GiveUp() noexcept { return std::exchange( mReference, nullptr ); }

    /// Adopts `reference`, then releases the one held before.
    void Reset( Reference reference = nullptr ) noexcept
    {
        Dispose( std::exchange( mReference, reference ) );
    }

  protected:
    /// Releases `reference` unless it is null.
    static void Dispose( Reference reference ) noexcept
    {
        if ( reference != nullptr )
        {
            CFRelease( reference );
        }
    }

  private:
    Reference mReference = nullptr;
};

/// A holder that shares `reference`, which may be null.
template<typename Holder, typename Reference>
Holder DuplicateInto( Reference reference ) noexcept
{
    if ( reference != nullptr )
    {
        CFRetain( reference );
    }
    return Holder( reference );
}
