#pragma once

// What every object of the layer has in common. Internal to linux/.

#include <CoreFoundation/CFBase.h>

#include "linux/CoreFoundation/ObjectPool.h"

#include <atomic>
#include <cstddef>
#include <exception>
#include <memory>

/// The types of the layer; the values are the type identifiers.
enum class CFKind : unsigned char
{
    kString = 1,
    kData,
    kArray,
    kDictionary,
    kNumber,
    kBoolean,
    kDate,
    kURL,
    kBundle
};

/// The root of all objects: a type, and an atomic count of references that begins at 1.
///
/// A concrete type derives from this one alone, so that a CFTypeRef to it and a pointer to its
/// CFObject are the same address.
class CFObject
{
  public:
    enum class Lifetime : unsigned char
    {
        kCounted,
        kConstant
    };

    explicit constexpr CFObject( CFKind kind, Lifetime lifetime = Lifetime::kCounted )
        : mKind( kind ), mLifetime( lifetime )
    {
    }

    virtual constexpr ~CFObject() = default;
    CFObject( CFObject const& ) = delete;
    CFObject& operator=( CFObject const& ) = delete;

    // Of its own or, by `new ( pool ) Object`, from a pool.
    static void* operator new( std::size_t size ) { return ObjectPool::Allocate( size, nullptr ); }

    static void* operator new( std::size_t size, ObjectPool& pool )
    {
        return ObjectPool::Allocate( size, &pool );
    }

    static void operator delete( void* object ) { ObjectPool::Free( object ); }

    static void operator delete( void* object, ObjectPool& ) { ObjectPool::Free( object ); }

    CFKind Kind() const { return mKind; }

    /// Whether `other`, which is of the same kind, holds the same value. Identity unless
    /// overridden.
    virtual bool Equal( CFObject const& other ) const { return this == &other; }

    virtual CFHashCode Hash() const { return reinterpret_cast<CFHashCode>( this ) >> 4; }

    void Retain() const
    {
        if ( mLifetime == Lifetime::kCounted )
        {
            mReferences.fetch_add( 1, std::memory_order_relaxed );
        }
    }

    /// The only reference needs no atomic subtraction: nobody else has one to make another from.
    void Release() const
    {
        if ( mLifetime == Lifetime::kCounted &&
             ( mReferences.load( std::memory_order_acquire ) == 1 ||
                 mReferences.fetch_sub( 1, std::memory_order_acq_rel ) == 1 ) )
        {
            delete this;
        }
    }

    CFIndex RetainCount() const;

  private:
    mutable std::atomic<CFIndex> mReferences{ 1 };
    CFKind const mKind;
    Lifetime const mLifetime;
};

/// The object behind a reference. `reference` is not null.
inline CFObject const& AsObject( CFTypeRef reference )
{
    return *static_cast<CFObject const*>( reference );
}

/// Owns one reference to an object.
struct ReleaseObject
{
    void operator()( CFObject const* object ) const { object->Release(); }
};

template<class Object>
using Owned = std::unique_ptr<Object, ReleaseObject>;

/// Ends the process when a caller broke the contract of a function.
inline void Require( bool condition )
{
    if ( !condition )
    {
        __builtin_trap();
    }
}

/// One more reference to an object, owned. A null reference traps.
inline Owned<CFObject const> RetainedObject( CFTypeRef reference )
{
    return Owned<CFObject const>( static_cast<CFObject const*>( CFRetain( reference ) ) );
}

/// Whether `range` lies within a run of `length` elements.
inline bool IsWithin( CFRange range, CFIndex length )
{
    return range.location >= 0 && range.length >= 0 && range.location <= length &&
           range.length <= length - range.location;
}

/// What `make` returns, a pointer; null when it throws. The wall between the C interface and
/// exceptions.
template<class Make>
auto NullIfThrown( Make const& make ) noexcept -> decltype( make() )
{
    try
    {
        return make();
    }
    catch ( std::exception const& )
    {
        return nullptr;
    }
}
