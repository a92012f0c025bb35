#pragma once

// A program that uses anything from this header gets its own operator new and delete, malloc,
// calloc, realloc and free, for the C library and all other libraries too. They count what is
// allocated and can be told to fail. Memory that is aligned beyond the usual is not counted, nor
// what a sanitizer allocates itself in place of the C library (strdup, for instance).

/// Makes the `failingCall`th allocation from now on (the first is 1) fail: operator new throws
/// std::bad_alloc, the others answer null with ENOMEM in errno, in any thread. The ones after that
/// succeed again, or fail too if the failure is `kLasting`; all of them succeed once this object is
/// destroyed.
class AllocationFailure
{
  public:
    enum Duration
    {
        kOnce,
        kLasting
    };

    explicit AllocationFailure( long failingCall, Duration duration = kOnce );

    AllocationFailure( AllocationFailure const& ) = delete;
    AllocationFailure& operator=( AllocationFailure const& ) = delete;

    ~AllocationFailure();

    /// Whether the call that was to fail has come.
    bool HasFailed() const;
};

/// How many allocations by operator new have not been freed yet.
long LiveAllocations();

/// How many allocations of any kind, those by operator new included, have not been freed yet.
long LiveBlocks();

/// How many allocations by operator new there have been.
long AllocationCount();
