#include "files/mac/Replacement.h"

#include "files/FileErrors.h"
#include "files/mac/OperationErrors.h"
#include "files/mac/UniqueName.h"

#include <cerrno>
#include <fcntl.h>
#include <string_view>
#include <sys/stdio.h>
#include <unistd.h>

namespace MacintoshPlatform
{

namespace
{

/// A new temporary name in the folder of `name`, which is a path where there is no descriptor.
std::string MakeTemporaryName( std::string_view name )
{
    std::size_t const slash = name.rfind( '/' );
    std::size_t const start = slash == name.npos ? 0 : slash + 1;
    return std::string( name.substr( 0, start ) ) + MakeUniqueName( ".unfinished-" );
}

int RenameInTwoSteps( ItemPlace const& from, ItemPlace const& to )
{
    struct stat status;
    if ( fstatat( from.folder, from.name, &status, AT_SYMLINK_NOFOLLOW ) != 0 )
    {
        return errno;
    }
    if ( !S_ISDIR( status.st_mode ) )
    {
        if ( linkat( from.folder, from.name, to.folder, to.name, 0 ) != 0 )
        {
            return errno;
        }
        return unlinkat( from.folder, from.name, 0 ) == 0 ? 0 : errno;
    }
    if ( mkdirat( to.folder, to.name, 0700 ) != 0 )
    {
        return errno;
    }
    if ( renameat( from.folder, from.name, to.folder, to.name ) == 0 )
    {
        return 0;
    }
    int const error = errno;
    unlinkat( to.folder, to.name, AT_REMOVEDIR );
    return error;
}

} // namespace

int RenameExclusively( ItemPlace const& from, ItemPlace const& to )
{
    if ( renameatx_np( from.folder, from.name, to.folder, to.name, RENAME_EXCL ) == 0 )
    {
        return 0;
    }
    return errno == ENOTSUP ? RenameInTwoSteps( from, to ) : errno;
}

int SyncFolderOf( ItemPlace const& place )
{
    if ( place.folder == AT_FDCWD || fsync( place.folder ) == 0 || errno == EINVAL )
    {
        return 0;
    }
    return errno;
}

Replacement::Replacement( ItemPlace const& target )
    : mTarget( target ), mName( MakeTemporaryName( target.name ) )
{
}

Replacement::~Replacement()
{
    if ( !mIsPublished && unlinkat( mTarget.folder, mName.c_str(), 0 ) != 0 )
    {
        unlinkat( mTarget.folder, mName.c_str(), AT_REMOVEDIR );
    }
}

void Replacement::PublishAsNew( std::string const& source )
{
    Finish( RenameExclusively( Place(), mTarget ), source );
}

void Replacement::PublishReplacing( std::string const& source )
{
    int const failed = renameat( mTarget.folder, mName.c_str(), mTarget.folder, mTarget.name );
    int const error = failed != 0 ? errno : 0;
    Finish( error == EISDIR ? EEXIST : error, source );
}

void Replacement::Finish( int error, std::string const& source )
{
    mIsPublished = error == 0;
    int const result = mIsPublished ? SyncFolderOf( mTarget ) : error;
    if ( result != 0 )
    {
        ThrowFileError<FileCopyFailed>( result, mTarget.path, source );
    }
}

} // namespace MacintoshPlatform
