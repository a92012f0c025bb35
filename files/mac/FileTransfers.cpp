// Those of the operations that concern two items: copies and moves.
#include "files/mac/FileOperations.h"

#include "files/FileErrors.h"
#include "files/mac/CopyItem.h"
#include "files/mac/Descriptor.h"
#include "files/mac/FolderChain.h"
#include "files/mac/LocatedItem.h"
#include "files/mac/OperationErrors.h"
#include "files/mac/Replacement.h"
#include "files/mac/TreeOperations.h"

#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace MacintoshPlatform
{

namespace
{

bool IsFolder( std::optional<struct stat> const& status )
{
    return status && S_ISDIR( status->st_mode );
}

/// By the time of any change, which nobody can set back.
bool IsUnchanged( struct stat const& before, struct stat const& now )
{
    return IsSameItem( before, now ) && before.st_size == now.st_size &&
           before.st_ctim.tv_sec == now.st_ctim.tv_sec &&
           before.st_ctim.tv_nsec == now.st_ctim.tv_nsec;
}

/// Both ends of a copy or move, which throws `Failed`, with their folders open.
template<class Failed>
class Transfer
{
  public:
    Transfer( FileLocation const& from, FileLocation const& to ) : mFrom( from ), mTo( to )
    {
        Require( mFrom.OpenFolder(), mFrom, mTo );
        Require( mTo.OpenFolder(), mTo, mFrom );
    }

    LocatedItem const& From() const { return mFrom; }

    LocatedItem const& To() const { return mTo; }

    /// `error` is of a call about the source, or about the target.
    void RequireOfSource( int error ) const { Require( error, mFrom, mTo ); }

    void RequireOfTarget( int error ) const { Require( error, mTo, mFrom ); }

    struct stat SourceStatus() const
    {
        struct stat status;
        RequireOfSource( mFrom.ReadStatus( status ) );
        return status;
    }

    /// None when nothing is there.
    std::optional<struct stat> TargetStatus() const
    {
        struct stat status;
        int const error = mTo.ReadStatus( status );
        RequireOfTarget( error == ENOENT ? 0 : error );
        return error == 0 ? std::optional( status ) : std::nullopt;
    }

  private:
    static void Require( int error, LocatedItem const& item, LocatedItem const& other )
    {
        if ( error != 0 )
        {
            ThrowFileError<Failed>( error, item.Path(), other.Path() );
        }
    }

    LocatedItem mFrom;
    LocatedItem mTo;
};

enum class Publishing
{
    asNew,
    replacing
};

/// Answers what was copied.
template<class Failed>
struct stat Copy( Transfer<Failed> const& transfer, Publishing publishing )
{
    ItemPlace const source = transfer.From().Place();
    Replacement copy( transfer.To().Place() );
    struct stat const copied = CopyItem( source, copy.Place() );
    if ( publishing == Publishing::asNew )
    {
        copy.PublishAsNew( source.path );
    }
    else
    {
        copy.PublishReplacing( source.path );
    }
    return copied;
}

using Move = Transfer<FileMoveFailed>;

void RequireUnchanged( Move const& move, struct stat const& before )
{
    move.RequireOfSource( IsUnchanged( before, move.SourceStatus() ) ? 0 : EBUSY );
}

void MoveByCopy( Move const& move, Publishing publishing )
{
    RequireUnchanged( move, Copy( move, publishing ) );
    ItemPlace const source = move.From().Place();
    if ( unlinkat( source.folder, source.name, 0 ) != 0 )
    {
        ThrowFileError<FileDeleteFailed>( errno, source.path, move.To().Path() );
    }
}

/// Has the data of a file on the disk, as far as it may be read.
void SyncSource( Move const& move )
{
    ItemPlace const source = move.From().Place();
    Descriptor const file =
        OpenAt( source.folder, source.name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK );
    bool const isDone = file.IsOpen() ? fsync( file.Number() ) == 0 : errno == EACCES;
    move.RequireOfSource( isDone ? 0 : errno );
}

void Replace( Move const& move )
{
    ItemPlace const from = move.From().Place();
    ItemPlace const to = move.To().Place();
    if ( renameat( from.folder, from.name, to.folder, to.name ) == 0 )
    {
        return;
    }
    switch ( errno )
    {
    case EXDEV:
        MoveByCopy( move, Publishing::replacing );
        break;
    case EISDIR:
        move.RequireOfTarget( EEXIST );
        break;
    default:
        move.RequireOfSource( errno );
    }
}

} // namespace

void CopyFile( FileLocation const& from, FileLocation const& to )
{
    Transfer<FileCopyFailed> const copy( from, to );
    copy.RequireOfTarget( copy.TargetStatus() ? EEXIST : 0 );
    Copy( copy, Publishing::asNew );
}

void ForceCopyFile( FileLocation const& from, FileLocation const& to )
{
    Transfer<FileCopyFailed> const copy( from, to );
    struct stat const source = copy.SourceStatus();
    std::optional<struct stat> const target = copy.TargetStatus();
    copy.RequireOfTarget( IsFolder( target ) ? EEXIST : 0 );
    if ( !target || !IsSameItem( source, *target ) )
    {
        Copy( copy, Publishing::replacing );
    }
}

void MoveFile( FileLocation const& from, FileLocation const& to )
{
    Move const move( from, to );
    int const error = RenameExclusively( move.From().Place(), move.To().Place() );
    if ( error != EXDEV )
    {
        error == EEXIST ? move.RequireOfTarget( error ) : move.RequireOfSource( error );
        return;
    }
    move.RequireOfTarget( move.TargetStatus() ? EEXIST : 0 );
    struct stat const source = move.SourceStatus();
    if ( S_ISDIR( source.st_mode ) )
    {
        CopyTree( from, to );
        RequireUnchanged( move, source );
        ForceDeleteRecursive( from );
    }
    else
    {
        MoveByCopy( move, Publishing::asNew );
    }
}

void ForceMoveFile( FileLocation const& from, FileLocation const& to )
{
    Move const move( from, to );
    struct stat const source = move.SourceStatus();
    std::optional<struct stat> const target = move.TargetStatus();
    bool const isSame = target && IsSameItem( source, *target );
    if ( S_ISDIR( source.st_mode ) && !isSame )
    {
        MoveFile( from, to );
        return;
    }
    move.RequireOfTarget( IsFolder( target ) && !isSame ? EEXIST : 0 );
    if ( S_ISREG( source.st_mode ) )
    {
        SyncSource( move );
    }
    Replace( move );
}

} // namespace MacintoshPlatform
