#include "files/FileLocation.h"
#include "files/FileErrors.h"
#include "files/mac/MakeFileLocation.h"
#include "files/MakeFileLocation.h"
#include "platform/CFErrors.h"
#include "platform/CFStrings.h"
#include "platform/FSRefs.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace
{

using namespace std::string_literals;
using Location = MacintoshPlatform::FileLocation;

std::string Text( Location const& location )
{
    return MakeString( CFURLGetString( location.URL() ), kCFStringEncodingUTF8, 0 );
}

Location LocationOf( std::string const& path )
{
    return MacintoshPlatform::MakeFileLocation( ConstData( path ) );
}

} // namespace

TEST( Location, IsMadeFromEveryFormOfAPathInDirectoryForm )
{
    using MacintoshPlatform::MakeFileLocation;
    std::string const path = "/a \xc3\xa9";
    Location const made[] = { ::MakeFileLocation( path.c_str() ).Platform(), LocationOf( path ),
        ::MakeFileLocation( ConstData( path ) ).Platform(),
        MakeFileLocation( "/a \xe9/x", 4, kCFStringEncodingISOLatin1, kCFURLPOSIXPathStyle ) };
    for ( Location const& location : made )
        EXPECT_EQ( "file:///a%20%C3%A9/", Text( location ) );
    EXPECT_EQ( "file:///a/", Text( ::MakeFileLocation( UStringRef<UTF8>( "/a/" ) ).Platform() ) );
    EXPECT_EQ( "./", Text( ::MakeFileLocation( "" ).Platform() ) );
    EXPECT_THROW( ::MakeFileLocation( "/\xff" ), CFStringCreateError );
    EXPECT_THROW( LocationOf( "/a\0b"s ), CFURLCreateWithFileSystemPathFailed );
    EXPECT_THROW( MakeFileLocation( "/a", 2, kCFStringEncodingUTF8, 2 ),
        CFURLCreateWithFileSystemPathFailed );
}

TEST( Location, LeaksNothingWhenMemoryRunsOut )
{
    long const before = LiveAllocations();
    for ( long failing = 1; failing < 5; ++failing )
    {
        AllocationFailure const failure( failing );
        EXPECT_ANY_THROW( MakeFileLocation( "/Library/a folder with a long name/a bundle.app" ) );
        EXPECT_EQ( before, LiveAllocations() ) << failing;
    }
}

TEST( Location, SharesItsURLWithItsCopies )
{
    Location original = LocationOf( "/a" );
    CFURLRef const url = original.URL();
    Location const copy( original );
    Location assigned = LocationOf( "/b" );
    assigned = copy;
    Location const& alias = assigned;
    assigned = alias;
    EXPECT_EQ( 3, CFGetRetainCount( url ) );
    original = Location();
    assigned = Location();
    EXPECT_EQ( nullptr, assigned.URL() );
    EXPECT_EQ( 1, CFGetRetainCount( url ) );
    EXPECT_EQ( "file:///a/", Text( copy ) );
}

TEST( Location, KnowsWhetherItsItemExistsAndWhichKindItIs )
{
    TemporaryFolder const folder;
    std::ofstream( folder.Path( "file" ) ) << "x";
    std::filesystem::create_directory( folder.Path( "folder" ) );
    std::filesystem::create_symlink( "folder", folder.Path( "link" ) );
    for ( auto const& [name, kind] : { std::pair( "file", 'f' ), { "folder", 'd' },
              { "folder/", 'd' }, { "link", 'f' }, { "missing", ' ' }, { "file/below", ' ' } } )
    {
        SCOPED_TRACE( name );
        Location const location = LocationOf( folder.Path( name ) );
        EXPECT_EQ( kind != ' ', location.Exists() );
        EXPECT_EQ( kind == 'f', location.IsFile() );
        EXPECT_EQ( kind == 'd', location.IsDirectory() );
    }
    FSRef const ref = MakeFSRef( LocationOf( folder.Path( "file" ) ).URL() );
    EXPECT_EQ( "file://" + folder.Path( "file" ), Text( Location( ref ) ) );
}

TEST( EmptyLocation, IsANormalValueUntilAnItemIsRequired )
{
    FileLocation const empty;
    Location const& location = empty.Platform();
    EXPECT_FALSE( location.Exists() || location.IsFile() || location.IsDirectory() );
    EXPECT_EQ( nullptr, Location( CFURLRef() ).URL() );
    EXPECT_THROW( empty.RequireNonEmpty(), EmptyFileLocationError );
    FileLocation const missing = MakeFileLocation( "/missing" );
    EXPECT_EQ( &missing, &missing.RequireNonEmpty() );
}

TEST( AbsolutePath, BeginsWithASlash )
{
    EXPECT_FALSE( IsAbsolutePath( nullptr ) || IsAbsolutePath( "" ) || IsAbsolutePath( "a/b" ) );
    EXPECT_TRUE( IsAbsolutePath( "/" ) );
}
