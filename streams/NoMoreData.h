#pragma once

#include "foundation/DebuggableException.h"

/// Thrown where a reader ends before the requested range is full.
class NoMoreData : public DebuggableException
{
};
