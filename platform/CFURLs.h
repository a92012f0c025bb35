#pragma once

#include "foundation/ConstData.h"
#include "platform/AutoCFData.h"
#include "platform/AutoCFString.h"
#include "platform/AutoCFURL.h"

#include <CoreFoundation/CFURL.h>
#include <CoreServices/Files.h>

/// Each function makes the one call it is named after and throws the class named after that call,
/// with "Failed" at its end, when the call gives nothing; the one exception says so. What the calls
/// do is said in CFURL.h.

/// The URL of a URL's text. Throws CFURLCreateWithStringFailed.
AutoCFURL MakeURL( CFStringRef text );

/// The URL of an item. Throws CFURLCreateFromFSRefFailed when it is gone.
AutoCFURL MakeURL( FSRef const& ref );

/// The same for the item that an FSSpec names; throws what MakeFSRef throws as well.
AutoCFURL MakeURL( FSSpec const& spec );

/// The file URL of a path. Throws CFURLCreateWithFileSystemPathFailed.
AutoCFURL MakeURLFromFileSystemPath( CFStringRef path, CFURLPathStyle pathStyle, bool isDirectory );

/// The file URL of a path in the file system's own bytes (CFURLCreateFromFileSystemRepresentation).
/// Throws CFURLCreateWithFileSystemPathFailed.
AutoCFURL MakeURLFromFileSystemBytes( ConstData path, bool isDirectory );

/// Throws CFURLCreateWithFileSystemPathRelativeToBaseFailed.
AutoCFURL MakeURLFromFileSystemPathRelativeToBase(
    CFStringRef path, CFURLPathStyle pathStyle, bool isDirectory, CFURLRef base );

/// Throws CFURLCreateCopyAppendingPathComponentFailed.
AutoCFURL CreateCopyAppendingPathComponent( CFURLRef url, CFStringRef component, bool isDirectory );

/// Throws CFURLCreateCopyDeletingLastPathComponentFailed.
AutoCFURL CreateCopyDeletingLastPathComponent( CFURLRef url );

/// Throws CFURLCopyLastPathComponentFailed.
AutoCFString CopyLastPathComponent( CFURLRef url );

/// Throws CFURLCopyFileSystemPathFailed.
AutoCFString FileSystemPath( CFURLRef url, CFURLPathStyle pathStyle );

/// The whole content of the resource. Throws CFURLErrorCode with the code reported (see
/// CFURLAccess.h).
AutoCFData GetData( CFURLRef url );
