#pragma once

#include "files/mac/FileLocation.h"
#include "files/mac/FileName.h"
#include "foundation/ConstData.h"

#include <string>

/// Designates one item of the file system, whether or not it exists.
///
/// The portable form of a location: it holds the platform's one and nothing else. What the
/// operations do and throw is said there, also that they remember the path: give each thread a copy
/// of its own.
class FileLocation
{
  public:
    using FileName = MacintoshPlatform::FileName;

    /// The empty location.
    FileLocation() = default;

    FileLocation( MacintoshPlatform::FileLocation const& location ) : mPlatform( location ) {}

    /// The item `name` in the folder `parent`. The last two take the name in UTF-8 and throw what
    /// FileName throws as well.
    FileLocation( FileLocation const& parent, FileName const& name );
    FileLocation( FileLocation const& parent, char const* name );
    FileLocation( FileLocation const& parent, ConstData name );

    /// Lives as long as this location.
    MacintoshPlatform::FileLocation const& Platform() const { return mPlatform; }

    /// This location. Throws EmptyFileLocationError with code 0 when it is the empty one.
    FileLocation const& RequireNonEmpty() const;

    FileLocation Parent() const { return mPlatform.Parent(); }

    FileLocation Child( FileName const& name ) const { return { *this, name }; }

    FileLocation Sibling( FileName const& name ) const { return mPlatform.Sibling( name ); }

    bool Exists() const { return mPlatform.Exists(); }

    bool IsFile() const { return mPlatform.IsFile(); }

    bool IsDirectory() const { return mPlatform.IsDirectory(); }

    /// True for links, and for plain files as well: see the platform's.
    bool IsLink() const { return mPlatform.IsLink(); }

    std::string POSIXPath() const { return mPlatform.POSIXPath(); }

    FileName Name() const { return mPlatform.Name(); }

    bool Equal( FileLocation const& other ) const { return mPlatform.Equal( other.mPlatform ); }

    bool IsRoot() const { return mPlatform.IsRoot(); }

  private:
    MacintoshPlatform::FileLocation mPlatform;
};
