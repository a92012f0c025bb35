#pragma once

#include "files/mac/FileName.h"
#include "platform/AutoCFURL.h"

#include <CoreServices/Files.h>

#include <string>

namespace MacintoshPlatform
{

/// The size of the buffers for paths, the terminating zero included.
constexpr unsigned kPathBufferSize = 1024;

/// Designates one item of the file system, whether or not it exists, by a URL.
///
/// The URL is the whole identity. Without one it is the empty location, a normal value that
/// designates nothing. A symbolic link is an item of its own and is not followed.
///
/// The platform's calls do not say why they give nothing: lack of memory may count as a path that
/// cannot be had, and as an item that cannot be reached.
///
/// A location remembers its path once it was asked for, and so do its copies. Filling that cache
/// makes const use of one location by two threads at once unsafe; give each its own copy.
class FileLocation
{
  public:
    /// The empty location.
    FileLocation() = default;

    /// Shares `url`, which may be null.
    explicit FileLocation( CFURLRef url );

    /// The location of an item. Throws CFURLCreateFromFSRefFailed when it is gone.
    explicit FileLocation( FSRef const& ref );

    /// An item in a folder: see Set.
    FileLocation( FileLocation const& parent, FileName const& name );
    FileLocation( CFURLRef parentURL, FileName const& name );

    FileLocation( FileLocation const& other );
    FileLocation& operator=( FileLocation const& other );

    /// Becomes the location of the item `name` in the folder at `parentURL`, in directory form. It
    /// is for a location whose path has not been asked for: one that is remembered stays as it was.
    ///
    /// The empty name, "." and ".." are added to the URL like any other. Throws InvalidParentURL
    /// with code 0 for null, and CFURLCreateCopyAppendingPathComponentFailed for a name that no
    /// path can hold, with a zero or an unpaired surrogate.
    void Set( CFURLRef parentURL, FileName const& name );

    /// This location. Throws EmptyFileLocationError with code 0 when it is the empty one.
    FileLocation const& RequireNonEmpty() const;

    /// Lent: it lives as long as the location keeps it. Null for the empty location.
    CFURLRef URL() const { return mURL.Get(); }

    /// Whether there is such an item that can be reached. Does not read its catalog entry.
    bool Exists() const;

    /// Whether there is such an item and it is no folder, or is one. Both throw what the
    /// constructor of MacFileInfo throws.
    bool IsFile() const;
    bool IsDirectory() const;

    /// IsSymLink or IsAlias, and so true for plain files. Throws what they throw.
    bool IsLink() const;

    /// Whether the item's mode has any of the bits 0xA000: true for symbolic links, plain files,
    /// sockets and devices, false for folders and pipes only. Throws FileNotFoundError with the
    /// location and code 0 when there is no such item, and FullPathFailed.
    bool IsSymLink() const;

    /// Whether the item is an alias, here a symbolic link, that leads to an item; false for one
    /// that cannot be followed. Throws FileNotFoundError as above.
    bool IsAlias() const;

    /// The location of the item that an alias stands for, with `resolveChains` the last one of a
    /// chain; of an item that is no alias, its own. `result` is the platform's code (see
    /// FSResolveAliasFile): unless it is 0 the location is empty and the flags are false. Throws
    /// FileNotFoundError as above, and CFURLCreateFromFSRefFailed when the target goes away at this
    /// moment.
    FileLocation ResolveAliasFile(
        bool resolveChains, bool& targetIsFolder, bool& wasAliased, short& result ) const;

    /// The path that system calls take: absolute, in the file system's bytes, without slashes
    /// at its end unless it is the root. Throws FullPathFailed with code 0 for the empty location
    /// and when the path and its terminating zero do not fit: into `size` bytes, or into
    /// kPathBufferSize.
    void POSIXPath( unsigned char* buffer, unsigned size ) const;
    std::string POSIXPath() const;

    /// Whether both are empty, or both have the same path, byte by byte. Two ways to one item are
    /// different locations. Throws FullPathFailed.
    bool Equal( FileLocation const& other ) const;

    /// Whether the path is "/". Throws FullPathFailed.
    bool IsRoot() const;

    /// What follows the last "/" of the path. Throws FullPathFailed, IllegalFileNameLength for the
    /// root and for more than 255 units, and CFStringCreateError for a name that is no UTF-8.
    FileName Name() const;

    /// One level up, by the text of the URL alone: "/a/.." leads to "/a/../..". Throw
    /// RootHasNoParent with code 0 for the root, and FullPathFailed.
    AutoCFURL ParentURL() const;
    FileLocation Parent() const;

    /// A reference to that folder. Throws CFURLGetFSRefFailed as well, when it does not exist.
    FSRef ParentRef() const;

    /// The item `name` beside this one. Throws what Parent and Set throw.
    FileLocation Sibling( FileName const& name ) const;

  private:
    AutoCFURL mURL;
    mutable std::string mPOSIXPath; // a cache of the path; empty until there is one
};

} // namespace MacintoshPlatform
