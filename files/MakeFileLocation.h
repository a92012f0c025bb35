#pragma once

#include "encoding/Encodings.h"
#include "encoding/UStringRef.h"
#include "files/FileLocation.h"
#include "foundation/ConstData.h"

/// The location of a POSIX path in UTF-8. Nothing is checked about the item; a relative path counts
/// from the directory current now, and the empty path means that directory. The location's URL has
/// the directory form, with a trailing "/", whatever the path names.
///
/// Throws CFStringCreateError for a path that is no UTF-8, and CFURLCreateWithFileSystemPathFailed
/// for one with a zero byte and for a relative one when the current directory is gone.
FileLocation MakeFileLocation( char const* path );
FileLocation MakeFileLocation( ConstData path );

/// The same for a path's bytes as the file system has them, whatever their encoding: for names that
/// come from the command line or from a folder. Throws CFURLCreateWithFileSystemPathFailed as
/// above.
FileLocation MakeFileLocationOfBytes( ConstData path );

/// As the first for a Unicode text, which goes through the locale's encoding first: what Transcoder
/// throws comes in addition.
FileLocation MakeFileLocation( UStringRef<UTF8> path );

/// The location of a POSIX path in UTF-8 that counts from `base`, or from the current directory if
/// that is empty; an absolute path ignores it. A Unicode text counts up to its first zero. Throw
/// CFStringCreateError and CFURLCreateWithFileSystemPathRelativeToBaseFailed.
FileLocation MakeRelativeFileLocation( FileLocation const& base, char const* relativePath );
FileLocation MakeRelativeFileLocation( FileLocation const& base, UStringRef<UTF8> relativePath );

/// Whether the path begins with "/"; false for a null pointer.
bool IsAbsolutePath( char const* path );
