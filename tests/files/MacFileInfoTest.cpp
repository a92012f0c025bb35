#include "files/mac/MacFileInfo.h"

#include "files/FileErrors.h"
#include "files/FileNameErrors.h"
#include "files/mac/MakeFileLocation.h"
#include "platform/FileError.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/InChild.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cxxabi.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sys/stat.h>
#include <typeinfo>
#include <utility>

namespace
{

// What happens to the file system between the two looks that make a record.
std::function<void()> gBetweenLooks;

} // namespace

// The program is linked with --wrap=PBGetCatInfoSync, so that calls of it come here.
extern "C" OSErr __real_PBGetCatInfoSync( CInfoPBRec* parameters );
extern "C" OSErr __wrap_PBGetCatInfoSync( CInfoPBRec* parameters );

OSErr __wrap_PBGetCatInfoSync( CInfoPBRec* parameters )
{
    if ( gBetweenLooks )
        std::exchange( gBetweenLooks, nullptr )();
    return __real_PBGetCatInfoSync( parameters );
}

namespace
{

using MacintoshPlatform::MacFileInfo;

struct Record : ::testing::Test
{
    Record()
    {
        std::filesystem::create_directory( Path( "" ) );
        std::ofstream( Path( "item" ) ) << "x";
    }

    std::string Path( std::string const& name ) const { return folder.Path( "folder/" + name ); }

    static MacFileInfo Of( std::string const& path )
    {
        return MacFileInfo( MacintoshPlatform::MakeFileLocation( ConstData( path ) ) );
    }

    TemporaryFolder folder;
};

} // namespace

TEST_F( Record, OfAnItemIsComplete )
{
    struct stat status = {};
    ASSERT_EQ( 0, stat( Path( "item" ).c_str(), &status ) );
    MacFileInfo const info = Of( Path( "item" ) );
    EXPECT_TRUE( info.Exists() );
    EXPECT_EQ( status.st_ino, info.CatalogInfo().nodeID );
    EXPECT_EQ( status.st_ino, info.ParameterBlock().hFileInfo.ioDirID );
    EXPECT_EQ( nullptr, info.ParameterBlock().hFileInfo.ioNamePtr );
    EXPECT_EQ( Path( "item" ), info.Ref().path );
    EXPECT_TRUE( Of( Path( "" ) ).CatalogInfo().nodeFlags & kFSNodeIsDirectoryMask );
}

TEST_F( Record, EqualsAnotherOfTheSameExistingItemOnly )
{
    std::filesystem::create_directory_symlink( Path( "" ), Path( "link" ) );
    std::filesystem::create_directory( Path( "sub" ) );
    std::filesystem::create_hard_link( Path( "item" ), Path( "sub/item" ) );
    std::ofstream( Path( "other" ) ) << "x";
    MacFileInfo const item = Of( Path( "item" ) );
    EXPECT_TRUE( item == Of( Path( "./link/../folder//item" ) ) );
    EXPECT_TRUE( item == Of( Path( "link/item" ) ) );
    for ( char const* name : { "other", "sub/item", "missing" } )
        EXPECT_FALSE( item == Of( Path( name ) ) ) << name;
    long const before = LiveAllocations();
    EXPECT_FALSE( Of( "/missing" ) == Of( "/missing" ) || Of( "/missing" ).Exists() ||
                  MacFileInfo( MacintoshPlatform::FileLocation() ).Exists() );
    EXPECT_EQ( before, LiveAllocations() );
}

TEST_F( Record, OfAnItemThatChangesBetweenTheLooksIsAnError )
{
    gBetweenLooks = [this] { std::filesystem::remove( Path( "item" ) ); };
    EXPECT_THROW( Of( Path( "item" ) ), FileNotFoundError );
    std::ofstream( Path( "item" ) ) << "x";
    gBetweenLooks = [this]
    {
        std::filesystem::rename( Path( "" ), folder.Path( "moved" ) );
        std::filesystem::create_directory( Path( "" ) );
        std::ofstream( Path( "item" ) ) << "y";
    };
    EXPECT_THROW( Of( Path( "item" ) ), DirectoryNotFoundError );
}

TEST( ClosedFolder, IsAnErrorOnlyWhenItClosesBetweenTheLooks )
{
    auto const test = []() -> std::string
    {
        BecomeOrdinaryUser(); // permissions do not bind root
        struct Probe : Record
        {
            void TestBody() override {}
        } const probe;
        gBetweenLooks = [&probe] { chmod( probe.Path( "" ).c_str(), 0 ); };
        try
        {
            return "no error" + std::to_string( Record::Of( probe.Path( "item" ) ).Exists() );
        }
        catch ( FilePermissionError const& )
        {
            return Record::Of( probe.Path( "item" ) ).Exists() ? "still exists" : "";
        }
    };
    EXPECT_EQ( "", InChild( test ) );
}

namespace
{

// The code in what ThrowError throws, which has to be of exactly that class.
template<typename Error>
long Carried( long code )
{
    try
    {
        MacFileInfo::ThrowError( code );
    }
    catch ( Error const& error )
    {
        EXPECT_EQ( typeid( Error ), *abi::__cxa_current_exception_type() ) << code;
        return error.GetCode();
    }
    return 1;
}

} // namespace

TEST( FileManagerResults, BecomeErrorsByTheirTable )
{
    MacFileInfo::ThrowError( 0 );
    EXPECT_THROW( MacFileInfo::ThrowError( -37 ), BadFileNameError );
    EXPECT_EQ( 0, Carried<FileNotFoundError>( -43 ) );
    EXPECT_EQ( -44, Carried<HardwareVolumeLockError>( -44 ) );
    EXPECT_EQ( 0, Carried<FileLockError>( -45 ) );
    EXPECT_EQ( -46, Carried<SoftwareVolumeLockError>( -46 ) );
    EXPECT_EQ( 0, Carried<DirectoryNotFoundError>( -120 ) );
    EXPECT_EQ( 0, Carried<FilePermissionError>( -5000 ) );
    for ( long const code : { -36, -38, -5001, 43 } )
        EXPECT_EQ( code, Carried<FileError>( code ) );
}
