#pragma once

/// The kernel's process table through the call that programs of the original platform read it with.
///
/// Only the table of all processes can be asked for; nothing can be set.

#include <stddef.h>
#include <sys/types.h>

#define CTL_KERN 1
#define KERN_PROC 14
#define KERN_PROC_ALL 0

/// The most characters that a short command name has.
#define MAXCOMLEN 16

extern "C"
{
    /// What the table says about a process.
    struct extern_proc
    {
        pid_t p_pid;
        char p_comm[MAXCOMLEN + 1]; ///< short command name, always NUL-terminated
    };

    /// One process. The reserved bytes, always 0, give the record the size that callers divide by.
    struct kinfo_proc
    {
        struct extern_proc kp_proc;
        unsigned char reserved[492 - sizeof( struct extern_proc )];
    };

    static_assert( sizeof( struct kinfo_proc ) == 492 );

    /// Reads the table of all processes: `name` is { CTL_KERN, KERN_PROC, KERN_PROC_ALL }.
    ///
    /// Without a buffer (`oldp` null) `*oldlenp` becomes the size that the table needs now, with
    /// some room for processes that start before it is fetched; it may be larger where not all
    /// processes are listed. Should the table not have fitted into a size that was named, the next
    /// size is right. With one, `*oldlenp` is its size on entry and the bytes written on return:
    /// one record for each process, back to back, in the order in which /proc lists processes. A
    /// process that ends meanwhile may be left out, one that lives throughout never is. A process
    /// that has ended but not been waited for is listed. Those that /proc keeps from the caller
    /// (mount option hidepid) are not.
    ///
    /// Returns 0, or -1 with the reason in `errno`:
    /// - ENOMEM: the buffer is too small, or the system has no memory; `*oldlenp` tells how much
    ///   of the buffer was filled;
    /// - EPERM: `newp` is not null;
    /// - EFAULT: `name` or `oldlenp` is null;
    /// - ENOENT: `name` is another name, or no process table is mounted on /proc;
    /// - what opening or reading below /proc failed with, for example EMFILE.
    ///
    /// Takes no memory, and two descriptors while it runs. Time and system calls of a fetch grow
    /// with the number of processes, three calls for each; a size takes few in any case.
    int sysctl(
        int* name, unsigned int namelen, void* oldp, size_t* oldlenp, void* newp, size_t newlen );
}
