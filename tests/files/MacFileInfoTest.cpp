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
#include <functional>
#include <sys/stat.h>
#include <utility>

static std::function<void()> gBetweenLooks; // that make a record

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

MacFileInfo Of( std::string const& path )
{
    return MacFileInfo( MacintoshPlatform::MakeFileLocation( ConstData( path ) ) );
}

/// The class of the error, and its code.
std::string ErrorOf( std::function<void()> const& action )
{
    try
    {
        action();
        return "none";
    }
    catch ( FileIOError const& error )
    {
        return abi::__cxa_current_exception_type()->name() + std::to_string( error.GetCode() );
    }
    catch ( FileError const& error )
    {
        return abi::__cxa_current_exception_type()->name() + std::to_string( error.GetCode() );
    }
    catch ( BadFileNameError const& )
    {
        return "16BadFileNameError";
    }
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
    long const before = LiveAllocations();
    EXPECT_FALSE( Of( "/missing" ) == Of( "/missing" ) || Of( "/missing" ).Exists() ||
                  MacFileInfo( MacintoshPlatform::FileLocation() ).Exists() );
    EXPECT_EQ( before, LiveAllocations() );
}

TEST( Record, OfAnItemThatChangesBetweenTheLooksIsAnError )
{
    auto const test = []
    {
        BecomeOrdinaryUser(); // permissions do not bind root
        TemporaryFolder const folder;
        std::string errors;
        for ( char const* const change : { "rm folder/item",
                  "mv folder moved; mkdir folder; touch folder/item", "chmod 0 folder" } )
        {
            Shell( folder.Path(), "mkdir -p folder; touch folder/item" );
            gBetweenLooks = [&] { Shell( folder.Path(), change ); };
            errors += ErrorOf( [&] { Of( folder.Path( "folder/item" ) ); } ) + " ";
        }
        return errors + ( Of( folder.Path( "folder/item" ) ).Exists() ? "still exists" : "" );
    };
    EXPECT_EQ(
        "17FileNotFoundError0 22DirectoryNotFoundError0 19FilePermissionError0 ", InChild( test ) );
}

TEST( FileManagerResults, BecomeErrorsByTheirTable )
{
    for ( auto const& [code, error] :
        { std::pair( 0, "none" ), { -37, "16BadFileNameError" }, { -43, "17FileNotFoundError0" },
            { -44, "23HardwareVolumeLockError-44" }, { -45, "13FileLockError0" },
            { -46, "23SoftwareVolumeLockError-46" }, { -120, "22DirectoryNotFoundError0" },
            { -5000, "19FilePermissionError0" }, { -36, "9FileError-36" }, { -38, "9FileError-38" },
            { -5001, "9FileError-5001" }, { 43, "9FileError43" } } )
        EXPECT_EQ( error, ErrorOf( [code = code] { MacFileInfo::ThrowError( code ); } ) );
}
