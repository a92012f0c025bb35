#pragma once

#include "foundation/DebuggableException.h"

/// Thrown where a text is longer than the fixed capacity meant to hold it.
class ConstDataCapacityExceeded : public DebuggableException
{
};
