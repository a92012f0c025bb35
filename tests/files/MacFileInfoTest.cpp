#include "files/mac/MacFileInfo.h"

#include "files/FileErrors.h"
#include "files/mac/MakeFileLocation.h"
#include "platform/FileError.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cxxabi.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
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
        gBetweenLooks();
    return __real_PBGetCatInfoSync( parameters );
}

namespace
{

using MacintoshPlatform::MacFileInfo;

// Permissions do not bind root: these tests act as somebody else.
class Unprivileged
{
  public:
    Unprivileged() : mIsRoot( geteuid() == 0 ) { EXPECT_TRUE( !mIsRoot || seteuid( 65534 ) == 0 ); }

    ~Unprivileged() { EXPECT_TRUE( !mIsRoot || seteuid( 0 ) == 0 ); }

  private:
    bool const mIsRoot;
};

class Record : public ::testing::Test
{
  protected:
    Record()
    {
        std::filesystem::create_directory( Path( "" ) );
        std::ofstream( Path( "item" ) ) << "x";
        chmod( mFolder.Path().c_str(), 0755 );
    }

    ~Record() override
    {
        gBetweenLooks = nullptr;
        chmod( Path( "" ).c_str(), 0755 );
    }

    std::string Path( std::string const& name ) const { return mFolder.Path( "folder/" + name ); }

    static MacFileInfo Of( std::string const& path )
    {
        return MacFileInfo( MacintoshPlatform::MakeFileLocation( ConstData( path ) ) );
    }

  private:
    TemporaryFolder mFolder;
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
    EXPECT_EQ( 80u, sizeof info.Ref() );
    EXPECT_TRUE( Of( Path( "" ) ).CatalogInfo().nodeFlags & kFSNodeIsDirectoryMask );
}

TEST_F( Record, OfAnItemThatDoesNotExistOrCannotBeReachedSaysSo )
{
    Of( Path( "item" ) );
    long const before = LiveAllocations();
    EXPECT_FALSE( Of( "/Library/WUXAgent/Missing.app" ).Exists() );
    EXPECT_EQ( before, LiveAllocations() );
    EXPECT_FALSE( MacFileInfo( MacintoshPlatform::FileLocation() ).Exists() );
    chmod( Path( "" ).c_str(), 0700 );
    Unprivileged const somebody;
    EXPECT_EQ( geteuid() != 65534, Of( Path( "item" ) ).Exists() );
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
    EXPECT_FALSE( Of( Path( "missing" ) ) == Of( Path( "missing" ) ) );
}

TEST_F( Record, OfAnItemThatChangesBetweenTheLooksIsAnError )
{
    gBetweenLooks = [this] { std::filesystem::remove( Path( "item" ) ); };
    EXPECT_THROW( Of( Path( "item" ) ), FileNotFoundError );
    std::ofstream( Path( "item" ) ) << "x";
    gBetweenLooks = [this]
    {
        std::string const folder = std::filesystem::path( Path( "" ) ).parent_path();
        std::filesystem::rename( folder, folder + " moved" );
        std::filesystem::create_directory( folder );
        std::ofstream( Path( "item" ) ) << "y";
    };
    EXPECT_THROW( Of( Path( "item" ) ), DirectoryNotFoundError );
}

TEST_F( Record, OfAnItemWhoseFolderIsClosedBetweenTheLooksIsAnError )
{
    // Where the folder is root's, it is given to the one who looks.
    EXPECT_TRUE( geteuid() != 0 || chown( Path( "" ).c_str(), 65534, 65534 ) == 0 );
    Unprivileged const somebody;
    gBetweenLooks = [this] { chmod( Path( "" ).c_str(), 0 ); };
    EXPECT_THROW( Of( Path( "item" ) ), FilePermissionError );
    EXPECT_FALSE( Of( Path( "item" ) ).Exists() );
}

namespace
{

// The type of what ThrowError throws, and the code it carries.
std::string Thrown( long code )
{
    auto const described = []( auto const&... error )
    {
        std::string const name = abi::__cxa_current_exception_type()->name();
        return ( name + ... + ( ' ' + std::to_string( error.GetCode() ) ) );
    };
    try
    {
        MacFileInfo::ThrowError( code );
        return "nothing";
    }
    catch ( FileIOError const& error )
    {
        return described( error );
    }
    catch ( OSError const& error )
    {
        return described( error );
    }
    catch ( ... )
    {
        return described();
    }
}

} // namespace

TEST( FileManagerResults, BecomeErrorsByTheirTable )
{
    std::pair<long, std::string> const rows[] = { { 0, "nothing" }, { -37, "16BadFileNameError" },
        { -43, "17FileNotFoundError 0" }, { -44, "23HardwareVolumeLockError -44" },
        { -45, "13FileLockError 0" }, { -46, "23SoftwareVolumeLockError -46" },
        { -120, "22DirectoryNotFoundError 0" }, { -5000, "19FilePermissionError 0" },
        { -36, "9FileError -36" }, { -108, "9FileError -108" }, { -5001, "9FileError -5001" },
        { 43, "9FileError 43" } };
    for ( auto const& [code, error] : rows )
        EXPECT_EQ( error, Thrown( code ) );
}
