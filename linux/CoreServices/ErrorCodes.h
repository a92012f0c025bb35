#pragma once

// From errno to the platform's result codes. Internal to linux/.

#include <CoreServices/MacErrors.h>

#include <string>

/// What an errno value alone does not say about the item it concerns.
struct ErrorCircumstances
{
    bool folderIsMissing = false;  ///< the folder that the item would lie in does not exist
    bool itemIsImmutable = false;  ///< it has the immutable attribute
    bool deviceIsReadOnly = false; ///< the device under the file system refuses writes itself
};

/// The table. `error` 0 is noErr.
OSErr ResultCode( int error, ErrorCircumstances const& circumstances = {} );

/// The code for `error` that a system call reported for `path`. Asks the file system for those
/// circumstances that matter.
OSErr ResultCodeForPath( int error, std::string const& path );
