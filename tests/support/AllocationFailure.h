#pragma once

#include <atomic>
#include <functional>

// A program that uses anything from this header gets its own operator new and delete, which count
// what is allocated and can be told to fail. Types aligned beyond the usual are not counted.

/// Makes the `failingCall`th call of operator new from now on (the first is 1) throw
/// std::bad_alloc, in any thread. The calls after that succeed again, and so do all of them once
/// this object is destroyed.
class AllocationFailure
{
  public:
    explicit AllocationFailure( long failingCall ) { gCallsUntilFailure = failingCall; }

    AllocationFailure( AllocationFailure const& ) = delete;
    AllocationFailure& operator=( AllocationFailure const& ) = delete;

    ~AllocationFailure() { gCallsUntilFailure = 0; }

    /// Whether the call that was to fail has come.
    bool HasFailed() const { return gCallsUntilFailure == 0; }

    /// Counts a call of operator new and tells whether it is to fail.
    static bool IsNext() { return gCallsUntilFailure > 0 && --gCallsUntilFailure == 0; }

  private:
    static std::atomic<long> gCallsUntilFailure;
};

/// How many allocations by operator new have not been freed yet.
long LiveAllocations();

/// How many allocations by operator new there have been.
long AllocationCount();

/// Runs `action` with its first, second, third ... allocation failing until a run gets through
/// without a failure, and returns how many runs failed. `action` must let the std::bad_alloc out
/// (std::logic_error if it swallows it, and also if a failing run leaves allocations behind).
int FailEachAllocation( std::function<void()> const& action );
