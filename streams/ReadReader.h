#pragma once

#include "streams/DataReader.h"
#include "streams/DataReceiver.h"
#include "streams/LineReceiver.h"
#include "streams/MessageReceiver.h"

#include <string>

/// Each pumps everything that `reader` yields from where it stands, as one stream, in pieces of at
/// most 4096 bytes. Exceptions of the reader and the receiver pass through; the receiver is not
/// ended then.

/// There is one piece for each time the reader was asked, even if it delivered nothing.
void ReadReader( DataReader& reader, DataReceiver& receiver );

/// Cuts the stream into lines (see LineMaker). Positions count from 0.
void ReadReader( DataReader& reader, LineReceiver& receiver );

/// Takes the stream apart as a message of header fields and a body (see MessageMaker). Positions
/// count from 0.
void ReadReader( DataReader& reader, MessageReceiver& receiver );

/// The whole stream.
std::string ReadReader( DataReader& reader );

/// The same, but throws ExceptionPL as soon as it would be more than `maximum` bytes (see
/// StringHTTPReceiver).
std::string ReadReader( DataReader& reader, unsigned int maximum );
