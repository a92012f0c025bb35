#include "tests/support/AllocationFailure.h"

#include <cstddef>
#include <cstdlib>
#include <new>
#include <stdexcept>

std::atomic<long> AllocationFailure::gCallsUntilFailure = 0;

namespace
{

std::atomic<long> gAllocations = 0;
std::atomic<long> gLive = 0;

} // namespace

// All forms for types of the usual alignment are here: an address sanitizer that supplied one of
// them itself would find its memory freed by another's.

void* operator new( std::size_t size )
{
    void* const memory =
        AllocationFailure::IsNext() ? nullptr : std::malloc( size == 0 ? 1 : size );
    if ( memory == nullptr )
        throw std::bad_alloc();
    ++gAllocations;
    ++gLive;
    return memory;
}

void* operator new[]( std::size_t size )
{
    return operator new( size );
}

void operator delete( void* memory ) noexcept
{
    gLive -= memory != nullptr;
    std::free( memory );
}

void operator delete[]( void* memory ) noexcept
{
    operator delete( memory );
}

void operator delete( void* memory, std::size_t ) noexcept
{
    operator delete( memory );
}

void operator delete[]( void* memory, std::size_t ) noexcept
{
    operator delete( memory );
}

long LiveAllocations()
{
    return gLive;
}

long AllocationCount()
{
    return gAllocations;
}

int FailEachAllocation( std::function<void()> const& action )
{
    for ( int failures = 0;; ++failures )
    {
        long const before = LiveAllocations();
        try
        {
            AllocationFailure const failure( failures + 1 );
            action();
            if ( failure.HasFailed() )
                throw std::logic_error( "a failed allocation was swallowed" );
            return failures;
        }
        catch ( std::bad_alloc const& )
        {
            if ( LiveAllocations() != before )
                throw std::logic_error( "memory leaked by a failing run" );
        }
    }
}
