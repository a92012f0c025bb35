#pragma once

#include "streams/DataReader.h"
#include "streams/DataReceiver.h"

#include <string>

/// Pushes everything that `reader` yields from where it stands into `receiver`, as one stream.
///
/// The pieces are of at most 4096 bytes, and there is one for each time the reader was asked, even
/// if it delivered nothing. Exceptions of the two pass through; the receiver is not ended then.
void ReadReader( DataReader& reader, DataReceiver& receiver );

/// Everything that `reader` yields from where it stands.
std::string ReadReader( DataReader& reader );
