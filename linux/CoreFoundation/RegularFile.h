#pragma once

// Reading files. Internal to linux/.

#include <CoreFoundation/CFBase.h>

#include <string>
#include <vector>

/// Reads the regular file at `path` under the rules of CFURLAccess.h. Answers 0 or an errno value:
/// EINVAL for an item of another kind, EFBIG beyond the limit. Throws std::bad_alloc.
int ReadRegularFile( std::string const& path, std::vector<UInt8>& bytes );
