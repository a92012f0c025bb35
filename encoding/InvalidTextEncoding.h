#pragma once

#include "foundation/DebuggableException.h"

/// Thrown where a text is malformed in its encoding.
class InvalidTextEncoding : public DebuggableException
{
};
