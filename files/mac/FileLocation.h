#pragma once

#include "platform/AutoCFURL.h"

#include <CoreServices/Files.h>

#include <string>

namespace MacintoshPlatform
{

/// Designates one item of the file system, whether or not it exists, by a URL.
///
/// The URL is the whole identity. Without one it is the empty location, a normal value that
/// designates nothing. A symbolic link is an item of its own and is not followed.
class FileLocation
{
  public:
    /// The empty location.
    FileLocation() = default;

    /// Shares `url`, which may be null.
    explicit FileLocation( CFURLRef url );

    /// The location of an item. Throws CFURLCreateFromFSRefFailed when it is gone.
    explicit FileLocation( FSRef const& ref );

    FileLocation( FileLocation const& other );
    FileLocation& operator=( FileLocation const& other );

    /// Lent: it lives as long as the location keeps it. Null for the empty location.
    CFURLRef URL() const { return mURL.Get(); }

    /// Whether there is such an item that can be reached. Does not read its catalog entry.
    bool Exists() const;

    /// Whether there is such an item and it is no folder, or is one. Both throw what the
    /// constructor of MacFileInfo throws.
    bool IsFile() const;
    bool IsDirectory() const;

  private:
    AutoCFURL mURL;
    mutable std::string mPOSIXPath; // a cache of the path; empty until there is one
};

} // namespace MacintoshPlatform
