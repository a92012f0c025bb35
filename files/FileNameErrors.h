#pragma once

#include "foundation/DebuggableException.h"

/// Errors of names and of parts of names.

class IllegalFileName : public DebuggableException
{
};

class IllegalFileNameLength : public DebuggableException
{
};

/// The platform refuses the name (-37).
class BadFileNameError : public DebuggableException
{
};

class PrefixDoesNotMatch : public DebuggableException
{
};

class ExtensionDoesNotMatch : public DebuggableException
{
};
