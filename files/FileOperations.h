#pragma once

#include "files/CreatingInfo.h"
#include "files/FileLocation.h"

/// Operations that change the file system, one item each: the portable forms of those in
/// files/mac/FileOperations.h, which says what they do and throw.

void CreateFile( FileLocation const& location, FileCreatingInfo const& info = {} );
void CreateDirectory( FileLocation const& location, DirectoryCreatingInfo const& info = {} );
void ForceDirectoryExistence(
    FileLocation const& location, DirectoryCreatingInfo const& info = {} );

void DeleteFile( FileLocation const& location );
void DeleteDirectory( FileLocation const& location );
void ForceNonexistence( FileLocation const& location );

void CopyFile( FileLocation const& from, FileLocation const& to );
void ForceCopyFile( FileLocation const& from, FileLocation const& to );
void MoveFile( FileLocation const& from, FileLocation const& to );
void ForceMoveFile( FileLocation const& from, FileLocation const& to );
