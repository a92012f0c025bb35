#pragma once

#include "files/mac/Descriptor.h"

#include <dirent.h>

#include <memory>

namespace MacintoshPlatform
{

/// Reads the names in an open folder one after another, in the order in which the file system
/// gives them, in constant memory. "." and ".." are left out.
class FolderStream
{
  public:
    /// Is not open. Such a stream can only be assigned to.
    FolderStream() = default;

    /// Adopts a descriptor of a folder that was opened for reading. When it is none, or is no
    /// folder, IsOpen is false and errno says why.
    explicit FolderStream( Descriptor folder );

    bool IsOpen() const { return mStream != nullptr; }

    /// The folder's descriptor; it stays the stream's.
    int Number() const { return dirfd( mStream.get() ); }

    /// The next entry, which lives until the next call or the stream's end; null after the last
    /// one, with errno 0, and when reading fails, with errno set. `d_type` may be DT_UNKNOWN.
    dirent const* Next();

    /// Where the next call of Next begins. It holds for other streams of the same folder as well.
    long Position() const { return telldir( mStream.get() ); }

    void SetPosition( long position ) { seekdir( mStream.get(), position ); }

  private:
    struct Close
    {
        void operator()( DIR* stream ) const noexcept { closedir( stream ); }
    };

    std::unique_ptr<DIR, Close> mStream;
};

} // namespace MacintoshPlatform
