#pragma once

#include <functional>
#include <string>
#include <vector>

/// What becomes of the system calls of an action.
struct SystemCallFault
{
    enum Kind
    {
        Error,   ///< the call fails with `error`
        Errors,  ///< that one and all after it
        Half,    ///< half of what it asks for is asked for: a short read or write
        Killed,  ///< the process is killed before it
        Recorded ///< nothing
    };

    Kind kind = Recorded;
    int error = 0;
    std::size_t process = 0;  ///< 0 is the action's own, 1 the first one that it starts
    std::size_t call = 0;     ///< counted from 0 in that process
    bool isOldSystem = false; ///< the kernel neither copies files nor renames exclusively
};

struct TracedRun
{
    /// Their numbers, for each process until it executes a program. Those are left out that only
    /// manage memory or signals, and those that cannot fail.
    std::vector<std::vector<long>> calls;

    /// What the action returned or the class of what it threw, and how many descriptors it left
    /// open; or what ended its process, which happens as well after ten seconds.
    std::string result;
};

/// Runs `action` in a forked child whose system calls go through this process. A call that fails
/// does nothing, but for close, which closes as it does in the kernel. No calls are recorded where
/// the system does not let a process trace its child, or on another machine type.
TracedRun RunWithFault( std::function<std::string()> const& action, SystemCallFault const& fault );
