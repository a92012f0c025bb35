#pragma once

#include "files/CreatingInfo.h"
#include "files/FileLocation.h"

/// Operations that are tried again when they fail, because what stands in their way may soon be
/// gone: a file that another program has open for a moment, a folder that just got a new entry.
///
/// An operation is tried up to 9 times, with pauses of 25, 50, 100, 200, 400, 800, 1600 and 3200
/// milliseconds between the tries, on the calling thread. Any exception counts as a failure that
/// may pass, whatever its type, except EmptyFileLocationError: that is a mistake of the program,
/// passed on at once and not logged. The caller gets the exception of the last try. That may hide
/// the first one: when a copy was published but not synced, or a move copied its source but could
/// not delete it, the later tries find the new item and fail with FileExists.

/// Is told about operations that needed more than one try. This one is silent; derived logs
/// override what they want to hear of. A log is borrowed for the call and never destroyed through
/// this class. What its functions throw ends the tries and reaches the caller.
///
/// `first` is the location of the operation, `second` the target of a copy or move and otherwise
/// null; `attempts` counts the tries.
class FileRetryLog
{
  public:
    /// The operation succeeded, at its second to ninth try.
    virtual void LogRetrySuccess( char const* operation, FileLocation const* first,
        FileLocation const* second, unsigned attempts ) const;

    /// The ninth try failed; its exception is about to be passed on.
    virtual void LogRetryFailure( char const* operation, FileLocation const* first,
        FileLocation const* second, unsigned attempts ) const;
};

/// Run `op` as said above. `operation` is what the log calls it.
void RetryOneFileFunc( void ( *op )( FileLocation const& ), char const* operation,
    FileLocation const& location, FileRetryLog const& log );
void RetryTwoFileFunc( void ( *op )( FileLocation const&, FileLocation const& ),
    char const* operation, FileLocation const& from, FileLocation const& to,
    FileRetryLog const& log );
void RetryOneFileFuncWithDirInfo( void ( *op )( FileLocation const&, DirectoryCreatingInfo const& ),
    char const* operation, FileLocation const& location, DirectoryCreatingInfo const& info,
    FileRetryLog const& log );

/// Each runs the operation it is named after. The log's name for it is that name without
/// "WithRetry", and for the first "DeleteRecursive", for the second "DeleteContents". Where no info
/// is given, it is the default one.
void ForceDeleteRecursiveWithRetry( FileLocation const& location, FileRetryLog const& log );
void ForceDeleteContents( FileLocation const& location, FileRetryLog const& log );
void ForceNonexistenceWithRetry( FileLocation const& location, FileRetryLog const& log );
void DeleteFileWithRetry( FileLocation const& location, FileRetryLog const& log );
void DeleteDirectoryWithRetry( FileLocation const& location, FileRetryLog const& log );

/// The same for operations with two locations.
void ForceCopyFileWithRetry(
    FileLocation const& from, FileLocation const& to, FileRetryLog const& log );
void ForceMoveFileWithRetry(
    FileLocation const& from, FileLocation const& to, FileRetryLog const& log );
void CopyFileWithRetry( FileLocation const& from, FileLocation const& to, FileRetryLog const& log );
void MoveFileWithRetry( FileLocation const& from, FileLocation const& to, FileRetryLog const& log );

/// The same for operations that make an item.
void ForceDirectoryExistenceWithInfoWithRetry(
    FileLocation const& location, DirectoryCreatingInfo const& info, FileRetryLog const& log );
void ForceDirectoryExistenceWithRetry( FileLocation const& location, FileRetryLog const& log );
void CreateDirectoryWithRetry(
    FileLocation const& location, DirectoryCreatingInfo const& info, FileRetryLog const& log );
void CreateFileWithRetry(
    FileLocation const& location, FileCreatingInfo const& fileInfo, FileRetryLog const& log );
