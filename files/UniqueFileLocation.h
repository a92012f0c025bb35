#pragma once

#include "files/FileLocation.h"

#include <string_view>

/// Items under names that nobody can guess. Each call makes a new item, whose name is `prefix`
/// followed by random characters, and answers where it is; an item that is there already, even a
/// link that leads nowhere, is never taken. Nobody but the user can use what was made: a file has
/// the permissions 0600, a folder 0700, less what the umask takes. Deleting it is up to the caller.
///
/// Each throws IllegalFileName for a prefix with a "/" or a zero byte, IllegalFileNameLength when
/// the name would be longer than 255 bytes, FullPathFailed when the path would be too long,
/// CreateUniqueFileLocationFailed when every name that was tried is taken or making the item fails
/// in a way that has no error of its own, and the other errors of ThrowFileError. The last two name
/// the folder: FileNotFoundError, for instance, when it does not exist. Where the system has no
/// random bits, it is CreateUniqueFileLocationFailed with the prefix.

/// A file or a folder in `folder`. A symbolic link there is followed. Throw EmptyFileLocationError
/// in addition.
FileLocation CreateUniqueFile( FileLocation const& folder, std::string_view prefix );
FileLocation CreateUniqueDirectory( FileLocation const& folder, std::string_view prefix );

/// The same in the user's folder for temporary items, which is made if it is missing; what finding
/// that throws (CannotCreateSpecialFolder among others) comes in addition.
FileLocation CreateTemporaryFile( std::string_view prefix );
FileLocation CreateTemporaryDirectory( std::string_view prefix );
