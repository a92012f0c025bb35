#pragma once

#include "encoding/ConstArrayOf.h"
#include "encoding/Encodings.h"

#include <cstddef>

/// A sink that text in the encoding `E` is pushed into; this base class ignores it.
///
/// The producer calls Start once, Receive any number of times, ReceiveEnd once. A character may be
/// split over several calls. After a throw the stream is over: the next call is Start. A receiver
/// can be started again after its end. Not safe for use by two threads at once.
///
/// There are instances for UTF8, UTF16 and UTF32.
template<typename E>
class UTextReceiver
{
  public:
    virtual ~UTextReceiver();

    /// Begins a stream and forgets what was accumulated from an earlier one.
    virtual void Start( E encoding );

    /// Takes the next units, which it may use only during the call. There may be none of them.
    virtual void Receive( ConstArrayOf<typename E::Unit> units );

    /// Ends the stream: there are no more units.
    virtual void ReceiveEnd();

    /// How much a receiver that collects the text would hold once it has received `units` too, in
    /// code units. 0 for a receiver that collects nothing.
    virtual std::size_t SizeOfReceivedBytes( ConstArrayOf<typename E::Unit> units );
};

extern template class UTextReceiver<UTF8>;
extern template class UTextReceiver<UTF16>;
extern template class UTextReceiver<UTF32>;
