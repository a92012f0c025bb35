#include "files/mac/CopyItem.h"

#include "files/FileErrors.h"
#include "files/mac/Descriptor.h"
#include "files/mac/OperationErrors.h"

#include <array>
#include <cerrno>
#include <copyfile.h>
#include <fcntl.h>
#include <limits.h>
#include <unistd.h>

namespace MacintoshPlatform
{

namespace
{

/// Deletes what was made of a copy unless it was finished.
class UnfinishedItem
{
  public:
    explicit UnfinishedItem( ItemPlace const& place ) : mPlace( place ) {}

    UnfinishedItem( UnfinishedItem const& ) = delete;
    UnfinishedItem& operator=( UnfinishedItem const& ) = delete;

    ~UnfinishedItem()
    {
        if ( !mIsFinished )
        {
            unlinkat( mPlace.folder, mPlace.name, 0 );
        }
    }

    void Finish() { mIsFinished = true; }

  private:
    ItemPlace const& mPlace;
    bool mIsFinished = false;
};

[[noreturn]] void RefuseItem( ItemPlace const& from, ItemPlace const& to )
{
    throw FileItemError(
        ConstData( from.path ), ConstData( to.path ), FileErrorCode( EINVAL, from.path ) );
}

/// `result` is what a call about `item` answered; `other` is the other end of the copy.
void Require( int result, ItemPlace const& item, ItemPlace const& other )
{
    if ( result < 0 )
    {
        ThrowFileError<FileCopyFailed>( errno, item.path, other.path );
    }
}

Descriptor OpenSource( ItemPlace const& from, ItemPlace const& to, struct stat& status )
{
    // Without waiting, should another process have put a FIFO there meanwhile.
    Descriptor source = OpenAt( from.folder, from.name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK );
    Require( source.Number(), from, to );
    Require( fstat( source.Number(), &status ), from, to );
    if ( !S_ISREG( status.st_mode ) )
    {
        RefuseItem( from, to );
    }
    return source;
}

void CopyContent( int source, int copy, ItemPlace const& from, ItemPlace const& to )
{
    if ( fcopyfile( source, copy, nullptr, COPYFILE_DATA ) == 0 )
    {
        return;
    }
    bool const isForWantOfSpace = errno == ENOSPC || errno == EDQUOT || errno == EFBIG;
    Require( -1, isForWantOfSpace ? to : from, isForWantOfSpace ? from : to );
}

struct stat CopyRegularFile( ItemPlace const& from, ItemPlace const& to )
{
    struct stat status;
    Descriptor const source = OpenSource( from, to, status );
    Descriptor const copy =
        OpenAt( to.folder, to.name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, S_IRUSR | S_IWUSR );
    Require( copy.Number(), to, from );
    UnfinishedItem item( to );
    CopyContent( source.Number(), copy.Number(), from, to );
    // Who wrote into it meanwhile has taken its set-id bits, and its owner may have closed it.
    struct stat now;
    Require( fstat( source.Number(), &now ), from, to );
    now.st_atim = status.st_atim;
    now.st_mtim = status.st_mtim;
    if ( int const error = CopyPermissionsAndTimes( now, copy.Number() ); error != 0 )
    {
        ThrowFileError<FileCopyFailed>( error, to.path, from.path );
    }
    Require( fsync( copy.Number() ), to, from );
    item.Finish();
    return status;
}

void CopyLink( ItemPlace const& from, ItemPlace const& to, struct stat const& status )
{
    std::array<char, PATH_MAX> text;
    ssize_t const length = readlinkat( from.folder, from.name, text.data(), text.size() );
    Require( static_cast<int>( length ), from, to );
    if ( static_cast<std::size_t>( length ) == text.size() )
    {
        ThrowFileError<FileCopyFailed>( ENAMETOOLONG, from.path, to.path );
    }
    text[static_cast<std::size_t>( length )] = '\0';
    Require( symlinkat( text.data(), to.folder, to.name ), to, from );
    UnfinishedItem item( to );
    std::array<timespec, 2> const times{ status.st_atim, status.st_mtim };
    Require( utimensat( to.folder, to.name, times.data(), AT_SYMLINK_NOFOLLOW ), to, from );
    item.Finish();
}

/// Another group gets no more than everybody does.
mode_t PermissionsOfCopy( struct stat const& source, struct stat const& copy )
{
    bool const hasSameGroup = copy.st_gid == source.st_gid;
    bool const hasSameOwner = hasSameGroup && copy.st_uid == source.st_uid;
    mode_t const ofGroup = hasSameGroup ? S_IRWXG : ( source.st_mode & S_IRWXO ) << 3;
    return source.st_mode & ( hasSameOwner ? 07777 : S_IRWXU | ofGroup | S_IRWXO );
}

} // namespace

struct stat CopyItem( ItemPlace const& from, ItemPlace const& to )
{
    struct stat status;
    Require( fstatat( from.folder, from.name, &status, AT_SYMLINK_NOFOLLOW ), from, to );
    if ( S_ISREG( status.st_mode ) )
    {
        return CopyRegularFile( from, to );
    }
    if ( !S_ISLNK( status.st_mode ) )
    {
        RefuseItem( from, to );
    }
    CopyLink( from, to, status );
    return status;
}

int CopyPermissionsAndTimes( struct stat const& status, int copy )
{
    // Who may not give files away, or to that user, is no worse off than with a copy of one's own.
    if ( fchown( copy, status.st_uid, status.st_gid ) != 0 &&
         fchown( copy, static_cast<uid_t>( -1 ), status.st_gid ) != 0 && errno != EPERM &&
         errno != EINVAL )
    {
        return errno;
    }
    struct stat made;
    if ( fstat( copy, &made ) != 0 )
    {
        return errno;
    }
    if ( fchmod( copy, PermissionsOfCopy( status, made ) ) != 0 )
    {
        return errno;
    }
    std::array<timespec, 2> const times{ status.st_atim, status.st_mtim };
    return futimens( copy, times.data() ) == 0 ? 0 : errno;
}

} // namespace MacintoshPlatform
