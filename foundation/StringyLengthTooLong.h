#pragma once

#include "foundation/DebuggableException.h"

/// Thrown where the length of a text and its terminator would not fit in 32 bits.
class StringyLengthTooLong : public DebuggableException
{
};
