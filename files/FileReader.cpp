#include "files/FileReader.h"

#include "files/FileErrors.h"
#include "files/mac/OperationErrors.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr std::uint64_t kLastPosition = std::numeric_limits<off_t>::max();

void RequireRegularFile( int result, struct stat const& status, std::string const& path )
{
    if ( result != 0 )
    {
        MacintoshPlatform::ThrowFileError<FileNotOpenError>( errno, path );
    }
    if ( !S_ISREG( status.st_mode ) )
    {
        throw FileItemError( ConstData( path ), MacintoshPlatform::FileErrorCode( EISDIR, path ) );
    }
}

} // namespace

FileReader::FileReader( FileLocation const& location )
    : mPath( location.RequireNonEmpty().Platform().POSIXPath() ),
      mOffset( 0 ),
      mLength( kLastPosition ),
      mIsRange( false )
{
    Open();
}

FileReader::FileReader( FileLocation const& location, std::uint64_t offset, std::uint64_t length )
    : mPath( location.RequireNonEmpty().Platform().POSIXPath() ),
      mOffset( offset ),
      mLength( length ),
      mIsRange( true )
{
    Open();
}

// Opening alone can make a device act, and fails for a socket, so that the item is looked at first;
// and again afterwards, because another one may have taken its place.
void FileReader::Open()
{
    struct stat status;
    RequireRegularFile( stat( mPath.c_str(), &status ), status, mPath );
    mFile = MacintoshPlatform::OpenPath( mPath.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY );
    if ( !mFile.IsOpen() )
    {
        MacintoshPlatform::ThrowFileError<FileNotOpenError>( errno, mPath );
    }
    RequireRegularFile( fstat( mFile.Number(), &status ), status, mPath );
}

void FileReader::Reset()
{
    mRead = 0;
    mMetEnd = false;
}

bool FileReader::Finished() const
{
    return mMetEnd || mRead == mLength;
}

DataReader& FileReader::operator>>( Buffer& to )
{
    std::uint64_t const wanted = std::min<std::uint64_t>( to.Room().Length(), mLength - mRead );
    if ( wanted == 0 || mMetEnd )
    {
        return *this;
    }
    // No file has bytes behind the last position, but a range may ask for them.
    std::uint64_t const position =
        mOffset <= kLastPosition - mRead ? mOffset + mRead : kLastPosition;
    ssize_t count;
    do
    {
        count = pread( mFile.Number(), to.Next(),
            static_cast<std::size_t>( std::min( wanted, kLastPosition - position ) ),
            static_cast<off_t>( position ) );
    } while ( count < 0 && errno == EINTR );
    if ( count < 0 )
    {
        MacintoshPlatform::ThrowFileError<FileIOError>( errno, mPath );
    }
    if ( count == 0 && mIsRange )
    {
        throw FileReadingLoopEndOfFileError();
    }
    mMetEnd = count == 0;
    mRead += static_cast<std::uint64_t>( count );
    to.Advance( static_cast<std::uint32_t>( count ) );
    return *this;
}
