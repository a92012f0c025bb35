#pragma once

#include "encoding/UTextReceiver.h"
#include "streams/DataReceiver.h"
#include "streams/LineReceiver.h"
#include "streams/MessageReceiver.h"
#include "tests/soak/Soak.h"

#include <algorithm>
#include <functional>

using Position = unsigned long long;

/// A text that is repeated without end.
class Pattern
{
  public:
    explicit Pattern( std::string const& text ) : mPeriod( text.size() )
    {
        while ( mCopies.size() < mPeriod + kPiece )
            mCopies += text;
    }

    /// What it shows at `position`: a piece of at most `length` bytes.
    ConstData At( Position position, Position length ) const
    {
        return std::string_view( mCopies ).substr(
            position % mPeriod, std::min<Position>( length, kPiece ) );
    }

    /// Cuts its first `length` bytes into pieces.
    void ForEachPiece( Position length, std::function<void( ConstData )> const& take ) const
    {
        for ( Position done = 0; done < length; done += kPiece )
            take( At( done, length - done ) );
    }

  private:
    static constexpr Position kPiece = 4094; // cuts everything but the units of UTF-16

    Position mPeriod;
    std::string mCopies;
};

/// What a Sink has seen; positions are the last ones of their kind.
struct Seen
{
    Position bytes = 0, breaks = 0, end = 0, fields = 0, field = 0, fieldEnd = 0, body = 0;

    bool operator==( Seen const& ) const = default;
};

/// Takes bytes, lines and messages. The text that arrives, of a message the values and the body's
/// lines, must repeat one pattern, and each break must be where the text before it ends.
class Sink : public DataReceiver, public LineReceiver, public MessageReceiver
{
  public:
    explicit Sink( std::string const& pattern, Position start = 0 )
        : mPattern( pattern ), mStart( start )
    {
    }

    Seen seen; ///< with positions from the start

    void Start() override {}

    void Start( Position position ) override { mNext = position; }

    void Receive( ConstData data ) override
    {
        for ( auto const* next = data.begin(); next != data.end(); )
        {
            ConstData const expected =
                mPattern.At( seen.bytes, ConstData( next, data.end() ).Length() );
            Require( ConstData( next, next + expected.Length() ) == expected, "other bytes" );
            next += expected.Length();
            seen.bytes += expected.Length();
        }
        mNext += data.Length();
    }

    void ReceiveLineBreak( Range<Position> where ) override
    {
        Require( where.first == mNext, "a break elsewhere" );
        mNext = where.last;
        ++seen.breaks;
    }

    DataReceiver& ReceiveField( Position position, ConstData ) override
    {
        ++seen.fields;
        seen.field = position - mStart;
        return *this;
    }

    void ReceiveFieldEnd( Position position ) override { seen.fieldEnd = position - mStart; }

    LineReceiver& ReceiveBody( Position position ) override
    {
        seen.body = position - mStart;
        return *this;
    }

    void ReceiveEnd() override {}

    void ReceiveEnd( Position position ) override
    {
        Require( position == mNext, "another end" );
        seen.end = position - mStart;
    }

  private:
    Pattern mPattern;
    Position mStart;
    Position mNext = 0;
};

/// Hands the bytes of a text to a Sink.
template<typename E>
class TextSink : public UTextReceiver<E>
{
  public:
    explicit TextSink( Sink& to ) : mTo( to ) {}

    void Receive( ConstArrayOf<typename E::Unit> units ) override
    {
        mTo.Receive( { reinterpret_cast<unsigned char const*>( units.begin() ),
            reinterpret_cast<unsigned char const*>( units.end() ) } );
    }

  private:
    Sink& mTo;
};
