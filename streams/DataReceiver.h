#pragma once

#include "foundation/ConstData.h"
#include "foundation/ConstDataRopeReference.h"

/// A sink that bytes are pushed into.
///
/// The producer calls Start once, Receive any number of times, ReceiveEnd once. A receiver takes
/// every byte it is given or throws; after a throw the stream is over, ReceiveEnd is not called,
/// and the next call is Start. A receiver that holds bytes back must deliver or reject them in
/// ReceiveEnd. It can be started again after its end.
///
/// Derived classes say `using DataReceiver::Receive;` to keep the form that takes a rope. Not safe
/// for use by two threads at once, unless a class says so.
class DataReceiver
{
  public:
    /// Receives `data` and returns this receiver, so that pushes can be chained.
    virtual DataReceiver& operator<<( ConstData data );

    virtual ~DataReceiver();

    /// Begins a stream and forgets what was accumulated from an earlier one.
    virtual void Start() = 0;

    /// Takes the next bytes, which it may use only during the call. There may be none of them.
    virtual void Receive( ConstData data ) = 0;

    /// Ends the stream: there are no more bytes.
    virtual void ReceiveEnd() = 0;

    /// Receives each piece in order, empty ones included.
    void Receive( ConstDataRopeReference rope );

    /// The one receiver that discards everything. Any number of threads may use it.
    static DataReceiver& Ignore();
};
