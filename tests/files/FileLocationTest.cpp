#include "files/FileLocation.h"
#include "files/FileErrors.h"
#include "files/mac/MakeFileLocation.h"
#include "files/MakeFileLocation.h"
#include "platform/CFErrors.h"
#include "platform/CFStrings.h"
#include "platform/FSRefs.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <new>

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
    int const failures = FailEachAllocation(
        []
        {
            try
            {
                MakeFileLocation( "/Library/a folder with a long name/and a bundle.app" );
            }
            catch ( ... ) // the layer below answers null, which is thrown by name
            {
                throw std::bad_alloc();
            }
        } );
    EXPECT_LT( 3, failures );
}

TEST( Location, SharesItsURLWithItsCopies )
{
    auto original = std::make_unique<Location>( LocationOf( "/a" ) );
    CFURLRef const url = original->URL();
    EXPECT_EQ( 1, CFGetRetainCount( url ) );
    Location const copy( *original );
    Location assigned = LocationOf( "/b" );
    assigned = copy;
    Location const& alias = assigned;
    assigned = alias;
    EXPECT_EQ( 3, CFGetRetainCount( url ) );
    original.reset();
    EXPECT_EQ( "file:///a/", Text( copy ) );
    assigned = Location();
    EXPECT_EQ( nullptr, assigned.URL() );
    EXPECT_EQ( 1, CFGetRetainCount( url ) );
}

TEST( Location, KnowsWhetherItsItemExistsAndWhichKindItIs )
{
    TemporaryFolder const folder;
    std::ofstream( folder.Path( "file" ) ) << "x";
    std::filesystem::create_directory( folder.Path( "folder" ) );
    std::filesystem::create_symlink( "folder", folder.Path( "link" ) );

    struct
    {
        char const* name;
        bool isFile;
        bool isDirectory;
    } const rows[] = { { "file", true, false }, { "folder", false, true },
        { "folder/", false, true }, { "link", true, false }, { "missing", false, false },
        { "file/below", false, false } };

    for ( auto const& row : rows )
    {
        SCOPED_TRACE( row.name );
        Location const location = LocationOf( folder.Path( row.name ) );
        EXPECT_EQ( row.isFile || row.isDirectory, location.Exists() );
        EXPECT_EQ( row.isFile, location.IsFile() );
        EXPECT_EQ( row.isDirectory, location.IsDirectory() );
    }
    FSRef const ref = MakeFSRef( LocationOf( folder.Path( "file" ) ).URL() );
    EXPECT_EQ( "file://" + folder.Path( "file" ), Text( Location( ref ) ) );
    std::filesystem::remove( folder.Path( "file" ) );
    EXPECT_THROW( Location{ ref }, CFURLCreateFromFSRefFailed );
}

TEST( EmptyLocation, IsANormalValueUntilAnItemIsRequired )
{
    FileLocation const empty;
    EXPECT_FALSE( empty.Platform().Exists() );
    EXPECT_FALSE( empty.Platform().IsFile() );
    EXPECT_FALSE( empty.Platform().IsDirectory() );
    EXPECT_EQ( nullptr, Location( CFURLRef() ).URL() );
    EXPECT_THAT(
        [&] { empty.RequireNonEmpty(); }, ::testing::Throws<EmptyFileLocationError>(
                                              ::testing::Property( &FileIOError::GetCode, 0 ) ) );
    FileLocation const location = MakeFileLocation( "/missing" );
    EXPECT_EQ( &location, &location.RequireNonEmpty() );
}

TEST( AbsolutePath, BeginsWithASlash )
{
    EXPECT_FALSE( IsAbsolutePath( nullptr ) );
    EXPECT_FALSE( IsAbsolutePath( "" ) );
    EXPECT_FALSE( IsAbsolutePath( "a/b" ) );
    EXPECT_TRUE( IsAbsolutePath( "/" ) );
}
