#include "files/FileRetry.h"

#include "files/FileErrors.h"
#include "files/FileOperations.h"
#include "files/TreeOperations.h"
#include "foundation/MilliSecondSleep.h"

namespace
{

constexpr unsigned kAttempts = 9;
constexpr unsigned kFirstPause = 25; // milliseconds

/// What the log is told about, whatever happens.
struct Operation
{
    char const* name;
    FileLocation const& first;
    FileLocation const* second;
    FileRetryLog const& log;
};

/// Whether `run` returned. Throws what it threw when it is not to be tried again.
template<class Run>
bool Succeeds( Run const& run, Operation const& operation, unsigned attempt )
{
    try
    {
        run();
        return true;
    }
    catch ( EmptyFileLocationError const& )
    {
        throw;
    }
    catch ( ... )
    {
        if ( attempt < kAttempts )
        {
            return false;
        }
        operation.log.LogRetryFailure(
            operation.name, &operation.first, operation.second, attempt );
        throw;
    }
}

template<class Run>
void Retry( Run const& run, Operation const& operation )
{
    unsigned attempt = 1;
    for ( unsigned pause = kFirstPause; !Succeeds( run, operation, attempt ); pause *= 2 )
    {
        MilliSecondSleep( pause );
        ++attempt;
    }
    if ( attempt > 1 )
    {
        operation.log.LogRetrySuccess(
            operation.name, &operation.first, operation.second, attempt );
    }
}

} // namespace

void FileRetryLog::LogRetrySuccess(
    char const*, FileLocation const*, FileLocation const*, unsigned ) const
{
}

void FileRetryLog::LogRetryFailure(
    char const*, FileLocation const*, FileLocation const*, unsigned ) const
{
}

void RetryOneFileFunc( void ( *op )( FileLocation const& ), char const* operation,
    FileLocation const& location, FileRetryLog const& log )
{
    Retry( [&] { op( location ); }, { operation, location, nullptr, log } );
}

void RetryTwoFileFunc( void ( *op )( FileLocation const&, FileLocation const& ),
    char const* operation, FileLocation const& from, FileLocation const& to,
    FileRetryLog const& log )
{
    Retry( [&] { op( from, to ); }, { operation, from, &to, log } );
}

void RetryOneFileFuncWithDirInfo( void ( *op )( FileLocation const&, DirectoryCreatingInfo const& ),
    char const* operation, FileLocation const& location, DirectoryCreatingInfo const& info,
    FileRetryLog const& log )
{
    Retry( [&] { op( location, info ); }, { operation, location, nullptr, log } );
}

void ForceDeleteRecursiveWithRetry( FileLocation const& location, FileRetryLog const& log )
{
    RetryOneFileFunc( ForceDeleteRecursive, "DeleteRecursive", location, log );
}

void ForceDeleteContents( FileLocation const& location, FileRetryLog const& log )
{
    RetryOneFileFunc( ForceDeleteContents, "DeleteContents", location, log );
}

void ForceNonexistenceWithRetry( FileLocation const& location, FileRetryLog const& log )
{
    RetryOneFileFunc( ForceNonexistence, "ForceNonexistence", location, log );
}

void DeleteFileWithRetry( FileLocation const& location, FileRetryLog const& log )
{
    RetryOneFileFunc( DeleteFile, "DeleteFile", location, log );
}

void DeleteDirectoryWithRetry( FileLocation const& location, FileRetryLog const& log )
{
    RetryOneFileFunc( DeleteDirectory, "DeleteDirectory", location, log );
}

void ForceCopyFileWithRetry(
    FileLocation const& from, FileLocation const& to, FileRetryLog const& log )
{
    RetryTwoFileFunc( ForceCopyFile, "ForceCopyFile", from, to, log );
}

void ForceMoveFileWithRetry(
    FileLocation const& from, FileLocation const& to, FileRetryLog const& log )
{
    RetryTwoFileFunc( ForceMoveFile, "ForceMoveFile", from, to, log );
}

void CopyFileWithRetry( FileLocation const& from, FileLocation const& to, FileRetryLog const& log )
{
    RetryTwoFileFunc( CopyFile, "CopyFile", from, to, log );
}

void MoveFileWithRetry( FileLocation const& from, FileLocation const& to, FileRetryLog const& log )
{
    RetryTwoFileFunc( MoveFile, "MoveFile", from, to, log );
}

void ForceDirectoryExistenceWithInfoWithRetry(
    FileLocation const& location, DirectoryCreatingInfo const& info, FileRetryLog const& log )
{
    RetryOneFileFuncWithDirInfo(
        ForceDirectoryExistence, "ForceDirectoryExistenceWithInfo", location, info, log );
}

void ForceDirectoryExistenceWithRetry( FileLocation const& location, FileRetryLog const& log )
{
    RetryOneFileFuncWithDirInfo(
        ForceDirectoryExistence, "ForceDirectoryExistence", location, {}, log );
}

void CreateDirectoryWithRetry(
    FileLocation const& location, DirectoryCreatingInfo const& info, FileRetryLog const& log )
{
    RetryOneFileFuncWithDirInfo( CreateDirectory, "CreateDirectory", location, info, log );
}

void CreateFileWithRetry(
    FileLocation const& location, FileCreatingInfo const& fileInfo, FileRetryLog const& log )
{
    Retry( [&] { CreateFile( location, fileInfo ); }, { "CreateFile", location, nullptr, log } );
}
