#include "files/mac/FileLocation.h"

#include "files/FileErrors.h"
#include "files/mac/FileErrors.h"
#include "files/mac/MacFileInfo.h"
#include "platform/CFErrors.h"
#include "platform/CFStrings.h"
#include "platform/CFURLs.h"
#include "platform/FSRefs.h"

#include <CoreServices/Aliases.h>
#include <CoreServices/MacErrors.h>

#include <cstring>
#include <string_view>
#include <sys/stat.h>

namespace MacintoshPlatform
{

namespace
{

constexpr unsigned kSymLinkBits = 0xA000;

[[noreturn]] void ThrowNotFound( FileLocation const& location )
{
    std::string path;
    try
    {
        path = location.POSIXPath();
    }
    catch ( FullPathFailed const& )
    {
        // The empty location and one with too long a path have no name to show.
    }
    throw FileNotFoundError( ConstData( path ), 0 );
}

FSRef RefOfExisting( FileLocation const& location )
{
    try
    {
        return MakeFSRef( location.URL() );
    }
    catch ( CFURLGetFSRefFailed const& )
    {
        ThrowNotFound( location );
    }
}

} // namespace

FileLocation::FileLocation( CFURLRef url ) : mURL( Duplicate( url ) ) {}

FileLocation::FileLocation( FSRef const& ref ) : mURL( MakeURL( ref ) ) {}

FileLocation::FileLocation( FileLocation const& parent, FileName const& name )
    : FileLocation( parent.URL(), name )
{
}

FileLocation::FileLocation( CFURLRef parentURL, FileName const& name )
{
    Set( parentURL, name );
}

FileLocation::FileLocation( FileLocation const& other )
    : mURL( Duplicate( other.mURL.Get() ) ), mPOSIXPath( other.mPOSIXPath )
{
}

FileLocation& FileLocation::operator=( FileLocation const& other )
{
    std::string path = other.mPOSIXPath;
    mURL = Duplicate( other.mURL.Get() );
    mPOSIXPath.swap( path );
    return *this;
}

void FileLocation::Set( CFURLRef parentURL, FileName const& name )
{
    if ( parentURL == nullptr )
    {
        throw InvalidParentURL( 0 );
    }
    AutoCFString const text =
        MakeCFString( name.Units().data(), static_cast<CFIndex>( name.Length() ) );
    mURL = CreateCopyAppendingPathComponent( parentURL, text.Get(), true );
}

FileLocation const& FileLocation::RequireNonEmpty() const
{
    if ( URL() == nullptr )
    {
        throw EmptyFileLocationError( 0 );
    }
    return *this;
}

bool FileLocation::Exists() const
{
    if ( URL() == nullptr )
    {
        return false;
    }
    try
    {
        MakeFSRef( URL() );
        return true;
    }
    catch ( CFURLGetFSRefFailed const& )
    {
        return false;
    }
}

bool FileLocation::IsFile() const
{
    MacFileInfo const info( *this );
    return info.Exists() && ( info.CatalogInfo().nodeFlags & kFSNodeIsDirectoryMask ) == 0;
}

bool FileLocation::IsDirectory() const
{
    MacFileInfo const info( *this );
    return info.Exists() && ( info.CatalogInfo().nodeFlags & kFSNodeIsDirectoryMask ) != 0;
}

bool FileLocation::IsLink() const
{
    return IsSymLink() || IsAlias();
}

bool FileLocation::IsSymLink() const
{
    if ( !Exists() )
    {
        ThrowNotFound( *this );
    }
    struct stat status;
    return lstat( POSIXPath().c_str(), &status ) == 0 && ( status.st_mode & kSymLinkBits ) != 0;
}

bool FileLocation::IsAlias() const
{
    FSRef ref = RefOfExisting( *this );
    Boolean targetIsFolder = false;
    Boolean wasAliased = false;
    return FSResolveAliasFile( &ref, true, &targetIsFolder, &wasAliased ) == noErr && wasAliased;
}

FileLocation FileLocation::ResolveAliasFile(
    bool resolveChains, bool& targetIsFolder, bool& wasAliased, short& result ) const
{
    FSRef ref = RefOfExisting( *this );
    Boolean isFolder = false;
    Boolean isAlias = false;
    result = FSResolveAliasFile( &ref, resolveChains, &isFolder, &isAlias );
    targetIsFolder = isFolder;
    wasAliased = isAlias;
    return result == noErr ? FileLocation( ref ) : FileLocation();
}

void FileLocation::POSIXPath( unsigned char* buffer, unsigned size ) const
{
    if ( !CFURLGetFileSystemRepresentation( URL(), true, buffer, static_cast<CFIndex>( size ) ) )
    {
        throw FullPathFailed( 0 );
    }
    // The URL gives up one slash of several. A system call would follow a link before the others.
    std::size_t length = std::strlen( reinterpret_cast<char const*>( buffer ) );
    while ( length > 1 && buffer[length - 1] == '/' )
    {
        buffer[--length] = 0;
    }
}

std::string FileLocation::POSIXPath() const
{
    if ( mPOSIXPath.empty() )
    {
        unsigned char buffer[kPathBufferSize];
        POSIXPath( buffer, sizeof( buffer ) );
        mPOSIXPath = reinterpret_cast<char const*>( buffer );
    }
    return mPOSIXPath;
}

bool FileLocation::Equal( FileLocation const& other ) const
{
    if ( this == &other )
    {
        return true;
    }
    if ( URL() == nullptr || other.URL() == nullptr )
    {
        return URL() == other.URL();
    }
    return POSIXPath() == other.POSIXPath();
}

bool FileLocation::IsRoot() const
{
    return POSIXPath() == "/";
}

FileName FileLocation::Name() const
{
    std::string const path = POSIXPath();
    std::string_view const bytes = path;
    return FileName( bytes.substr( bytes.rfind( '/' ) + 1 ), kCFStringEncodingUTF8 );
}

AutoCFURL FileLocation::ParentURL() const
{
    if ( IsRoot() )
    {
        throw RootHasNoParent( 0 );
    }
    return CreateCopyDeletingLastPathComponent( URL() );
}

FileLocation FileLocation::Parent() const
{
    return FileLocation( ParentURL().Get() );
}

FSRef FileLocation::ParentRef() const
{
    return MakeFSRef( ParentURL().Get() );
}

FileLocation FileLocation::Sibling( FileName const& name ) const
{
    return FileLocation( Parent(), name );
}

} // namespace MacintoshPlatform
