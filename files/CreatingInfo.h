#pragma once

#include <sys/types.h>

/// How CreateFile makes a file.
struct FileCreatingInfo
{
    mode_t permissions = 0666; ///< of which the process's umask takes some away
    bool makesParents = false; ///< missing folders above are made first
};

/// How CreateDirectory and ForceDirectoryExistence make a folder.
struct DirectoryCreatingInfo
{
    mode_t permissions = 0777; ///< of which the process's umask takes some away
    bool makesParents = false; ///< missing folders above are made first
};
