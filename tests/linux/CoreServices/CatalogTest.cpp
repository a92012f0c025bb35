#include <CoreServices/CoreServices.h>

#include "linux/CoreFoundation/CFURLObject.h"
#include "tests/linux/CoreFoundation/Held.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <new>
#include <sys/stat.h>
#include <tuple>
#include <vector>

namespace
{

using ::testing::ElementsAre;

struct Catalog : ::testing::Test
{
    std::string Path( std::string const& name ) const { return mFolder.Path( name ); }

    void Write( std::string const& name ) const { std::ofstream( Path( name ) ) << "12345"; }

    TemporaryFolder mFolder;
};

// A reference through the directory form of the URL, as locations have it; empty without an item.
FSRef Find( std::string const& path )
{
    FSRef ref;
    bool const isFound = CFURLGetFSRef( Held<CFURLRef>( CreateFileURL( path, true ) ).get(), &ref );
    EXPECT_NE( isFound, ref.path.empty() );
    return ref;
}

OSErr Reread( FSRef const& ref, FSCatalogInfo* info = nullptr, FSSpec* spec = nullptr )
{
    return FSGetCatalogInfo( &ref, kFSCatInfoGettableInfo, info, nullptr, spec, nullptr );
}

FSCatalogInfo Info( std::string const& path )
{
    FSCatalogInfo info = {};
    EXPECT_EQ( noErr, Reread( Find( path ), &info ) ) << path;
    return info;
}

OSErr Reread( FSSpec const& spec, HFileInfo* record = nullptr )
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

std::string URLText( FSRef const& ref )
{
    Held<CFURLRef> const url( CFURLCreateFromFSRef( nullptr, &ref ) );
    return url ? url->parts.Text() : "(null)";
}

UInt64 Seconds( UTCDateTime const& time )
{
    return UInt64{ time.highSeconds } << 32 | time.lowSeconds;
}

} // namespace

TEST_F( Catalog, EntryAndRecordSayWhatTheFileSystemSays )
{
    std::string const file = Path( "file \xff" );
    Write( "file \xff" );
    timespec const times[] = { { -3'000'000'000, 500'000'000 }, { 4'294'967'296, 999'999'999 } };
    ASSERT_EQ( 0, utimensat( AT_FDCWD, file.c_str(), times, 0 ) );
    for ( auto const& [path, folder, kind] :
        { std::tuple( file, Path( "." ), UInt64( 0 ) ), { Path( "." ), Path( ".." ), 0x10 } } )
    {
        struct stat is = {};
        struct stat parent = {};
        ASSERT_EQ( 0, stat( path.c_str(), &is ) + stat( folder.c_str(), &parent ) );
        auto const size = kind == 0 ? 5u : 0u;
        auto const allocated = kind == 0 ? static_cast<UInt64>( is.st_blocks ) * 512 : 0;
        FSCatalogInfo info = {};
        FSSpec spec;
        HFileInfo read;
        EXPECT_EQ( noErr, Reread( Find( path ), &info, &spec ) );
        EXPECT_EQ( noErr, Reread( spec, &read ) );
        EXPECT_THAT(
            ( std::vector<UInt64>{ info.nodeFlags, info.volume, info.parentDirID, info.nodeID,
                info.dataLogicalSize, info.dataPhysicalSize, info.permissions.mode,
                info.permissions.userID, info.permissions.groupID } ),
            ElementsAre( kind, is.st_dev, parent.st_ino, is.st_ino, size, allocated, is.st_mode,
                is.st_uid, is.st_gid ) );
        // What a file system cannot keep it clamps; compare with what it kept.
        EXPECT_EQ( static_cast<UInt64>( is.st_mtim.tv_sec + 2'082'844'800 ),
            Seconds( info.contentModDate ) );
        EXPECT_EQ( is.st_mtim.tv_nsec * 65536 / 1'000'000'000, info.contentModDate.fraction );
        EXPECT_EQ( static_cast<UInt64>( is.st_atim.tv_sec + 2'082'844'800 ) & 0xffff'ffff'ffff,
            Seconds( info.accessDate ) );
        EXPECT_THAT( ( std::vector<UInt64>{ read.ioFlAttrib, read.ioDirID, read.ioFlParID,
                         read.ioFlLgLen, read.ioFlPyLen } ),
            ElementsAre( kind, is.st_ino, parent.st_ino, size, allocated ) );
    }
    EXPECT_EQ( "file://" + Path( "file%20%FF" ), URLText( Find( file ) ) );
    EXPECT_EQ( "file://" + Path( "./" ), URLText( Find( Path( "." ) ) ) );
}

TEST_F( Catalog, FindsAnItemAndItsFolderHoweverThePathEnds )
{
    std::filesystem::create_directories( Path( "a/b" ) );
    std::filesystem::create_symlink( "a", Path( "link" ) );
    for ( auto const& [path, folder, item] :
        { std::tuple( "a/b", "a", "a/b" ), { "a//b//", "a", "a/b" }, { "a/b/.", "a", "a/b" },
            { "link/b", "a", "a/b" }, { "a/./b/../../a/b", "a", "a/b" }, { "a/b/..", ".", "a" } } )
    {
        EXPECT_EQ( Info( Path( folder ) ).nodeID, Info( Path( path ) ).parentDirID ) << path;
        EXPECT_EQ( Info( Path( item ) ).nodeID, Info( Path( path ) ).nodeID ) << path;
    }
    EXPECT_EQ( S_IFLNK, Info( Path( "link/" ) ).permissions.mode & S_IFMT );
    EXPECT_EQ( Info( "/" ).nodeID, Info( "/" ).parentDirID );
}

TEST_F( Catalog, NoticesThatAnItemOrItsFolderWentOrWasReplaced )
{
    std::filesystem::create_directory( Path( "folder" ) );
    Write( "folder/file" );
    FSRef const ref = Find( Path( "folder/file" ) );
    FSSpec spec;
    Reread( ref, nullptr, &spec );
    auto const expect = [&]( OSErr ofRef, OSErr ofSpec )
    {
        EXPECT_EQ( ofRef, Reread( ref ) );
        EXPECT_EQ( ofRef == noErr, URLText( ref ) != "(null)" );
        EXPECT_EQ( ofSpec, Reread( spec ) );
        FSRef again;
        EXPECT_EQ( ofSpec, FSpMakeFSRef( &spec, &again ) );
        EXPECT_EQ( ofSpec == noErr ? spec.name : "", again.path );
    };
    expect( noErr, noErr );
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
    FSRef const folder = Find( Path( "." ) );
    FSSpec const relative{ 1, 2, "file" };
    CInfoPBRec nameless = {};
    CInfoPBRec indexed = {};
    HFSUniStr255* const name = reinterpret_cast<HFSUniStr255*>( &nameless );
    indexed.hFileInfo.ioNamePtr = "/";
    indexed.hFileInfo.ioFDirIndex = 1;
    for ( OSErr const result : { FSGetCatalogInfo( nullptr, 0, nullptr, nullptr, nullptr, nullptr ),
              FSGetCatalogInfo( &folder, 0, nullptr, name, nullptr, nullptr ),
              FSGetCatalogInfo( &folder, 0, nullptr, nullptr, nullptr, &ref ), Reread( ref ),
              Reread( relative ), Reread( FSSpec() ), FSpMakeFSRef( &relative, &ref ),
              PBGetCatInfoSync( nullptr ), PBGetCatInfoSync( &nameless ),
              PBGetCatInfoSync( &indexed ) } )
        EXPECT_EQ( paramErr, result );
    EXPECT_EQ( "(null)", URLText( ref ) );
    EXPECT_EQ( nullptr, CFURLCreateFromFSRef( nullptr, nullptr ) );
    EXPECT_FALSE( CFURLGetFSRef( nullptr, &ref ) );
    for ( std::string const& path : { Path( "missing" ), Path( std::string( 5000, 'a' ) ) } )
        EXPECT_EQ( "", Find( path ).path );
}
