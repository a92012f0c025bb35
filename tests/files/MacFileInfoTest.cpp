#include "files/mac/MacFileInfo.h"

#include "files/FileErrors.h"
#include "files/FileNameErrors.h"
#include "files/mac/MakeFileLocation.h"
#include "platform/FileError.h"
#include "tests/support/TemporaryFolder.h"

#include <CoreServices/MacErrors.h>

#include <gtest/gtest.h>

#include <cxxabi.h>
#include <sys/stat.h>
#include <utility>

static OSErr gResult = noErr; // of the second look when a record is made, unless it is none

// The program is linked with --wrap=PBGetCatInfoSync, so that calls of it come here.
extern "C" OSErr __real_PBGetCatInfoSync( CInfoPBRec* parameters );
extern "C" OSErr __wrap_PBGetCatInfoSync( CInfoPBRec* parameters );

OSErr __wrap_PBGetCatInfoSync( CInfoPBRec* parameters )
{
    return gResult != noErr ? gResult : __real_PBGetCatInfoSync( parameters );
}

namespace
{

using MacintoshPlatform::MacFileInfo;

MacFileInfo Of( std::string const& path )
{
    return MacFileInfo( MacintoshPlatform::MakeFileLocation( ConstData( path ) ) );
}

} // namespace

TEST( Record, OfAnItemIsCompleteAndEqualsAnotherOfTheSameExistingItemOnly )
{
    TemporaryFolder const folder;
    Shell( folder.Path(), "mkdir sub; touch item other; ln -s . link; ln item sub/item" );
    struct stat status = {};
    ASSERT_EQ( 0, stat( folder.Path( "item" ).c_str(), &status ) );
    MacFileInfo const item = Of( folder.Path( "item" ) );
    EXPECT_EQ( status.st_ino, item.CatalogInfo().nodeID );
    EXPECT_EQ( status.st_ino, item.ParameterBlock().hFileInfo.ioDirID );
    EXPECT_EQ( nullptr, item.ParameterBlock().hFileInfo.ioNamePtr );
    EXPECT_EQ( folder.Path( "item" ), item.Ref().path );
    EXPECT_TRUE( Of( folder.Path() ).CatalogInfo().nodeFlags & kFSNodeIsDirectoryMask );

    EXPECT_TRUE( item.Exists() && item == Of( folder.Path( "./sub/../link//item" ) ) );
    for ( char const* name : { "other", "sub/item", "missing" } )
        EXPECT_FALSE( item == Of( folder.Path( name ) ) ) << name;
    EXPECT_FALSE( Of( "/missing" ) == Of( "/missing" ) || Of( "/missing" ).Exists() ||
                  MacFileInfo( MacintoshPlatform::FileLocation() ).Exists() );
}

TEST( Record, OfAnItemThatChangesBetweenTheLooksIsTheErrorOfTheTable )
{
    for ( auto const& [code, expected] :
        { std::pair( -37, "16BadFileNameError" ), { -43, "17FileNotFoundError0" },
            { -44, "23HardwareVolumeLockError-44" }, { -45, "13FileLockError0" },
            { -46, "23SoftwareVolumeLockError-46" }, { -120, "22DirectoryNotFoundError0" },
            { -5000, "19FilePermissionError0" }, { -36, "9FileError-36" }, { -38, "9FileError-38" },
            { -5001, "9FileError-5001" }, { 43, "9FileError43" }, { 0, "none" } } )
    {
        gResult = static_cast<OSErr>( code );
        std::string error = "none";
        try
        {
            Of( "/" );
        }
        catch ( FileIOError const& thrown )
        {
            error =
                abi::__cxa_current_exception_type()->name() + std::to_string( thrown.GetCode() );
        }
        catch ( FileError const& thrown )
        {
            error =
                abi::__cxa_current_exception_type()->name() + std::to_string( thrown.GetCode() );
        }
        catch ( BadFileNameError const& )
        {
            error = abi::__cxa_current_exception_type()->name();
        }
        EXPECT_EQ( expected, error );
    }
}
