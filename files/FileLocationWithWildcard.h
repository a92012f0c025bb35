#pragma once

#include "files/FileLocation.h"
#include "foundation/ConstData.h"

/// Takes a path apart whose last component may hold the wildcards "*" and "?"; those before it are
/// taken literally. With wildcards the result points to that component inside `path`, and
/// `directoryPart` is what comes before it, with its slash; it is empty when there is no slash.
/// Without, the result is null and `directoryPart` the whole path. It points into `path` as well.
///
/// Throws EmptyFileLocationError with code 0 for a null or empty path.
char const* MakeFileLocationWithWildcardUnix( char const* path, ConstData& directoryPart );

/// Makes `out` the location of that directory part (an empty one is the current directory) and
/// returns the pattern, which FileName::MatchesWildCard takes, or null. The path is a POSIX path in
/// UTF-8. Throws what MakeFileLocation throws as well; `out` then stays as it was.
char const* MakeFileLocationWithWildcard( char const* path, FileLocation& out );
