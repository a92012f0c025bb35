#pragma once

#include <stddef.h>
#include <sys/sysctl.h>

/// Takes a snapshot of the kernel's whole process table.
///
/// On success returns 0; `*procList` is then one block from malloc that holds `*procCount` records
/// back to back in the kernel's order, and the caller frees it. On failure returns an errno value,
/// with `*procList` null and `*procCount` 0; ENOMEM when there is no memory for the block.
///
/// Both pointers must be given and `*procList` must be null on entry. Anything else is a
/// programming error and ends the process with a message, in every kind of build.
int GetBSDProcessList( struct kinfo_proc** procList, size_t* procCount );
