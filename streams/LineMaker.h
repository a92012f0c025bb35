#pragma once

#include "streams/DataReceiver.h"
#include "streams/LineReceiver.h"

/// Cuts a stream into lines and pushes them to a LineReceiver, which must outlive the stream.
///
/// Any CR and LF that stand next to each other, in either order, are one line break of two bytes;
/// alone, each is a break of one byte. So CR CR and LF LF are two breaks with an empty line between
/// them, and an empty line has no text, only a break. No break is added to a last line without one.
///
/// Text is passed on at once and never copied, in pieces no larger than they come; lines can have
/// any length. A break is reported when the byte after it arrives, or the end: only then is it
/// clear how long it is. Nothing here allocates or throws; what the target throws passes through.
class LineMaker : public DataReceiver
{
  public:
    /// Must be aimed before a stream starts.
    LineMaker() = default;

    explicit LineMaker( LineReceiver& target );

    using DataReceiver::Receive;

    /// Aims at `target` and returns this maker.
    LineMaker& operator()( LineReceiver& target );

    /// Positions count from 0.
    void Start() override;

    /// Positions count from `position`: the stream is a part of a larger one.
    void Start( unsigned long long position );

    void Receive( ConstData data ) override;

    /// Reports a break that came last.
    void ReceiveEnd() override;

  private:
    void ReceiveShortPiece( ConstData data );
    void ReceiveLongPiece( ConstData data );
    void PassText( unsigned char const* begin, unsigned char const* end );

    /// Passes on the text before the break at `lineEnd`, then reports that break unless it comes
    /// last; returns whether it is a pair. `text` is then where the next line begins.
    bool TakeLine(
        unsigned char const*& text, unsigned char const* lineEnd, unsigned char const* end );

    /// Reports the pending break, together with `next` if the two are a pair; returns whether.
    bool ReportBreak( unsigned char next );

    LineReceiver* mTarget = nullptr;
    unsigned long long mPosition = 0; // of the first byte not reported yet
    unsigned char mPendingBreak = 0;  // a CR or LF consumed but not reported yet, or 0
};
