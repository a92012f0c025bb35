#pragma once

#include <cstdint>

/// A status code of the platform; 0 means no error.
///
/// Both a value that collects the status of several calls, in which the first error sticks, and
/// the exception thrown for one. It has no base class.
class OSError
{
  public:
    explicit OSError( std::int32_t code = 0 ) : mCode( code ) {}

    OSError( OSError const& ) = default;
    ~OSError() = default;

    /// Takes `code` unless an error is held already.
    OSError& operator=( std::int32_t code );

    /// Takes the other's code unless an error is held already.
    OSError& operator=( OSError const& other );

    std::int32_t GetCode() const { return mCode; }

    /// Forgives an expected status: back to 0 if it is the one held.
    void Fix( std::int32_t code );

    /// Hooks for a debugger; they do nothing.
    void AnnounceError( std::int32_t ) {}

    void AnnounceCancellation( std::int32_t, std::int32_t ) {}

    void AnnounceDuplication( std::int32_t ) {}

    void AnnounceDestruction( std::int32_t ) {}

    void Debug( std::int32_t ) {}

    void Debug() const {}

  private:
    std::int32_t mCode;
};

class MemoryError : public OSError
{
  public:
    using OSError::OSError;
};

/// The platform is out of memory (-108).
class MemoryFullError : public MemoryError
{
  public:
    using MemoryError::MemoryError;
};

/// Throws a status that is not 0: MemoryFullError for -108, otherwise OSError.
[[noreturn]] void ThrowRealOSError( std::int32_t code );
