#pragma once

#include <span>

/// One way to do a piece of work, written for some processors. All kernels of a list give the same
/// answers.
template<typename Function>
struct Kernel
{
    char const* name;
    bool ( *isSupported )(); ///< whether this processor has the instructions
    Function* function;
};

/// The first kernel of the list that this processor supports. The last one of each list supports
/// every processor.
template<typename Function>
Function* FirstSupported( std::span<Kernel<Function> const> kernels )
{
    for ( Kernel<Function> const& kernel : kernels )
        if ( kernel.isSupported() )
            return kernel.function;
    return nullptr;
}

/// For kernels that need no special instructions.
inline bool IsAlwaysSupported()
{
    return true;
}
