#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>

/// A zero-terminated view of a range of elements, which copies them only if it must.
template<typename T>
class AutoNullTerminated
{
    static_assert( std::same_as<T, char> || std::same_as<T, unsigned int> );

  public:
    /// With `alreadyTerminated` the caller promises that `*end` is zero: the elements are used in
    /// place and must outlive this object. Otherwise they are copied; an empty range, whose
    /// pointers may be null, then refers to one text shared by all.
    AutoNullTerminated( T const* begin, T const* end, bool alreadyTerminated )
        : mText( alreadyTerminated ? begin : &kEmpty )
    {
        if ( alreadyTerminated || begin == end )
            return;
        std::size_t const count = static_cast<std::size_t>( end - begin ) + 1;
        T* const text = new T[count];
        *std::copy( begin, end, text ) = T();
        mText = text;
        mAllocated = count;
    }

    AutoNullTerminated( AutoNullTerminated const& ) = delete;
    AutoNullTerminated& operator=( AutoNullTerminated const& ) = delete;

    ~AutoNullTerminated()
    {
        if ( mAllocated != 0 )
            delete[] mText;
    }

    /// The first element; valid as long as this object.
    T const* Text() const { return mText; }

    /// How many elements this object allocated, the terminator included; 0 if it owns none.
    std::size_t Allocated() const { return mAllocated; }

  private:
    static constexpr T kEmpty = T();

    T const* mText;
    std::size_t mAllocated = 0;
};
