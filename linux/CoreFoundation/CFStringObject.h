#pragma once

// The object behind a CFStringRef. Internal to linux/.

#include <CoreFoundation/CFString.h>

#include "linux/CoreFoundation/CFObject.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

/// The units lie behind the object, in the same block of memory, those of a text in ASCII as one
/// byte each; only a mutable string that has grown keeps them elsewhere.
struct CFStringObject final : CFObject
{
    enum class Mutability : unsigned char
    {
        kImmutable,
        kMutable
    };

    struct Making
    {
        Mutability mutability = Mutability::kImmutable;
        Lifetime lifetime = Lifetime::kCounted;
        ObjectPool* pool = nullptr;
    };

    /// A string with a unit of the value of each element; bytes must be ASCII. The caller owns it.
    template<class Elements>
    static CFStringObject* Create( Elements const& elements, Making const& making )
    {
        constexpr bool kIsASCII = sizeof( *std::data( elements ) ) == 1;
        using Unit = std::conditional_t<kIsASCII, char, char16_t>;
        std::size_t const length = std::size( elements );
        auto* const string =
            new ( length, sizeof( Unit ), making.pool ) CFStringObject( length, kIsASCII, making );
        std::copy_n( std::data( elements ), length, reinterpret_cast<Unit*>( string + 1 ) );
        return string;
    }

    /// What `use` returns for the units: a std::string_view or a std::u16string_view.
    template<class Use>
    auto WithUnits( Use const& use ) const
    {
        if ( mGrown )
        {
            return use( std::u16string_view( *mGrown ) );
        }
        if ( mIsASCII )
        {
            return use( std::string_view( reinterpret_cast<char const*>( this + 1 ), mLength ) );
        }
        return use( std::u16string_view( reinterpret_cast<char16_t const*>( this + 1 ), mLength ) );
    }

    std::size_t Length() const { return mGrown ? mGrown->size() : mLength; }

    /// For mutable strings; std::bad_alloc leaves the string as it was.
    void Append( CFStringObject const& appended );

    bool Equal( CFObject const& other ) const override;
    CFHashCode Hash() const override;

    using CFObject::operator delete;

    Mutability const mutability;

  private:
    static void* operator new(
        std::size_t size, std::size_t units, std::size_t unitSize, ObjectPool* pool );

    static void operator delete( void* object, std::size_t, std::size_t, ObjectPool* )
    {
        ObjectPool::Free( object );
    }

    CFStringObject( std::size_t length, bool isASCII, Making const& making )
        : CFObject( CFKind::kString, making.lifetime ),
          mutability( making.mutability ),
          mIsASCII( isASCII ),
          mLength( static_cast<std::uint32_t>( length ) )
    {
    }

    bool const mIsASCII;
    std::uint32_t const mLength; // without what it has grown
    std::unique_ptr<std::u16string> mGrown;
};

/// Whether each byte is ASCII.
bool IsASCII( std::string_view text );
