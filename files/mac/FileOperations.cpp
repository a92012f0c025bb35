#include "files/mac/FileOperations.h"

#include "files/FileErrors.h"
#include "files/mac/CopyItem.h"
#include "files/mac/Descriptor.h"
#include "files/mac/LocatedItem.h"
#include "files/mac/OperationErrors.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace MacintoshPlatform
{

namespace
{

bool IsFolder( int folder, char const* name, int flags )
{
    struct stat status;
    return fstatat( folder, name, &status, flags ) == 0 && S_ISDIR( status.st_mode );
}

bool IsFolder( ItemPlace const& place )
{
    return IsFolder( place.folder, place.name, AT_SYMLINK_NOFOLLOW );
}

/// Answers 0, also when the folder is there already, or an errno value.
int MakeParent( char const* path )
{
    if ( mkdir( path, 0777 ) == 0 )
    {
        return 0;
    }
    int const error = errno; // EROFS and others come before EEXIST on some systems
    return IsFolder( AT_FDCWD, path, 0 ) ? 0 : error;
}

template<class Failed>
void MakeParents( std::string const& path )
{
    for ( std::size_t slash = path.find( '/', 1 ); slash != path.npos;
          slash = path.find( '/', slash + 1 ) )
    {
        std::string const parent = path.substr( 0, slash );
        if ( int const error = MakeParent( parent.c_str() ); error != 0 )
        {
            ThrowFileError<Failed>( error, parent, path );
        }
    }
}

template<class Failed>
void OpenFolder( LocatedItem& item, bool makesParents )
{
    int error = item.OpenFolder();
    if ( error == ENOENT && makesParents )
    {
        MakeParents<Failed>( item.Path() );
        error = item.OpenFolder();
    }
    if ( error != 0 )
    {
        ThrowFileError<Failed>( error, item.Path() );
    }
}

/// Answers 0 or an errno value; ENOTEMPTY for a folder with content.
int RemoveFolder( ItemPlace const& place )
{
    if ( unlinkat( place.folder, place.name, AT_REMOVEDIR ) == 0 )
    {
        return 0;
    }
    return errno == EEXIST ? ENOTEMPTY : errno;
}

} // namespace

void CreateFile( FileLocation const& location, FileCreatingInfo const& info )
{
    LocatedItem item( location );
    OpenFolder<FileCreateFailed>( item, info.makesParents );
    ItemPlace const place = item.Place();
    Descriptor const file = OpenAt(
        place.folder, place.name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, info.permissions );
    if ( !file.IsOpen() )
    {
        ThrowFileError<FileCreateFailed>( errno, item.Path() );
    }
}

void CreateDirectory( FileLocation const& location, DirectoryCreatingInfo const& info )
{
    LocatedItem item( location );
    OpenFolder<DirectoryCreateFailed>( item, info.makesParents );
    ItemPlace const place = item.Place();
    if ( mkdirat( place.folder, place.name, info.permissions ) != 0 )
    {
        ThrowFileError<DirectoryCreateFailed>( errno, item.Path() );
    }
}

void ForceDirectoryExistence( FileLocation const& location, DirectoryCreatingInfo const& info )
{
    if ( location.URL() != nullptr && location.IsRoot() )
    {
        return;
    }
    LocatedItem item( location );
    OpenFolder<DirectoryCreateFailed>( item, true );
    ItemPlace const place = item.Place();
    if ( mkdirat( place.folder, place.name, info.permissions ) == 0 )
    {
        return;
    }
    int const error = errno;
    if ( !IsFolder( place.folder, place.name, 0 ) )
    {
        ThrowFileError<DirectoryCreateFailed>( error, item.Path() );
    }
}

void DeleteFile( FileLocation const& location )
{
    LocatedItem item( location );
    OpenFolder<FileDeleteFailed>( item, false );
    ItemPlace const place = item.Place();
    if ( unlinkat( place.folder, place.name, 0 ) == 0 )
    {
        return;
    }
    int const error = errno;
    if ( IsFolder( place ) )
    {
        throw FileItemError( ConstData( item.Path() ), FileErrorCode( EISDIR, item.Path() ) );
    }
    ThrowFileError<FileDeleteFailed>( error, item.Path() );
}

void DeleteDirectory( FileLocation const& location )
{
    LocatedItem item( location );
    OpenFolder<DirectoryDeleteFailed>( item, false );
    if ( int const error = RemoveFolder( item.Place() ); error != 0 )
    {
        ThrowFileError<DirectoryDeleteFailed>( error, item.Path() );
    }
}

void ForceNonexistence( FileLocation const& location )
{
    LocatedItem item( location );
    int error = item.OpenFolder();
    if ( error == ENOTDIR )
    {
        return;
    }
    if ( error == 0 )
    {
        ItemPlace const place = item.Place();
        error = unlinkat( place.folder, place.name, 0 ) == 0 ? 0 : errno;
        if ( error != 0 && IsFolder( place ) )
        {
            error = RemoveFolder( place );
        }
    }
    if ( error != 0 && error != ENOENT )
    {
        ThrowFileError<FileDeleteFailed>( error, item.Path() );
    }
}

} // namespace MacintoshPlatform
