#pragma once

#include "files/FileLocation.h"
#include "streams/DataReceiver.h"

#include <cstdint>
#include <string>

/// Each reads a regular file as FileReader does and throws what it throws.

/// Pushes the file, or `length` bytes of it from `offset` on, into `receiver` as one stream, piece
/// by piece in constant memory. The stream is begun only when the file is open.
/// What the receiver throws passes through, and the receiver is not ended then.
void ReadFile( FileLocation const& location, DataReceiver& receiver );
void ReadFile( FileLocation const& location, std::uint64_t offset, std::uint64_t length,
    DataReceiver& receiver );

/// The content of the file. Throws FileItemError when that is more than `maximum` bytes, without
/// reading on: a file may have no end.
std::string ReadFile( FileLocation const& location, std::uint32_t maximum );
