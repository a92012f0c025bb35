#pragma once

#include <unistd.h>

/// Owns a file descriptor for as long as a function uses it; a negative one, as failed calls answer
/// it, is none.
class Descriptor
{
  public:
    explicit Descriptor( int number ) noexcept : mNumber( number ) {}

    Descriptor( Descriptor const& ) = delete;
    Descriptor& operator=( Descriptor const& ) = delete;

    ~Descriptor()
    {
        if ( mNumber >= 0 )
        {
            close( mNumber );
        }
    }

    int Get() const noexcept { return mNumber; }

  private:
    int const mNumber;
};
