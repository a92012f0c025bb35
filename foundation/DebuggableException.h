#pragma once

#include <exception>

namespace MacintoshPlatform
{

/// Marks an exception as one of the library's own, so that a debugging hook can tell it from
/// others. Empty; it takes no storage in the objects that derive from it.
class ExceptionDebuggingInfo
{
};

} // namespace MacintoshPlatform

/// Root of the library's exceptions.
///
/// Most classes derived from it are empty tags, told apart by their type alone; a class that
/// carries a text or a code says so. They are thrown by value and caught by reference.
class DebuggableException : public std::exception, public MacintoshPlatform::ExceptionDebuggingInfo
{
  public:
    ~DebuggableException() override;

    /// The name of the most-derived class as the compiler's type information encodes it, for
    /// example "12DataOverflow". Valid as long as the program runs.
    char const* what() const noexcept override;
};
