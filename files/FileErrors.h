#pragma once

#include "files/FileIOError.h"

/// The file layer's errors, told apart by their type.

class FileExists : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

class DirectoryExists : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

class FileFoundError : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

class FileNotFoundError : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

class DirectoryNotFoundError : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

class DirectoryNotEmpty : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

class FileCreateFailed : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

class DirectoryCreateFailed : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

class FileDeleteFailed : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

class DirectoryDeleteFailed : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

class FileCopyFailed : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

class FileMoveFailed : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

class FileNotOpenError : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

class FileBusyError : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

class FileLockError : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

class FileItemError : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

class FilePermissionError : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

class DiskFullError : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

class EndOfFileError : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

class RootHasNoParent : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

class EmptyFileLocationError : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

class CreateUniqueFileLocationFailed : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

/// Thrown when a file ends before what is read in a loop is complete.
class FileReadingLoopEndOfFileError : public DebuggableException
{
};
