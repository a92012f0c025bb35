#pragma once

#include "foundation/ConstData.h"
#include "foundation/Range.h"

/// Takes a stream cut into lines, each line in pieces as they come, with the positions of the line
/// breaks. Positions count bytes from the beginning of a stream that this one may be a part of.
///
/// The calls are one Start, any number of Receive and ReceiveLineBreak, one ReceiveEnd; then a new
/// stream may start. An exception from any of them ends the stream; only Start may follow.
class LineReceiver
{
  public:
    virtual ~LineReceiver() = default;

    /// The stream's first byte has this position.
    virtual void Start( unsigned long long position ) = 0;

    /// The next piece of a line, not empty and without line breaks. Valid during the call.
    virtual void Receive( ConstData text ) = 0;

    /// The line ends with a break in these bytes.
    virtual void ReceiveLineBreak( Range<unsigned long long> where ) = 0;

    /// `position` is just past the stream's last byte.
    virtual void ReceiveEnd( unsigned long long position ) = 0;
};
