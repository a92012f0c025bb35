#include <copyfile.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

enum class Outcome
{
    complete,
    endOfFile,
    failed ///< errno says why
};

/// One copy, all of it by offsets. The kernel copies as long as it will; then we read and write.
class FileCopy
{
  public:
    FileCopy( int from, int to ) : mFrom( from ), mTo( to ) {}

    /// Answers 0 or -1 as fcopyfile does.
    int Run();

  private:
    Outcome CopyExtents( off_t size );
    Outcome CopyUntil( off_t end );
    Outcome ReadAndWrite( off_t end );
    bool Write( char const* bytes, std::size_t count );

    int const mFrom;
    int const mTo;
    off_t mDone = 0; ///< everything before it is in the copy
    bool mKernelCopies = true;
};

template<class Call>
auto Uninterrupted( Call const& call )
{
    auto result = call();
    while ( result < 0 && errno == EINTR )
    {
        result = call();
    }
    return result;
}

constexpr off_t kUnlimited = std::numeric_limits<off_t>::max();

int FileCopy::Run()
{
    if ( ioctl( mTo, FICLONE, mFrom ) == 0 )
    {
        return 0;
    }
    struct stat status;
    if ( fstat( mFrom, &status ) != 0 )
    {
        return -1;
    }
    // Files that the kernel makes up while they are read say that they have no size.
    off_t const end = status.st_size;
    Outcome const outcome = end == 0 ? ReadAndWrite( kUnlimited ) : CopyExtents( end );
    // What seemed to be a last hole may be missing since the file was cut.
    if ( outcome == Outcome::failed || fstat( mFrom, &status ) != 0 )
    {
        return -1;
    }
    off_t const size =
        outcome == Outcome::complete ? std::min( end, std::max( mDone, status.st_size ) ) : mDone;
    return Uninterrupted( [this, size] { return ftruncate( mTo, size ); } );
}

Outcome FileCopy::CopyExtents( off_t size )
{
    while ( mDone < size )
    {
        off_t const data = lseek( mFrom, mDone, SEEK_DATA );
        if ( data < 0 && errno == ENXIO )
        {
            return Outcome::complete; // only a hole is left
        }
        // Where the file system knows of no holes, all is data.
        mDone = data < 0 ? mDone : data;
        off_t const hole = data < 0 ? -1 : lseek( mFrom, data, SEEK_HOLE );
        Outcome const outcome = CopyUntil( hole < 0 ? size : std::min( hole, size ) );
        if ( outcome != Outcome::complete )
        {
            return outcome;
        }
    }
    return Outcome::complete;
}

Outcome FileCopy::CopyUntil( off_t end )
{
    constexpr off_t kMost = off_t( 1 ) << 30;
    while ( mKernelCopies && mDone < end )
    {
        off_t fromOffset = mDone;
        off_t toOffset = mDone;
        auto const count = static_cast<std::size_t>( std::min( end - mDone, kMost ) );
        ssize_t const copied = Uninterrupted(
            [&] { return copy_file_range( mFrom, &fromOffset, mTo, &toOffset, count, 0 ); } );
        // It refuses some pairs of files, and answers 0 for some that do have content. Should it be
        // something worse, then writing fails as well and says so.
        mKernelCopies = copied > 0;
        mDone += std::max<ssize_t>( copied, 0 );
    }
    return ReadAndWrite( end );
}

Outcome FileCopy::ReadAndWrite( off_t end )
{
    std::array<char, 65536> buffer;
    while ( mDone < end )
    {
        auto const most = static_cast<std::size_t>(
            std::min( end - mDone, static_cast<off_t>( buffer.size() ) ) );
        ssize_t const count =
            Uninterrupted( [&] { return pread( mFrom, buffer.data(), most, mDone ); } );
        if ( count <= 0 )
        {
            return count == 0 ? Outcome::endOfFile : Outcome::failed;
        }
        if ( !Write( buffer.data(), static_cast<std::size_t>( count ) ) )
        {
            return Outcome::failed;
        }
    }
    return Outcome::complete;
}

bool FileCopy::Write( char const* bytes, std::size_t count )
{
    while ( count > 0 )
    {
        ssize_t const written = Uninterrupted( [&] { return pwrite( mTo, bytes, count, mDone ); } );
        if ( written <= 0 )
        {
            errno = written == 0 ? EIO : errno;
            return false;
        }
        bytes += written;
        count -= static_cast<std::size_t>( written );
        mDone += written;
    }
    return true;
}

} // namespace

int fcopyfile( int from, int to, copyfile_state_t state, copyfile_flags_t flags )
{
    if ( state != nullptr || flags != COPYFILE_DATA )
    {
        errno = EINVAL;
        return -1;
    }
    return FileCopy( from, to ).Run();
}
