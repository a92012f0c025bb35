#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace MacintoshPlatform
{

/// Owns a file descriptor, or none. Closing is not tried again and its result not looked at:
/// whoever must know that data arrived calls fsync before.
class Descriptor
{
  public:
    Descriptor() = default;

    /// Adopts `number`; a negative one, as failed calls answer it, is none.
    explicit Descriptor( int number ) noexcept : mNumber( number ) {}

    Descriptor( Descriptor&& other ) noexcept : mNumber( other.GiveUp() ) {}

    Descriptor& operator=( Descriptor&& other ) noexcept
    {
        Descriptor old( std::exchange( mNumber, other.GiveUp() ) );
        return *this;
    }

    ~Descriptor()
    {
        if ( mNumber >= 0 )
        {
            close( mNumber );
        }
    }

    bool IsOpen() const noexcept { return mNumber >= 0; }

    /// Negative for none.
    int Number() const noexcept { return mNumber; }

    /// The number, which the caller now closes.
    [[nodiscard]] int GiveUp() noexcept { return std::exchange( mNumber, -1 ); }

  private:
    int mNumber = -1;
};

/// What openat opens, `folder` being a descriptor or AT_FDCWD; none, with errno set, when it fails.
/// A signal does not end it, and no program that is started inherits the descriptor.
inline Descriptor OpenAt( int folder, char const* name, int flags, mode_t mode = 0 )
{
    int number;
    do
    {
        number = openat( folder, name, flags | O_CLOEXEC, mode );
    } while ( number < 0 && errno == EINTR );
    return Descriptor( number );
}

/// The same for a path.
inline Descriptor OpenPath( char const* path, int flags, mode_t mode = 0 )
{
    return OpenAt( AT_FDCWD, path, flags, mode );
}

} // namespace MacintoshPlatform
