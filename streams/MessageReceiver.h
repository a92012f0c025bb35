#pragma once

#include "foundation/ConstData.h"
#include "streams/DataReceiver.h"
#include "streams/LineReceiver.h"

/// Takes a message: header fields, then a body. Positions are those of the stream.
///
/// The calls are one Start; for each field ReceiveField and, when its value is complete,
/// ReceiveFieldEnd; one ReceiveBody; one ReceiveEnd. What ReceiveField and ReceiveBody return is
/// borrowed: the field's receiver until the field's end, the body's until the message's end.
class MessageReceiver
{
  public:
    virtual ~MessageReceiver() = default;

    virtual void Start( unsigned long long position ) = 0;

    /// A field whose line begins at `position`; `name` is in lower case and valid during the call.
    /// The receiver returned takes the value as one stream.
    virtual DataReceiver& ReceiveField( unsigned long long position, ConstData name ) = 0;

    /// The last field ends at `position`, where its line break begins or the stream ends.
    virtual void ReceiveFieldEnd( unsigned long long position ) = 0;

    /// The body begins at `position`. The receiver returned takes its lines as one stream.
    virtual LineReceiver& ReceiveBody( unsigned long long position ) = 0;

    virtual void ReceiveEnd( unsigned long long position ) = 0;
};
