#pragma once

/// Copying the content of files, as the BSD systems offer it.

extern "C"
{

    /// What a copy reports to its caller; there is none here, pass a null pointer.
    typedef struct _copyfile_state* copyfile_state_t;

    typedef unsigned int copyfile_flags_t;

    enum : copyfile_flags_t
    {
        COPYFILE_DATA = 1 << 3 ///< the bytes
    };

    /// Copies all of the regular file `from` into the regular file `to`, which must be empty; both
    /// are descriptors. It begins at the beginning whatever their positions are, and may move them.
    /// Holes stay holes, and the file system shares the blocks of both files where it can. A file
    /// that says that it is empty is read all the same, as those of /proc have content.
    ///
    /// Answers 0, or -1 with errno set: EINVAL for a state or flags other than COPYFILE_DATA, and
    /// whatever reading, writing or setting the size reports. `to` is then incomplete. A signal
    /// that interrupts a call does not end the copy. A file that grows meanwhile is copied up to
    /// its size when the copy began, unless it said that it is empty; one that shrinks, up to where
    /// it was found to end.
    int fcopyfile( int from, int to, copyfile_state_t state, copyfile_flags_t flags );
}
