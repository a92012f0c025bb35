#include "files/FileOperations.h"

#include "files/mac/FileOperations.h"

void CreateFile( FileLocation const& location, FileCreatingInfo const& info )
{
    MacintoshPlatform::CreateFile( location.Platform(), info );
}

void CreateDirectory( FileLocation const& location, DirectoryCreatingInfo const& info )
{
    MacintoshPlatform::CreateDirectory( location.Platform(), info );
}

void ForceDirectoryExistence( FileLocation const& location, DirectoryCreatingInfo const& info )
{
    MacintoshPlatform::ForceDirectoryExistence( location.Platform(), info );
}

void DeleteFile( FileLocation const& location )
{
    MacintoshPlatform::DeleteFile( location.Platform() );
}

void DeleteDirectory( FileLocation const& location )
{
    MacintoshPlatform::DeleteDirectory( location.Platform() );
}

void ForceNonexistence( FileLocation const& location )
{
    MacintoshPlatform::ForceNonexistence( location.Platform() );
}

void CopyFile( FileLocation const& from, FileLocation const& to )
{
    MacintoshPlatform::CopyFile( from.Platform(), to.Platform() );
}

void ForceCopyFile( FileLocation const& from, FileLocation const& to )
{
    MacintoshPlatform::ForceCopyFile( from.Platform(), to.Platform() );
}

void MoveFile( FileLocation const& from, FileLocation const& to )
{
    MacintoshPlatform::MoveFile( from.Platform(), to.Platform() );
}

void ForceMoveFile( FileLocation const& from, FileLocation const& to )
{
    MacintoshPlatform::ForceMoveFile( from.Platform(), to.Platform() );
}
