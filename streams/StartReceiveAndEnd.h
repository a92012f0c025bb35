#pragma once

#include "foundation/ConstData.h"
#include "foundation/ConstDataRopeReference.h"
#include "streams/DataFilter.h"
#include "streams/DataReceiver.h"

/// Each pushes one whole stream into a receiver, the forms with a filter through that filter.
/// Exceptions pass through; the receiver is not ended then.

void StartReceiveAndEnd( DataReceiver& receiver, ConstData data );

/// The receiver gets each piece of the rope by a call of its own.
void StartReceiveAndEnd( DataReceiver& receiver, ConstDataRopeReference rope );

void StartReceiveAndEnd( DataReceiver& receiver, ConstData data, DataFilter& filter );
void StartReceiveAndEnd( DataReceiver& receiver, ConstDataRopeReference rope, DataFilter& filter );
