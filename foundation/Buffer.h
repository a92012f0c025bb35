#pragma once

#include "foundation/ConstData.h"
#include "foundation/ConstDataRopeReference.h"
#include "foundation/Data.h"
#include "foundation/DataOverflow.h"

#include <cstdint>

/// A read cursor over a byte range that it does not own.
///
/// A consumer looks at Unread(), takes some bytes from its front and says how many with Advance.
/// Start() stays where the cursor was made, so Consumed() is what has been taken so far. An
/// operation that throws changes nothing.
class ConstBuffer
{
  public:
    constexpr ConstBuffer() = default;

    /// Stands at the beginning of `range`.
    constexpr explicit ConstBuffer( ConstData range )
        : mNext( range.begin() ), mEnd( range.end() ), mStart( range.begin() )
    {
    }

    constexpr unsigned char const* Next() const { return mNext; }

    constexpr unsigned char const* End() const { return mEnd; }

    constexpr unsigned char const* Start() const { return mStart; }

    constexpr ConstData Unread() const { return { mNext, mEnd }; }

    constexpr ConstData Consumed() const { return { mStart, mNext }; }

    /// Whether every byte has been consumed.
    constexpr bool IsEmpty() const { return mNext == mEnd; }

    /// Consumes `count` bytes. Throws DataOverflow if fewer are unread.
    constexpr void Advance( std::uint32_t count )
    {
        if ( count > Unread().Length() )
            throw DataOverflow();
        mNext += count;
    }

  private:
    unsigned char const* mNext = nullptr;
    unsigned char const* mEnd = nullptr;
    unsigned char const* mStart = nullptr;
};

/// A write cursor over a byte range that it does not own.
///
/// A producer writes at the front of Room() and says how many bytes with Advance, or uses Put or
/// `<<`. Start() stays where the cursor was made, so Filled() is what has been written so far. An
/// operation that throws changes nothing.
class Buffer
{
  public:
    constexpr Buffer() = default;

    /// Stands at the beginning of `range`; nothing is filled.
    constexpr explicit Buffer( Data range )
        : mNext( range.begin() ), mEnd( range.end() ), mStart( range.begin() )
    {
    }

    constexpr unsigned char* Next() const { return mNext; }

    constexpr unsigned char* End() const { return mEnd; }

    constexpr unsigned char* Start() const { return mStart; }

    constexpr Data Room() const { return { mNext, mEnd }; }

    constexpr ConstData Filled() const { return { mStart, mNext }; }

    constexpr bool IsFull() const { return mNext == mEnd; }

    /// Counts `count` bytes of the room as filled. Throws DataOverflow if there is less room.
    constexpr void Advance( std::uint32_t count )
    {
        if ( count > Room().Length() )
            throw DataOverflow();
        mNext += count;
    }

    /// Writes one byte. Throws DataOverflow if the buffer is full; the other ways to write cut
    /// what does not fit instead.
    constexpr void Put( unsigned char b )
    {
        if ( IsFull() )
            throw DataOverflow();
        *mNext++ = b;
    }

  private:
    unsigned char* mNext = nullptr;
    unsigned char* mEnd = nullptr;
    unsigned char* mStart = nullptr;
};

/// Moves as many bytes as `from` has and `to` has room for, advancing both. Returns `to`.
Buffer& operator<<( Buffer& to, ConstBuffer& from );

/// Appends the pieces in order, as far as there is room. Returns `to`.
Buffer& operator<<( Buffer& to, ConstDataRopeReference rope );

/// Copies the pieces in order to the front of `to`, as far as there is room. Returns the part of
/// `to` that was not filled.
Data operator<<( Data to, ConstDataRopeReference rope );
