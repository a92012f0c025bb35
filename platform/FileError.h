#pragma once

#include "platform/OSError.h"

/// Errors of the file manager that carry its code.

class FileError : public OSError
{
  public:
    using OSError::OSError;
};

class NotAFileError : public FileError
{
  public:
    using FileError::FileError;
};

class FileAccessError : public FileError
{
  public:
    using FileError::FileError;
};

class VolumeLockError : public FileAccessError
{
  public:
    using FileAccessError::FileAccessError;
};

/// The device refuses writes (-44).
class HardwareVolumeLockError : public VolumeLockError
{
  public:
    using VolumeLockError::VolumeLockError;
};

/// The file system is mounted read-only (-46).
class SoftwareVolumeLockError : public VolumeLockError
{
  public:
    using VolumeLockError::VolumeLockError;
};
