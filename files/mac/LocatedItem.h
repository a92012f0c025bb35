#pragma once

#include "files/mac/CopyItem.h"
#include "files/mac/Descriptor.h"
#include "files/mac/FileLocation.h"

#include <string>

namespace MacintoshPlatform
{

/// The place that a location designates, for several calls about the same folder: it is opened
/// once, so all of them see the same one whatever becomes of its path.
class LocatedItem
{
  public:
    /// Touches no disk. Throws EmptyFileLocationError, RootHasNoParent with the name, and what
    /// POSIXPath throws.
    explicit LocatedItem( FileLocation const& location );

    LocatedItem( LocatedItem const& ) = delete;
    LocatedItem& operator=( LocatedItem const& ) = delete;

    std::string const& Path() const { return mPath; }

    /// Opens the folder; answers 0 or an errno value. A folder that may not be read stays closed:
    /// then Place has the whole path, and the calls that follow tell whether it may be used.
    int OpenFolder();

    /// Lent: it lives as long as this object.
    ItemPlace Place() const;

    /// What stands there, a link itself; answers 0 or an errno value.
    int ReadStatus( struct stat& status ) const;

  private:
    std::string mPath;
    std::size_t mSlash; ///< where the last one is
    Descriptor mFolder;
};

} // namespace MacintoshPlatform
