#pragma once

#include "files/FileIOError.h"

namespace MacintoshPlatform
{

/// Errors of the platform-specific half of the file layer.

class FullPathFailed : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

class InvalidParentURL : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

class CannotCreateSpecialFolder : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

/// Thrown when going through a folder fails. It has no base class.
class FileLoopFailed
{
};

} // namespace MacintoshPlatform

/// Thrown when going through a folder cannot begin. It has no base class.
class FSIteratorCreateError
{
};
