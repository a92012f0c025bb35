#pragma once

#include "files/mac/FileLocation.h"
#include "foundation/ConstData.h"

namespace MacintoshPlatform
{

/// The location of the path in the `length` bytes at `path`, in a CFStringEncoding and a
/// CFURLPathStyle. Its URL always has the directory form. Throws CFStringCreateError for bytes
/// that are not valid in the encoding, and CFURLCreateWithFileSystemPathFailed for a path that has
/// no URL.
FileLocation MakeFileLocation(
    char const* path, unsigned length, unsigned long encoding, long pathStyle );

/// The same for a POSIX path in UTF-8.
FileLocation MakeFileLocation( ConstData path );

/// The same for a path's bytes as the file system has them, whatever their encoding. Throws
/// CFURLCreateWithFileSystemPathFailed as above.
FileLocation MakeFileLocationOfBytes( ConstData path );

/// The location of a path that counts from `base`; an absolute one ignores it, and so does every
/// path when `base` is empty: it then counts from the current directory. Throws CFStringCreateError
/// and CFURLCreateWithFileSystemPathRelativeToBaseFailed.
FileLocation MakeRelativeFileLocation(
    FileLocation const& base, char const* relativePath, unsigned long encoding, long pathStyle );

} // namespace MacintoshPlatform
