#pragma once

/// Renaming with a condition, as the BSD systems offer it.

extern "C"
{

    enum : unsigned int
    {
        RENAME_EXCL = 4 ///< only if nothing has the new name yet
    };

    /// renameat(2) with `flags`: 0 or RENAME_EXCL, which makes it fail with EEXIST when there is an
    /// item of the new name, even a dangling link. Answers 0, or -1 with errno set; EINVAL for
    /// other flags, ENOTSUP when the file system cannot do it in one step. A folder that would go
    /// into itself is ENOTSUP under RENAME_EXCL as well: the kernel does not tell the two apart.
    int renameatx_np(
        int fromFolder, char const* from, int toFolder, char const* to, unsigned int flags );
}
