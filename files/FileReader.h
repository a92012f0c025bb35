#pragma once

#include "files/FileLocation.h"
#include "files/mac/Descriptor.h"
#include "streams/DataReader.h"

#include <cstdint>
#include <string>

/// Reads a regular file, or a range of it, straight into the caller's buffers: it holds none.
///
/// A whole file is read until its end really comes, whatever size it reports: files that grow are
/// read as far as they go at that moment, and those of /proc although they claim to be empty. A
/// range promises its bytes: FileReadingLoopEndOfFileError is thrown when the file ends before the
/// range is complete. The file stays open, and is the same one even if its name is given to another
/// meanwhile.
class FileReader : public DataReader
{
  public:
    using DataReader::operator>>;

    /// Opens the file, following a symbolic link. Nothing is waited for: FileItemError is thrown
    /// for whatever is no regular file, such as a folder, a FIFO or a device. Throws
    /// EmptyFileLocationError, FullPathFailed, and the errors of ThrowFileError with
    /// FileNotOpenError.
    explicit FileReader( FileLocation const& location );

    /// The same for `length` bytes from `offset` on. Where the file ends is found out by reading.
    FileReader( FileLocation const& location, std::uint64_t offset, std::uint64_t length );

    /// Back to the beginning of the file or range; a whole file may have become longer or shorter.
    void Reset() override;

    /// True once the range is complete, or reading met the end of a whole file: that is a reading
    /// that delivers nothing although there is room.
    bool Finished() const override;

    /// Reads once. Throws FileReadingLoopEndOfFileError as said above, and when reading fails the
    /// errors of ThrowFileError with FileIOError; the reader then stands where it stood.
    DataReader& operator>>( Buffer& to ) override;

  private:
    void Open();

    std::string mPath;
    MacintoshPlatform::Descriptor mFile;
    std::uint64_t mOffset;
    std::uint64_t mLength;
    std::uint64_t mRead = 0; // of the length
    bool mIsRange;
    bool mMetEnd = false;
};
