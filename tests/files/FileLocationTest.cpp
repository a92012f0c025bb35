#include "files/FileErrors.h"
#include "files/FileLocationAncestry.h"
#include "files/FileLocationDate.h"
#include "files/FileLocationWithWildcard.h"
#include "files/FileNameErrors.h"
#include "files/mac/FileErrors.h"
#include "files/mac/MakeFileLocation.h"
#include "files/mac/SpecialFolders.h"
#include "files/MakeFileLocation.h"
#include "foundation/MakeString.h"
#include "platform/CFErrors.h"
#include "platform/CFStrings.h"
#include "tests/support/TemporaryFolder.h"

#include <CoreServices/Folders.h>

#include <gmock/gmock.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <tuple>

namespace
{

using namespace std::string_literals;
using namespace MacintoshPlatform;
using Location = ::FileLocation;
using PlatformLocation = MacintoshPlatform::FileLocation;

Location At( std::string const& path )
{
    return ::MakeFileLocation( ConstData( path ) );
}

std::string const kHere = std::filesystem::current_path();

std::string Text( PlatformLocation const& location )
{
    return MakeString( CFURLGetString( location.URL() ), kCFStringEncodingUTF8, 0 );
}

} // namespace

TEST( Location, IsMadeFromEveryFormOfAPathAndOfSpecialFolders )
{
    std::string const path = "/a \xc3\xa9";
    for ( PlatformLocation const& location :
        { ::MakeFileLocation( path.c_str() ).Platform(), At( path ).Platform(),
            MacintoshPlatform::MakeFileLocation( "/a \xe9/x", 4, kCFStringEncodingISOLatin1, 0 ) } )
        EXPECT_EQ( "file:///a%20%C3%A9/", Text( location ) );
    EXPECT_EQ( "file:///a/", Text( ::MakeFileLocation( UStringRef<UTF8>( "/a/" ) ).Platform() ) );
    EXPECT_THROW( At( "/\xff" ), CFStringCreateError );
    EXPECT_THROW( At( "/a\0b"s ), CFURLCreateWithFileSystemPathFailed );
    EXPECT_THROW( MacintoshPlatform::MakeFileLocation( "/a", 2, kCFStringEncodingUTF8, 2 ),
        CFURLCreateWithFileSystemPathFailed );
    EXPECT_TRUE( MacintoshPlatform::MakeFileLocation( kTemporaryFolderType, kLocalDomain, 1 )
                     .IsDirectory() );
    EXPECT_THROW(
        MacintoshPlatform::MakeFileLocation( 0, kUserDomain, 1 ), CannotCreateSpecialFolder );
    EXPECT_FALSE( IsAbsolutePath( nullptr ) || IsAbsolutePath( "a/" ) || !IsAbsolutePath( "/" ) );
}

TEST( Location, SharesItsURLAndItsPathWithItsCopies )
{
    PlatformLocation const original = At( "/a" ).Platform();
    PlatformLocation assigned = At( "/b" ).Platform();
    EXPECT_EQ( "/b", assigned.POSIXPath() );
    assigned = PlatformLocation( original );
    assigned = *&assigned;
    EXPECT_EQ( "/a", assigned.POSIXPath() );
    EXPECT_EQ( 2, CFGetRetainCount( original.URL() ) );
}

TEST( LocationPath, IsAbsoluteInTheFileSystemsBytesAndBoundedAndTellsEquality )
{
    for ( auto const& [path, expected] : { std::pair( "/tmp///"s, "/tmp"s ), { "///", "/" },
              { "a b/%41", kHere + "/a b/%41" }, { "", kHere }, { "/a/../b", "/a/../b" } } )
        for ( Location const& made :
            { At( path ), Location( ::MakeFileLocationOfBytes( ConstData( path ) ) ) } )
            EXPECT_EQ( expected, made.POSIXPath() );
    EXPECT_EQ( "/\xff", ::MakeFileLocationOfBytes( ConstData( "/\xff"s ) ).POSIXPath() );
    EXPECT_THROW(
        ::MakeFileLocationOfBytes( ConstData( "/a\0b"s ) ), CFURLCreateWithFileSystemPathFailed );
    EXPECT_EQ( 1023U, At( "/" + std::string( 1022, 'a' ) ).POSIXPath().size() );
    EXPECT_THROW( At( "/" + std::string( 1023, 'a' ) ).POSIXPath(), FullPathFailed );
    EXPECT_THROW( Location().POSIXPath(), FullPathFailed );
    unsigned char buffer[5];
    EXPECT_THROW( At( "/abcd" ).Platform().POSIXPath( buffer, 5 ), FullPathFailed );

    Location const here = At( "." );
    EXPECT_TRUE( here.Equal( here ) );
    EXPECT_TRUE( Location().Equal( Location() ) && At( "/tmp" ).Equal( At( "/tmp/" ) ) );
    EXPECT_FALSE( Location().Equal( At( "/" ) ) || At( "/" ).Equal( Location() ) ||
                  At( "/." ).IsRoot() || At( "/a/../b" ).Equal( At( "/b" ) ) );
}

// The code that an error of this class carries.
template<class Error>
std::optional<int> CodeOf( std::function<void()> const& action )
{
    try
    {
        action();
    }
    catch ( Error const& error )
    {
        return error.GetCode();
    }
    return {};
}

TEST( Location, LeadsUpAndDownAndSidewaysAndToRelativePaths )
{
    Location const folder = At( "/a/\xc3\xa9" );
    FileName const name( "100% *", kCFStringEncodingUTF8 );
    EXPECT_EQ( 1, folder.Name().Length() );
    EXPECT_EQ( "/a/\xc3\xa9/100% *", folder.Child( name ).POSIXPath() );
    EXPECT_EQ( "/a/100% *", folder.Sibling( name ).POSIXPath() );
    EXPECT_EQ( "/a", Location( folder, "b" ).Parent().Parent().POSIXPath() );
    EXPECT_EQ( "/b", Location( At( "/" ), ConstData( "b" ) ).POSIXPath() );
    EXPECT_THROW( Location( folder, "b/c" ), IllegalFileName );
    EXPECT_THROW( Location( folder, "" ), IllegalFileNameLength );
    EXPECT_EQ( 0, CodeOf<InvalidParentURL>( [] { Location( Location(), "b" ); } ) );
    EXPECT_THROW( At( "/" ).Name(), IllegalFileNameLength );
    EXPECT_EQ( 0, CodeOf<RootHasNoParent>( [&] { At( "/" ).Sibling( name ); } ) );
    EXPECT_THROW( At( "/missing/a" ).Platform().ParentRef(), CFURLGetFSRefFailed );
    EXPECT_TRUE( PlatformLocation( At( "/missing" ).Platform().ParentRef() ).IsRoot() );

    Location const base = At( "/a/b" );
    for ( auto const& [path, expected] :
        { std::pair( "c/d", "/a/b/c/d" ), { "../c", "/a/c" }, { "/c", "/c" }, { "", "/a/b" } } )
        EXPECT_EQ( expected, ::MakeRelativeFileLocation( base, path ).POSIXPath() );
    EXPECT_EQ( "/a/b/c", ::MakeRelativeFileLocation( base, UStringRef<UTF8>( "c" ) ).POSIXPath() );
    EXPECT_TRUE( ::MakeRelativeFileLocation( Location(), "c" ).Equal( At( "c" ) ) );
}

TEST( WildcardLocation, IsTakenApartAtItsLastComponent )
{
    Location out;
    for ( auto const& [path, pattern, location] : { std::tuple( "/a/b/*.txt", "*.txt"s, "/a/b"s ),
              { "/a/*/c", "-", "/a/*/c" }, { "*.log", "*.log", kHere }, { "/?", "?", "/" } } )
    {
        char const* const found = MakeFileLocationWithWildcard( path, out );
        EXPECT_EQ( pattern, found != nullptr ? found : "-" );
        EXPECT_EQ( location, out.POSIXPath() );
    }
    for ( char const* const none : { "", static_cast<char const*>( nullptr ) } )
        EXPECT_THROW( MakeFileLocationWithWildcard( none, out ), EmptyFileLocationError );
    EXPECT_THROW( MakeFileLocationWithWildcard( "/\xff/*", out ), CFStringCreateError );
    EXPECT_EQ( "/", out.POSIXPath() );
}

TEST( Ancestry, GoesByTheTextOfPathsAndAlwaysEnds )
{
    std::tuple<char const*, char const*, bool> const rows[] = { { "/", "/a//b", true },
        { "/a", "/a/b", true }, { "/a", "/a//b", true }, { "/a/b", "/a", false },
        { "/a", "/ab", false }, { "/x", "/", false }, { "/", "relative", true },
        { "/x", "../../../../../../..", false }, { "/x", "/a/../..", false },
        { "/a", "/a/../b", false }, { "/x", "/.", false } };
    for ( auto const& [ancestor, item, expected] : rows )
        for ( auto const test : { EqualOrDescendant, IsDescendant } )
            EXPECT_EQ( expected, test( At( ancestor ), At( item ) ) ) << item;
    EXPECT_TRUE(
        EqualOrDescendant( At( "/a" ), At( "/a/" ) ) && !IsDescendant( At( "/a" ), At( "/a/" ) ) );
    EXPECT_THROW( EqualOrDescendant( At( "/" ), Location() ), EmptyFileLocationError );
    EXPECT_THROW( IsDescendant( Location(), Location() ), EmptyFileLocationError );
}

TEST( DateInAName, IsReadWithoutLookingForDigits )
{
    unsigned year, month, day;
    for ( auto const& [path, expected] :
        { std::pair( "/a/20240131_x", std::tuple( 2024U, 1U, 31U ) ),
            { "/...0A0.0x", { 281940U, 170U, 2540U } } } ) // "." is 254, "A" 17
    {
        GetDateFromNameInFileLocation( At( path ), year, month, day );
        EXPECT_EQ( expected, std::tuple( year, month, day ) );
    }
    EXPECT_THROW(
        GetDateFromNameInFileLocation( At( "/20240131" ), year, month, day ), IllegalFileName );
}

TEST( Location, KnowsWhatItsItemIsAndWhereThatLeads )
{
    TemporaryFolder const folder;
    std::string const here = folder.Path();
    std::string const link = folder.Path( "b" );
    Shell( here, "mkfifo pipe; ln -s . a; ln -s a b; ln -s c c" );
    bool isFolder = false;
    bool isAlias = false;
    short code = 0;
    // File, directory, symbolic link (by the mode's bits), alias; the last target and the next one.
    for ( auto const& [path, kind, last, next] : { std::tuple( here, "-d--"s, here, here ),
              { here + "/pipe", "f---", "", "" }, { "/etc/passwd", "f-s-", "", "" },
              { "/dev/null", "f-s-", "", "" }, { link, "f-sa", here, here + "/a" },
              { link + "/", "f-sa", here, here + "/a" }, { here + "/c", "f-s-", "loops", "" } } )
    {
        SCOPED_TRACE( path );
        PlatformLocation const item = At( path ).Platform();
        bool const isSymLink = item.IsSymLink();
        EXPECT_EQ( kind, ( item.IsFile() ? "f"s : "-" ) + ( item.IsDirectory() ? 'd' : '-' ) +
                             ( isSymLink ? 's' : '-' ) + ( item.IsAlias() ? 'a' : '-' ) );
        EXPECT_TRUE( item.Exists() && item.IsLink() == isSymLink );
        EXPECT_EQ( next.empty() ? path : next,
            item.ResolveAliasFile( false, isFolder, isAlias, code ).POSIXPath() );
        PlatformLocation const found = item.ResolveAliasFile( true, isFolder, isAlias, code );
        EXPECT_EQ( std::tuple( last == here, kind[3] == 'a', last == "loops" ? -43 : 0 ),
            std::tuple( isFolder, isAlias, code ) );
        EXPECT_EQ( code, found.URL() == nullptr ? -43 : 0 );
        EXPECT_TRUE( code != 0 || Location( found ).Equal( At( last.empty() ? path : last ) ) );
    }
    // Often a link to "usr/bin".
    Location const bin = At( "/bin" ).Platform().ResolveAliasFile( false, isFolder, isAlias, code );
    EXPECT_FALSE( bin.POSIXPath().starts_with( "//" ) );
}

TEST( Location, OfNoItemIsNormalUntilOneIsRequired )
{
    for ( auto const& [location, name] : { std::pair( At( "/missing" ), " on \"/missing\"" ),
              { At( "/etc/passwd/x" ), " on \"/etc/passwd/x\"" }, { Location(), "" },
              { At( "/" + std::string( 2000, 'a' ) ), "" } } )
    {
        EXPECT_FALSE( location.Exists() || location.IsFile() || location.IsDirectory() );
        EXPECT_THROW( location.IsLink(), FileNotFoundError );
        auto const isNamed = testing::ThrowsMessage<FileNotFoundError>(
            "File error \"17FileNotFoundError\""s + name );
        EXPECT_THAT( [&location = location] { location.Platform().IsAlias(); }, isNamed );
    }
    EXPECT_EQ( nullptr, PlatformLocation( CFURLRef() ).URL() );
}
