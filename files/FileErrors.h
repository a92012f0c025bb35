#pragma once

#include "files/FileIOError.h"

/// The file layer's errors, told apart by their type.

/// A file, or anything else but a folder, stands where something new was to be.
class FileExists : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

/// The same for a folder.
class DirectoryExists : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

/// Something was found where nothing should be. For callers: nothing here throws it.
class FileFoundError : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

/// There is no such item.
class FileNotFoundError : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

/// There is no such folder, or what stands there is none.
class DirectoryNotFoundError : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

/// The folder has content.
class DirectoryNotEmpty : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

/// This one and the five after it: the operation failed for a reason that has no class of its own.
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

/// The item could not be opened or read for such a reason.
class FileNotOpenError : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

/// The item is in use, or is being changed by others.
class FileBusyError : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

/// The item has the immutable attribute.
class FileLockError : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

/// The item is not of the kind that the operation takes: a folder, a FIFO, a file beyond the limit.
class FileItemError : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

/// The user may not do this.
class FilePermissionError : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

/// The file system, or the user's share of it, is full.
class DiskFullError : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

/// A file ended too early. For callers: the readers here throw the class at the end.
class EndOfFileError : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

/// The root cannot be deleted, copied or moved, and nothing lies above it.
class RootHasNoParent : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

/// A location that designates nothing was given.
class EmptyFileLocationError : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

/// No new name could be found or used.
class CreateUniqueFileLocationFailed : public FileIOError
{
  public:
    using FileIOError::FileIOError;
};

/// Thrown when a file ends before what is read in a loop is complete.
class FileReadingLoopEndOfFileError : public DebuggableException
{
};
