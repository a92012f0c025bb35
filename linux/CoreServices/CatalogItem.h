#pragma once

// One look at an item of the file system. Internal to linux/.

#include <CoreServices/Files.h>
#include <CoreServices/MacErrors.h>

#include <new>
#include <string>
#include <sys/stat.h>

/// What the file system says about an item.
struct CatalogItem
{
    struct statx status = {};

    FSVolumeRefNum Volume() const;

    FSNodeID Node() const { return status.stx_ino; }

    FSItemIdentity Identity() const;

    bool IsFolder() const { return S_ISDIR( status.stx_mode ); }

    bool IsLocked() const { return ( status.stx_attributes & STATX_ATTR_IMMUTABLE ) != 0; }

    /// The item's allocated bytes.
    UInt64 PhysicalSize() const { return status.stx_blocks * 512; }
};

/// Looks at the item itself, even if it is a symbolic link. Answers 0 or an errno value.
int ReadItem( std::string const& path, CatalogItem& item );

/// Looks at a folder, through links; ENOTDIR when it is none.
int ReadFolder( std::string const& path, CatalogItem& folder );

/// The path of an item without any link in it, which follows one at its end too. Answers 0 or an
/// errno value.
int ReadRealPath( std::string const& path, std::string& realPath );

/// A path of the folder that the item at an absolute path lies in; the root lies in itself.
std::string FolderPath( std::string const& path );

/// Looks at the item at a full pathname, after making sure that it lies in the folder meant.
/// Answers a code of MacErrors.h.
OSErr ReadItemInFolder(
    FSVolumeRefNum volume, FSNodeID folder, std::string const& pathname, CatalogItem& item );

/// What `call` answers; memFullErr when memory runs out in it.
template<class Call>
OSErr CodeOf( Call const& call ) noexcept
{
    try
    {
        return call();
    }
    catch ( std::bad_alloc const& )
    {
        return memFullErr;
    }
}
