#pragma once

#include "foundation/DebuggableException.h"

/// Thrown where a text that should be a numeral is none.
class NotANumeral : public DebuggableException
{
};

/// Thrown where a numeral stands for a number that its target type cannot hold.
class NumeralTooLarge : public DebuggableException
{
};
