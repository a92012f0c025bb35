#include "files/mac/TreeOperations.h"

#include "files/FileErrors.h"
#include "files/mac/LocatedItem.h"
#include "files/mac/OperationErrors.h"
#include "files/mac/Replacement.h"
#include "files/mac/TreeCopy.h"
#include "files/mac/TreeDeletion.h"
#include "files/mac/TreeWalk.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace MacintoshPlatform
{

namespace
{

/// Whether `item` lies in `folder` or below it; asked of the file system, from the item upward.
/// Answers 0 and EINVAL for no and yes, or another errno value.
int RefuseDescendant( ItemPlace const& item, struct stat const& folder )
{
    std::string up = ".";
    if ( item.folder == AT_FDCWD )
    {
        up.insert( 0, item.path, 0, item.path.rfind( '/' ) + 1 );
    }
    struct stat below = {};
    for ( ;; up += "/.." )
    {
        struct stat status;
        if ( fstatat( item.folder, up.c_str(), &status, 0 ) != 0 )
        {
            return errno;
        }
        if ( IsSameItem( status, folder ) )
        {
            return EINVAL;
        }
        if ( IsSameItem( status, below ) )
        {
            return 0;
        }
        below = status;
    }
}

/// Where others may rename items, one of their folders may stand in the place of the new one by
/// now, and they would read what is copied into it: makes sure that it is empty and for its owner
/// only, who is this user where the file system has owners. Answers 0 or an errno value.
int SecureFolder( int folder )
{
    struct stat status;
    if ( fstat( folder, &status ) != 0 )
    {
        return errno;
    }
    uid_t const user = geteuid();
    if ( status.st_uid != user && fchown( folder, user, static_cast<gid_t>( -1 ) ) != 0 &&
         user != 0 )
    {
        return errno;
    }
    if ( ( status.st_mode & 0777 ) != S_IRWXU && fchmod( folder, S_IRWXU ) != 0 && errno != EPERM )
    {
        return errno;
    }
    FolderStream content( OpenFolderAt( folder, "." ) );
    if ( !content.IsOpen() )
    {
        return errno;
    }
    return content.Next() != nullptr ? EBUSY : errno;
}

/// Deletes the content of a copy that still has its temporary name; what cannot be deleted stays.
void DeleteUnfinished( ItemPlace const& place, int root )
{
    struct stat named;
    struct stat opened;
    if ( fstatat( place.folder, place.name, &named, AT_SYMLINK_NOFOLLOW ) != 0 ||
         fstat( root, &opened ) != 0 || !IsSameItem( named, opened ) )
    {
        return;
    }
    try
    {
        DeleteTree( { root, ".", place.path }, TreeDeletion::OwnContent );
    }
    catch ( ... )
    {
    }
}

void CopyFolder( TreeWalk& walk, ItemPlace const& from, ItemPlace const& to )
{
    auto const requireOfCopy = [&]( int error )
    {
        if ( error != 0 )
        {
            ThrowFileError<FileCopyFailed>( error, to.path, from.path );
        }
    };
    if ( int const error = RefuseDescendant( to, walk.Status() ); error != 0 )
    {
        bool const isOfSource = error == EINVAL;
        ThrowFileError<FileCopyFailed>(
            error, isOfSource ? from.path : to.path, isOfSource ? to.path : from.path );
    }
    Replacement copy( to );
    ItemPlace const place = copy.Place();
    requireOfCopy( mkdirat( place.folder, place.name, S_IRWXU ) == 0 ? 0 : errno );
    Descriptor const root = OpenFolderAt( place.folder, place.name );
    requireOfCopy( root.IsOpen() ? 0 : errno );
    requireOfCopy( SecureFolder( root.Number() ) );
    try
    {
        TreeCopy( walk, root.Number() ).Run();
        copy.PublishAsNew( from.path );
    }
    catch ( ... )
    {
        DeleteUnfinished( place, root.Number() );
        throw;
    }
}

void CopySingleItem( ItemPlace const& from, ItemPlace const& to )
{
    Replacement copy( to );
    CopyItem( from, copy.Place() );
    copy.PublishAsNew( from.path );
}

/// `error` is of a call about `item`; `other` is the other end.
void Require( int error, LocatedItem const& item, LocatedItem const& other )
{
    if ( error != 0 )
    {
        ThrowFileError<FileCopyFailed>( error, item.Path(), other.Path() );
    }
}

/// Opens the folder of what is to be deleted; answers 0 or an errno value.
int OpenForDeletion( LocatedItem& item )
{
    if ( int const error = item.OpenFolder(); error != 0 )
    {
        return error;
    }
    struct stat status;
    struct stat root;
    int const error = item.ReadStatus( status );
    if ( error == 0 && stat( "/", &root ) == 0 && IsSameItem( status, root ) )
    {
        throw RootHasNoParent( ConstData( item.Path() ), 0 );
    }
    return error;
}

} // namespace

bool TreeVisitor::FolderBegins( ItemPlace const&, struct stat const& )
{
    return true;
}

void TreeVisitor::FolderEnds( ItemPlace const&, struct stat const& ) {}

void WalkTree( FileLocation const& location, TreeVisitor& visitor )
{
    std::string const path = location.RequireNonEmpty().POSIXPath();
    TreeWalk walk( { AT_FDCWD, path.c_str(), path } );
    for ( bool isThere = false;; isThere = true )
    {
        switch ( walk.Next() )
        {
        case TreeWalk::Step::Folder:
            if ( visitor.FolderBegins( walk.Item(), walk.Status() ) && !walk.Enter() )
            {
                visitor.FolderEnds( walk.Item(), walk.Status() );
            }
            break;
        case TreeWalk::Step::Item:
            visitor.VisitItem( walk.Item(), walk.Status() );
            break;
        case TreeWalk::Step::FolderEnds:
            visitor.FolderEnds( walk.Item(), walk.Status() );
            break;
        case TreeWalk::Step::Done:
            if ( !isThere )
            {
                walk.Fail( ENOENT );
            }
            return;
        }
    }
}

void ForceDeleteRecursive( FileLocation const& location )
{
    LocatedItem item( location );
    int const error = OpenForDeletion( item );
    if ( error == ENOENT || error == ENOTDIR )
    {
        return;
    }
    // The system would call "x/.." a folder with content, and that is not x.
    if ( error != 0 || item.Path().ends_with( "/.." ) )
    {
        ThrowFileError<DirectoryDeleteFailed>( error != 0 ? error : EINVAL, item.Path() );
    }
    DeleteTree( item.Place(), TreeDeletion::Whole );
}

void ForceDeleteContents( FileLocation const& location )
{
    LocatedItem item( location );
    if ( int const error = OpenForDeletion( item ); error != 0 )
    {
        ThrowFileError<DirectoryDeleteFailed>( error, item.Path() );
    }
    DeleteTree( item.Place(), TreeDeletion::ContentOnly );
}

void CopyTree( FileLocation const& from, FileLocation const& to )
{
    LocatedItem source( from );
    LocatedItem target( to );
    Require( source.OpenFolder(), source, target );
    Require( target.OpenFolder(), target, source );
    struct stat status;
    int const error = target.ReadStatus( status );
    Require( error == ENOENT ? 0 : error == 0 ? EEXIST : error, target, source );
    TreeWalk walk( source.Place(), target.Path() );
    for ( ;; )
    {
        TreeWalk::Step const step = walk.Next();
        if ( step == TreeWalk::Step::Done )
        {
            walk.Fail( ENOENT );
        }
        if ( step == TreeWalk::Step::Item )
        {
            return CopySingleItem( source.Place(), target.Place() );
        }
        if ( walk.Enter() )
        {
            return CopyFolder( walk, source.Place(), target.Place() );
        }
    }
}

} // namespace MacintoshPlatform
