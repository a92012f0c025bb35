#pragma once

#include "encoding/InvalidTextEncoding.h"
#include "encoding/TranscodingKernels.h"
#include "encoding/UTextReceiver.h"

#include <algorithm>
#include <cstddef>

/// Gathers units and pushes them on in large pieces: each but the last one ends with the first
/// character that leaves too little room for another in `Size` units.
template<typename E, std::size_t Size>
class TranscodingOutput
{
  public:
    explicit TranscodingOutput( UTextReceiver<E>& downstream ) : mDownstream( downstream ) {}

    /// Converts the units [next, end) and returns the first one that no whole character begins at.
    template<typename From>
    typename From::Unit const* Convert( TranscodeFunction<E, From>* transcode,
        typename From::Unit const* next, typename From::Unit const* end )
    {
        do
        {
            if ( mCount >= kFull )
                PushPiece();
            auto const [rest, out] = transcode( next, end, mUnits + mCount, mUnits + kFull );
            next = rest;
            mCount = static_cast<std::size_t>( out - mUnits );
        } while ( mCount >= kFull );
        return next;
    }

    /// Pushes what is left, once all is converted.
    void Push()
    {
        if ( mCount != 0 )
            mDownstream.Receive( { mUnits, mUnits + mCount } );
    }

  private:
    static constexpr std::size_t kFull = Size - E::kLongestCharacter + 1;

    static bool IsContinuation( UTF32::Unit ) { return false; }

    static bool IsContinuation( char byte )
    {
        return ( static_cast<unsigned char>( byte ) & 0xC0u ) == 0x80u;
    }

    /// What a conversion put beyond the end of the piece begins the next one.
    void PushPiece()
    {
        auto* const end = mUnits + mCount;
        auto* const endOfPiece = std::find_if_not(
            mUnits + kFull, end, []( auto unit ) { return IsContinuation( unit ); } );
        mDownstream.Receive( { mUnits, endOfPiece } );
        mCount = static_cast<std::size_t>( std::copy( endOfPiece, end, mUnits ) - mUnits );
    }

    UTextReceiver<E>& mDownstream;
    std::size_t mCount = 0;
    typename E::Unit mUnits[kFull + kTranscodingSlack];
};

/// The units at the end of the input so far that form no whole character.
template<typename E>
struct PendingUnits
{
    unsigned& count;
    typename E::Unit ( &units )[E::kLongestCharacter - 1];
};

/// Converts one piece of a stream by `transcode`, as GenericTranscoder promises. `Size` is the
/// length of the longest piece that is pushed.
template<typename To, std::size_t Size, typename From>
void TranscodePiece( ConstArrayOf<typename From::Unit> units, PendingUnits<From> pending,
    UTextReceiver<To>& downstream, TranscodeFunction<To, From>* transcode )
{
    constexpr unsigned kLongest = From::kLongestCharacter;
    TranscodingOutput<To, Size> output( downstream );
    auto const* next = units.begin();

    // One unit after the other joins the pending ones: they never hold a whole character.
    while ( pending.count != 0 && next != units.end() )
    {
        typename From::Unit character[kLongest];
        auto* const end = std::copy_n( pending.units, pending.count, character ) + 1;
        end[-1] = *next;
        if ( output.template Convert<From>( transcode, character, end ) == end )
            pending.count = 0;
        else if ( end == character + kLongest )
            throw InvalidTextEncoding();
        else
            pending.units[pending.count++] = *next;
        ++next;
    }

    next = output.template Convert<From>( transcode, next, units.end() );
    if ( next != units.end() )
    {
        auto const rest = static_cast<std::size_t>( units.end() - next );
        if ( rest >= kLongest )
            throw InvalidTextEncoding();
        std::copy_n( next, rest, pending.units );
        pending.count = static_cast<unsigned>( rest );
    }
    output.Push();
}
