#include "files/FileErrors.h"
#include "files/FileLocationWithWildcard.h"
#include "files/FileLoop.h"
#include "files/FileOperations.h"
#include "files/FileReader.h"
#include "files/FileRetry.h"
#include "files/mac/MacFileInfo.h"
#include "files/mac/SpecialFolders.h"
#include "files/MakeFileLocation.h"
#include "files/ReadFile.h"
#include "files/TreeOperations.h"
#include "files/UniqueFileLocation.h"
#include "tests/faults/AllocationTable.h"
#include "tests/support/TemporaryFolder.h"

#include <CoreServices/CoreServices.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <numeric>
#include <set>
#include <unistd.h>

namespace fs = std::filesystem;
using MacintoshPlatform::FileName;
using MacintoshPlatform::MacFileInfo;
using Platform = MacintoshPlatform::FileLocation;

// The pauses of the retries.

extern "C" unsigned sleep( unsigned )
{
    return 0;
}

extern "C" int usleep( useconds_t )
{
    return 0;
}

namespace
{

// The calls that a location is made by and asked for its path do not tell why they fail.
constexpr char kNoLocation[] =
    "CF.*(Failed|CreateError)|MacintoshPlatform::(FullPathFailed|CannotCreateSpecialFolder)|"
    "FSIteratorCreateError|MacintoshPlatform::FileLoopFailed";

// A folder with a file, a link, an empty folder and a tree in it; their paths were not asked for
// yet.
struct Scene
{
    Scene()
    {
        fs::create_directories( folder.Path( "tree/sub" ) );
        fs::create_directory( folder.Path( "empty" ) );
        for ( char const* name : { "a", "tree/b", "tree/sub/c" } )
        {
            std::ofstream( folder.Path( name ) ) << "content of " << name;
        }
        fs::create_symlink( "a", folder.Path( "link" ) );
    }

    FileLocation At( std::string const& name ) const
    {
        return MakeFileLocationOfBytes( ConstData( folder.Path( name ) ) );
    }

    TemporaryFolder folder;
    FileLocation file = At( "a" );
    FileLocation link = At( "link" );
    FileLocation empty = At( "empty" );
    FileLocation tree = At( "tree" );
    FileLocation fresh = At( "new" );
};

// One whose tree is being deleted, so that any part of it may be left.
struct SceneWithoutTree : Scene
{
};

// All names with what is there; what is random in a name and what is in an unfinished copy is left
// out.
std::string Show( Scene const& scene )
{
    std::set<std::string> items;
    for ( auto const& item : fs::recursive_directory_iterator( scene.folder.Path() ) )
    {
        std::string name = item.path().lexically_relative( scene.folder.Path() ), content;
        if ( std::size_t const random = name.find( "unique-" ); random != name.npos )
        {
            name.resize( random );
        }
        std::ifstream stream( item.path() );
        std::getline( stream, content );
        items.insert( name.starts_with( ".unfinished-" )
                          ? ".unfinished\n"
                          : name + ( item.is_symlink() ? " -> " : ": " ) + content + '\n' );
    }
    return std::accumulate( items.begin(), items.end(), std::string() );
}

std::string Show( SceneWithoutTree const& scene )
{
    std::string const all = Show( static_cast<Scene const&>( scene ) );
    return all.substr( 0, all.find( "tree" ) );
}

std::string Show( FileLocation const& location )
{
    std::string const path = location.POSIXPath();
    return path.substr( path.rfind( '/' ) + 1 );
}

std::string Show( FileIOError const& error )
{
    return error.MakeErrorMessage();
}

std::string Show( FileName const& name )
{
    return std::to_string( name.Length() );
}

std::string Target( FileLocation const& link )
{
    bool isFolder = false, isAlias = false;
    short result = 0;
    Platform const target = link.Platform().ResolveAliasFile( true, isFolder, isAlias, result );
    return Code( result ) + Show( target );
}

FileLocation FirstItem( FileLocation const& folder )
{
    FileLoop loop( folder, "*" );
    loop.Next();
    return loop.Location();
}

struct Visitor : MacintoshPlatform::TreeVisitor
{
    void VisitItem( MacintoshPlatform::ItemPlace const&, struct stat const& ) override {}
};

} // namespace

TEST( Allocation, FileErrorsAndNames )
{
    std::string const text( 100, 'n' );
    ConstData const bytes( text );
    FileName const name( "12 a name.txt", kCFStringEncodingUTF8 );
    FileIOError const original( bytes, bytes, 1 );
    FailEachAllocation(
        {
            TRY( FileIOError( bytes, 5 ) ),
            TRY( FileIOError( original ) ),
            TRY( FilePermissionError( bytes, 5 ).what() ),
            TRY( MakeErrorString( 5 ) ),
            CHANGE( FileIOError( 5 ), it = original ),
            CHANGE( FileName( name ), it.Set( bytes, kCFStringEncodingUTF8 ) ),
            TRY( name.MakeUTF8String().begin() ),
            TRY( name.MakeStringy().Text() ),
            TRY( static_cast<int>( name.ExtensionType() ) ),
        },
        "CFStringCreateError|=19FilePermissionError" );
}

TEST( Allocation, Locations )
{
    Scene const scene;
    Visitor visitor;
    std::string const path = scene.folder.Path( "a" ), noItem = "FileNotFoundError|=0";
    UStringRef<UTF8> const unicode( path );
    FileName const name( "an item with a name", kCFStringEncodingUTF8 );
    auto const at = [&]( char const* item = "a" ) { return scene.At( item ); };
    FailEachAllocation(
        {
            TRY( at() ),
            TRY( MakeFileLocation( path.c_str() ) ),
            TRY( MakeFileLocation( unicode ) ),
            TRY( MakeRelativeFileLocation( at(), "a relative path/b" ) ),
            TRY( MakeRelativeFileLocation( at(), unicode ) ),
            TRY( FileLocation( at(), "a child" ) ),
            TRY( at().Parent().Child( at().Name() ).Sibling( at( "tree" ).Name() ) ),
            TRY( at().Equal( at().Parent() ) || at().IsRoot() ),
            TRY( at().IsFile(), "=0" ),
            TRY( MacFileInfo( at().Platform() ).Exists(), "=0" ),
            TRY( at( "tree" ).IsLink(), noItem ),
            TRY( at( "link" ).Platform().IsAlias(), noItem ),
            TRY( Target( at( "link" ) ), noItem ),
            TRY( Platform( at().Platform().ParentRef() ).Parent() ),
            TRY( MacintoshPlatform::MakeFileLocation( kTemporaryFolderType, kUserDomain, 1 ) ),
            TRY( FirstItem( at( "tree/sub" ) ) ),
            TRY( ( WalkTree( at( "tree" ), visitor ), "walked" ) ),
            TRY( ReadFile( at(), 100 ) ),
            TRY( FileReader( at() ).Unfinished() ),
            CHANGE( MakeFileLocation( "/a folder" ).Platform(), it.Set( it.URL(), name ) ),
            CHANGE( MakeFileLocation( "/before" ),
                MakeFileLocationWithWildcard( "/a folder/with a name/*.txt", it ) ),
        },
        kNoLocation );
}

TEST( Allocation, FileOperations )
{
    // In memory, where the copies are synced at once.
    if ( access( "/dev/shm", W_OK ) == 0 )
    {
        setenv( "TMPDIR", "/dev/shm", 1 );
    }
    TemporaryFolder const all;
    setenv( "TMPDIR", all.Path().c_str(), 1 );
    FileRetryLog const log;
    std::string const partOfCopy = ".unfinished\n" + Show( Scene() );
    FailEachAllocation(
        {
            CHANGE( Scene(), CreateFile( it.fresh ) ),
            CHANGE( Scene(), CreateDirectory( it.fresh ) ),
            CHANGE( Scene(), ForceDirectoryExistence( it.fresh ) ),
            CHANGE( Scene(), DeleteFile( it.file ) ),
            CHANGE( Scene(), DeleteDirectory( it.empty ) ),
            CHANGE( Scene(), ForceNonexistence( it.empty ) ),
            CHANGE( Scene(), CopyFile( it.file, it.fresh ) ),
            CHANGE( Scene(), MoveFile( it.file, it.fresh ) ),
            CHANGE( Scene(), ForceCopyFile( it.link, it.file ) ),
            CHANGE( Scene(), ForceMoveFile( it.link, it.file ) ),
            CHANGE( Scene(), CopyTree( it.tree, it.fresh ), "", partOfCopy ),
            CHANGE( SceneWithoutTree(), ForceDeleteRecursive( it.tree ) ),
            CHANGE( SceneWithoutTree(), ForceDeleteContents( it.tree ) ),
            CHANGE( Scene(), CreateUniqueFile( it.empty, "unique-" ) ),
            CHANGE( Scene(), CreateUniqueDirectory( it.empty, "unique-" ) ),
            TRY( CreateTemporaryFile( "unique-" ).Parent() ),
            TRY( CreateTemporaryDirectory( "unique-" ).Parent() ),
            // One for each kind of operation that is tried again.
            CHANGE( Scene(), CreateFileWithRetry( it.fresh, {}, log ) ),
            CHANGE( Scene(), CreateDirectoryWithRetry( it.fresh, {}, log ) ),
            CHANGE( Scene(), DeleteFileWithRetry( it.file, log ) ),
            CHANGE( Scene(), MoveFileWithRetry( it.file, it.fresh, log ) ),
        },
        kNoLocation );
    unsetenv( "TMPDIR" );
}
