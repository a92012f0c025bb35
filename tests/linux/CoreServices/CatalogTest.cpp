#include <CoreServices/CoreServices.h>

#include "linux/CoreFoundation/CFURLObject.h"
#include "tests/linux/CoreFoundation/Held.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <new>
#include <sys/stat.h>
#include <vector>

namespace
{

using namespace std::string_literals;

struct Catalog : ::testing::Test
{
    std::string Path( std::string const& name ) const { return mFolder.Path( name ); }

    void Write( std::string const& name ) const { std::ofstream( Path( name ) ) << "12345"; }

    // A reference through the directory form of the URL, as locations have it.
    static bool Find( std::string const& path, FSRef& ref )
    {
        return CFURLGetFSRef( Held<CFURLRef>( CreateFileURL( path, true ) ).get(), &ref ) != 0;
    }

    FSRef Find( std::string const& name ) const
    {
        FSRef ref;
        EXPECT_TRUE( Find( Path( name ), ref ) ) << name;
        return ref;
    }

    static OSErr Reread( FSRef const& ref, FSCatalogInfo* info = nullptr, FSSpec* spec = nullptr )
    {
        return FSGetCatalogInfo( &ref, kFSCatInfoGettableInfo, info, nullptr, spec, nullptr );
    }

    FSCatalogInfo Info( std::string const& name ) const
    {
        FSCatalogInfo info = {};
        EXPECT_EQ( noErr, Reread( Find( name ), &info ) );
        return info;
    }

    static OSErr Reread( FSSpec const& spec, HFileInfo* record = nullptr )
    {
        CInfoPBRec block = {};
        block.hFileInfo.ioVRefNum = spec.vRefNum;
        block.hFileInfo.ioDirID = spec.parID;
        block.hFileInfo.ioNamePtr = spec.name.c_str();
        OSErr const result = PBGetCatInfoSync( &block );
        EXPECT_EQ( result, block.hFileInfo.ioResult );
        if ( record != nullptr )
            *record = block.hFileInfo;
        return result;
    }

    static std::string URLText( FSRef const& ref )
    {
        Held<CFURLRef> const url( CFURLCreateFromFSRef( nullptr, &ref ) );
        return url ? url->parts.Text() : "(null)";
    }

    TemporaryFolder mFolder;
};

UInt64 Seconds( UTCDateTime const& time )
{
    return UInt64{ time.highSeconds } << 32 | time.lowSeconds;
}

} // namespace

TEST_F( Catalog, EntryAndRecordSayWhatTheFileSystemSays )
{
    std::string const name = "file \xff";
    Write( name );
    timespec const times[] = { { -3'000'000'000, 500'000'000 }, { 4'294'967'296, 999'999'999 } };
    ASSERT_EQ( 0, utimensat( AT_FDCWD, Path( name ).c_str(), times, 0 ) );
    for ( std::string const& item : { name, "."s } )
    {
        struct stat is = {};
        struct stat parent = {};
        ASSERT_EQ( 0, stat( Path( item ).c_str(), &is ) );
        ASSERT_EQ( 0, stat( Path( item == name ? "." : ".." ).c_str(), &parent ) );
        UInt64 const kind = item == name ? 0 : 0x10;
        UInt64 const size = item == name ? 5 : 0;
        UInt64 const allocated = item == name ? static_cast<UInt64>( is.st_blocks ) * 512 : 0;
        FSCatalogInfo info = {};
        FSSpec spec;
        EXPECT_EQ( noErr, Reread( Find( item ), &info, &spec ) );
        using Numbers = std::vector<UInt64>;
        EXPECT_EQ( ( Numbers{ kind, is.st_dev, parent.st_ino, is.st_ino, size, allocated,
                       is.st_mode, is.st_uid, is.st_gid } ),
            ( Numbers{ info.nodeFlags, info.volume, info.parentDirID, info.nodeID,
                info.dataLogicalSize, info.dataPhysicalSize, info.permissions.mode,
                info.permissions.userID, info.permissions.groupID } ) );
        // What a file system cannot keep it clamps; compare with what it kept.
        EXPECT_EQ( static_cast<UInt64>( is.st_mtim.tv_sec + 2'082'844'800 ),
            Seconds( info.contentModDate ) );
        EXPECT_EQ( is.st_mtim.tv_nsec * 65536 / 1'000'000'000, info.contentModDate.fraction );
        EXPECT_EQ( static_cast<UInt64>( is.st_atim.tv_sec + 2'082'844'800 ) & 0xffff'ffff'ffff,
            Seconds( info.accessDate ) );
        HFileInfo read;
        EXPECT_EQ( noErr, Reread( spec, &read ) );
        EXPECT_EQ( ( Numbers{ kind, is.st_ino, parent.st_ino, size, allocated } ),
            ( Numbers{
                read.ioFlAttrib, read.ioDirID, read.ioFlParID, read.ioFlLgLen, read.ioFlPyLen } ) );
    }
    EXPECT_EQ( "file://" + Path( "file%20%FF" ), URLText( Find( name ) ) );
    EXPECT_EQ( "file://" + Path( "./" ), URLText( Find( "." ) ) );
}

TEST_F( Catalog, FindsAnItemAndItsFolderHoweverThePathEnds )
{
    std::filesystem::create_directories( Path( "a/b" ) );
    std::filesystem::create_symlink( "a", Path( "link" ) );
    for ( char const* path : { "a/b", "a/b/", "a//b//", "a/b/.", "a/./b/../../a/b", "link/b" } )
    {
        EXPECT_EQ( Info( "a" ).nodeID, Info( path ).parentDirID ) << path;
        EXPECT_EQ( Info( "a/b" ).nodeID, Info( path ).nodeID ) << path;
    }
    EXPECT_EQ( Info( "." ).nodeID, Info( "a/b/.." ).parentDirID );
    EXPECT_EQ( S_IFLNK, Info( "link/" ).permissions.mode & S_IFMT );
    FSRef root;
    FSCatalogInfo info = {};
    ASSERT_TRUE( Find( "/", root ) );
    ASSERT_EQ( noErr, Reread( root, &info ) );
    EXPECT_EQ( info.nodeID, info.parentDirID );
}

TEST_F( Catalog, NoticesThatAnItemOrItsFolderWentOrWasReplaced )
{
    std::filesystem::create_directory( Path( "folder" ) );
    Write( "folder/file" );
    FSRef const ref = Find( "folder/file" );
    FSSpec spec;
    Reread( ref, nullptr, &spec );
    FSRef again;
    auto const expect = [&]( OSErr ofRef, OSErr ofSpec )
    {
        EXPECT_EQ( ofRef, Reread( ref ) );
        EXPECT_EQ( ofRef == noErr, URLText( ref ) != "(null)" );
        EXPECT_EQ( ofSpec, Reread( spec ) );
        again = FSRef();
        EXPECT_EQ( ofSpec, FSpMakeFSRef( &spec, &again ) );
        EXPECT_EQ( ofSpec == noErr ? spec.name : "", again.path );
    };
    expect( noErr, noErr );
    EXPECT_EQ( ref.identity, again.identity );
    std::filesystem::remove( Path( "folder/file" ) );
    expect( fnfErr, fnfErr );
    Write( "folder/file" ); // perhaps with the same inode; an FSSpec goes by name
    expect( fnfErr, noErr );
    std::filesystem::rename( Path( "folder" ), Path( "moved" ) );
    expect( dirNFErr, dirNFErr );
    std::filesystem::create_directory( Path( "folder" ) );
    Write( "folder/file" );
    expect( fnfErr, dirNFErr );
}

TEST_F( Catalog, RefusesArgumentsThatMakeNoSense )
{
    FSRef ref;
    FSSpec const relative{ 1, 2, "file" };
    CInfoPBRec record = {};
    HFSUniStr255* const name = reinterpret_cast<HFSUniStr255*>( &record );
    FSRef const folder = Find( "." );
    record.hFileInfo.ioNamePtr = "/";
    record.hFileInfo.ioFDirIndex = 1;
    for ( OSErr const result : { FSGetCatalogInfo( nullptr, 0, nullptr, nullptr, nullptr, nullptr ),
              FSGetCatalogInfo( &folder, 0, nullptr, name, nullptr, nullptr ),
              FSGetCatalogInfo( &folder, 0, nullptr, nullptr, nullptr, &ref ), Reread( ref ),
              Reread( relative ), Reread( FSSpec() ), FSpMakeFSRef( &relative, &ref ),
              PBGetCatInfoSync( nullptr ), PBGetCatInfoSync( &record ) } )
        EXPECT_EQ( paramErr, result );
    record.hFileInfo.ioNamePtr = nullptr;
    record.hFileInfo.ioFDirIndex = 0;
    EXPECT_EQ( paramErr, PBGetCatInfoSync( &record ) );
    EXPECT_EQ( "(null)", URLText( ref ) );
    EXPECT_EQ( nullptr, CFURLCreateFromFSRef( nullptr, nullptr ) );
    EXPECT_FALSE( CFURLGetFSRef( nullptr, &ref ) || Find( Path( "missing" ), ref ) ||
                  Find( Path( std::string( 5000, 'a' ) ), ref ) );
}

TEST_F( Catalog, SaysSoWhenMemoryRunsOut )
{
    auto const action = [ref = Find( "." )]
    {
        FSSpec spec;
        if ( Reread( ref, nullptr, &spec ) == memFullErr )
            throw std::bad_alloc();
    };
    EXPECT_LT( 0, FailEachAllocation( action ) );
}
