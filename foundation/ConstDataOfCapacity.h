#pragma once

#include "foundation/Buffer.h"
#include "foundation/ConstData.h"
#include "foundation/ConstDataCapacityExceeded.h"
#include "foundation/ConstDataRopeReference.h"

#include <cstddef>
#include <cstdint>

/// A text of at most `N` bytes held inside the object and always followed by a zero byte.
///
/// Each capacity is the length of the longest text that a producer can make: 8 and 16 for
/// hexadecimal, 10 and 20 for unsigned and 11 and 21 for signed decimal numerals of 32 and 64 bits,
/// 48 for the name of a text encoding.
template<std::uint32_t N>
class ConstDataOfCapacity
{
  public:
    /// Copies `text`. Throws ConstDataCapacityExceeded if it is longer than `N` bytes.
    explicit ConstDataOfCapacity( ConstData text )
        : ConstDataOfCapacity( ConstDataRopeReference( &text, &text + 1 ), text.Length() )
    {
    }

    /// Copies the pieces of `text`, for example a sign and digits, one behind the other. Throws
    /// ConstDataCapacityExceeded if they are longer than `N` bytes together.
    explicit ConstDataOfCapacity( ConstDataRopeReference text ) requires( N == 21 )
        : ConstDataOfCapacity( text, TotalLength( text ) )
    {
    }

    unsigned char const* begin() const { return mBytes; }

    unsigned char const* end() const { return mBytes + mLength; }

    std::uint32_t Length() const { return mLength; }

    /// The bytes without the terminator; valid as long as this object.
    operator ConstData() const { return { begin(), end() }; }

  private:
    ConstDataOfCapacity( ConstDataRopeReference text, std::size_t length )
        : mLength( static_cast<std::uint32_t>( length ) )
    {
        if ( length > N )
            throw ConstDataCapacityExceeded();
        Data( mBytes, mBytes + N ) << text;
    }

    std::uint32_t mLength;
    unsigned char mBytes[N + 1] = {};
};
