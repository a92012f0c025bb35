#pragma once

#include "foundation/DebuggableException.h"

/// Thrown where a byte would be written, or a cursor moved, beyond the end of its byte range.
class DataOverflow : public DebuggableException
{
};
