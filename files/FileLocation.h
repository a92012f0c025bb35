#pragma once

#include "files/mac/FileLocation.h"

/// Designates one item of the file system, whether or not it exists.
///
/// The portable form of a location: it holds the platform's one and adds nothing.
class FileLocation
{
  public:
    /// The empty location.
    FileLocation() = default;

    FileLocation( MacintoshPlatform::FileLocation const& location ) : mPlatform( location ) {}

    /// Lives as long as this location.
    MacintoshPlatform::FileLocation const& Platform() const { return mPlatform; }

    /// This location. Throws EmptyFileLocationError with code 0 when it is the empty one.
    FileLocation const& RequireNonEmpty() const;

  private:
    MacintoshPlatform::FileLocation mPlatform;
};
