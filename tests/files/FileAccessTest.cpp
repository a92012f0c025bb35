#include "files/FileErrors.h"
#include "files/FileLoop.h"
#include "files/FileNameErrors.h"
#include "files/FileReader.h"
#include "files/mac/UniqueName.h"
#include "files/MakeFileLocation.h"
#include "files/ReadFile.h"
#include "files/UniqueFileLocation.h"
#include "foundation/MakeString.h"
#include "streams/ReadReader.h"
#include "streams/StringReceiver.h"
#include "tests/support/InChild.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <cxxabi.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <set>
#include <sys/random.h>
#include <sys/stat.h>

namespace fs = std::filesystem;
using namespace std::string_literals;

static bool gIsGuessable = false;

// Takes the place of the C library's in this program.
extern "C" int getentropy( void* buffer, std::size_t length )
{
    std::memset( buffer, 7, length );
    return gIsGuessable || getrandom( buffer, length, 0 ) >= 0 ? 0 : -1;
}

namespace
{

std::string const kEnded = "29FileReadingLoopEndOfFileError";
std::string const kUnique = "30CreateUniqueFileLocationFailed";

FileLocation At( std::string const& path )
{
    return path.empty() ? FileLocation() : MakeFileLocation( path.c_str() );
}

// The class, with the code if it has one and "!" if that file is not named.
std::string ErrorOf( std::string const& path, std::function<void()> const& action )
{
    try
    {
        action();
        return "";
    }
    catch ( FileIOError const& error )
    {
        bool const isNamed = error.MakeErrorMessage().find( '"' + path + '"' ) != std::string::npos;
        return typeid( error ).name() + std::to_string( error.GetCode() ) + ( isNamed ? "" : "!" );
    }
    catch ( ... )
    {
        return abi::__cxa_current_exception_type()->name();
    }
}

// The names with "/" behind folders and "@" behind links.
std::multiset<std::string> ItemsIn( std::string const& path, char const* pattern = nullptr )
{
    std::multiset<std::string> items;
    for ( FileLoop loop( At( path ), pattern ); loop.Next(); )
    {
        std::string const name = MakeString( loop.Name() );
        EXPECT_EQ( path + "/" + name, loop.Location().POSIXPath() );
        items.insert( name + ( loop.IsDirectory() ? "/" : loop.IsLink() ? "@" : "" ) );
    }
    return items;
}

} // namespace

TEST( FileLoop, GivesTheItemsThatThePatternMatchesAndSkipsWhatVanishes )
{
    TemporaryFolder const folder;
    std::string const way = folder.Path( "way" ), longest = std::string( 254, 'x' ) + "\xE9";
    Shell( folder.Path(), "mkdir -p real/folder; ln -s real way; cd way; ln -s folder link; touch "
                          "b.txt b.doc 'new\nl.txt' c\xE9 c\xC3\xA9 " +
                              longest );
    std::pair<char const*, std::multiset<std::string>> const rows[] = {
        { "*.txt", { "b.txt", "new\nl.txt" } }, { "b.*", { "b.txt", "b.doc" } },
        { "c?", { "c\xE9", "c\xC3\xA9" } }, { "x*", { longest } },
        { "*l*", { "folder/", "link@", "new\nl.txt" } }, { "", {} } };
    for ( auto const& [pattern, items] : rows )
        EXPECT_EQ( items, ItemsIn( way, pattern ) ) << pattern;
    EXPECT_EQ( 8u, ItemsIn( way ).size() );
    FileLoop vanishing( At( way ) );
    ASSERT_TRUE( vanishing.Next() );
    Shell( way, "rm -r *" );
    EXPECT_FALSE( vanishing.Next() );
}

TEST( FileAccess, FailsWithAnErrorThatSaysWhy )
{
    TemporaryFolder const folder;
    mknod( folder.Path( "socket" ).c_str(), S_IFSOCK | 0600, 0 );
    Shell( folder.Path(),
        "chmod 777 .; touch file locked; mkdir -p closed listed/item; mkfifo fifo;"
        "ln -s circle circle; ln -s fifo link; chmod 0 locked closed; chmod 444 listed" );
    std::string const noFolder = "22DirectoryNotFoundError-120", missing = "17FileNotFoundError-43",
                      locked = "19FilePermissionError-5000", noFile = "13FileItemError-36",
                      empty = "22EmptyFileLocationError0!", noLoop = "21FSIteratorCreateError";
    std::tuple<std::string, std::string, std::string, std::string> const rows[] = {
        { folder.Path( "none" ), missing, missing, missing },
        { folder.Path( "none/x" ), noFolder, noFolder, noFolder },
        { folder.Path( "file" ), noFolder, "", noFolder },
        { folder.Path( "link" ), noFolder, noFile, noFolder },
        { folder.Path( "socket" ), noFolder, noFile, noFolder },
        { "/dev/zero", noFolder, noFile, noFolder },
        { folder.Path( "closed" ), locked, noFile, locked },
        { folder.Path( "locked" ), noFolder, locked, noFolder },
        { folder.Path( "circle" ), noLoop, "16FileNotOpenError-36", kUnique + "-36" },
        { "", empty, empty, empty } };
    auto const errors = [&]
    {
        BecomeOrdinaryUser();
        std::string wrong;
        for ( auto const& [path, loop, reader, unique] : rows )
        {
            FileLocation const at = At( path );
            std::pair<std::string, std::function<void()>> const calls[] = {
                { loop, [&] { FileLoop( at, "*" ); } }, { reader, [&] { FileReader( at, 0, 0 ); } },
                { unique, [&] { CreateUniqueFile( at, "a" ); } },
                { unique, [&] { CreateUniqueDirectory( at, "a" ); } } };
            for ( auto const& [error, call] : calls )
                wrong += ErrorOf( path, call ) == error ? "" : error + " " + path;
        }
        // A folder that may be listed but not searched.
        wrong += ItemsIn( folder.Path( "listed" ) ).count( "item/" ) == 1 ? "" : " not listed ";
        return wrong;
    };
    EXPECT_EQ( "", InChild( errors ) );
}

TEST( FileReader, ReadsARangeOrSaysThatTheFileEndedBefore )
{
    TemporaryFolder const folder;
    constexpr std::uint64_t kFar = 5ull << 30;
    std::ofstream( folder.Path( "file" ) ) << "0123456789";
    std::ofstream( folder.Path( "sparse" ) ).seekp( kFar ) << "end";
    std::tuple<char const*, std::uint64_t, std::uint64_t, std::string> const rows[] = {
        { "file", 0, 0, "" }, { "file", 0, 10, "0123456789" }, { "file", 3, 4, "3456" },
        { "file", UINT64_MAX, 0, "" }, { "file", 10, 1, kEnded },
        { "file", 5, 6, "56789" + kEnded }, { "file", 1, UINT64_MAX, "123456789" + kEnded },
        { "file", INT64_MAX, 1, kEnded }, { "file", UINT64_MAX, UINT64_MAX, kEnded },
        { "sparse", kFar + 1, 3, "nd" + kEnded } };
    for ( auto const& [name, offset, length, expected] : rows )
    {
        std::string bytes;
        StringReceiver receiver( bytes );
        std::string const error = ErrorOf( "", [&, offset = offset, length = length, name = name]
            { ReadFile( At( folder.Path( name ) ), offset, length, receiver ); } );
        EXPECT_EQ( expected, bytes + error ) << offset << "+" << length;
    }
}

TEST( FileReader, ReadsAFileToItsEndWhateverSizeItReportsAndToALimit )
{
    TemporaryFolder const folder;
    std::string const path = folder.Path( "file" );
    fs::create_symlink( "file", folder.Path( "link" ) );
    for ( unsigned const size : { 0u, 1u, 65537u } )
    {
        std::string const content( size, 'x' );
        std::ofstream( path ) << content;
        EXPECT_EQ( content, ReadFile( At( folder.Path( "link" ) ), size ) );
        FileReader reader( At( path ) );
        Buffer full;
        reader >> full;
        EXPECT_EQ( content, ReadReader( reader ) );
        reader.Reset();
        std::ofstream( path, std::ios::app ) << "more";
        EXPECT_EQ( content + "more", ReadReader( reader ) );
        EXPECT_EQ(
            "13FileItemError-36", ErrorOf( path, [&] { ReadFile( At( path ), size + 3 ); } ) );
    }
    EXPECT_NE( std::string::npos, ReadFile( At( "/proc/self/status" ), 100000 ).find( "Pid:" ) );
}

TEST( UniqueName, HasEachDigitInEachPlace )
{
    std::array<std::set<char>, 32> digits;
    for ( int i = 0; i < 600; i++ )
    {
        std::string const name = MacintoshPlatform::MakeUniqueName( "p" );
        ASSERT_EQ( digits.size() + 1, name.size() );
        for ( std::size_t place = 0; place < digits.size(); place++ )
        {
            digits[place].insert( name[place + 1] );
        }
    }
    EXPECT_EQ( 32, std::ranges::count( digits, 16U, &std::set<char>::size ) );
}

TEST( UniqueFileLocation, MakesPrivateItemsUnderNewNamesAndTakesNone )
{
    TemporaryFolder const folder;
    std::set<std::string> endings;
    FileLocation const at = At( folder.Path() );
    for ( auto const& [create, mode] : { std::pair( &CreateUniqueFile, "-rw-------\n" ),
              { &CreateUniqueDirectory, "drwx------\n" } } )
    {
        for ( std::string const& prefix : { ""s, std::string( 223, 'x' ), "\xFF"s } )
        {
            std::string const path = create( at, prefix ).POSIXPath();
            EXPECT_EQ( mode, Shell( "/", "stat -c %A " + path ) );
            EXPECT_TRUE( path.starts_with( folder.Path( prefix ) ) );
            endings.insert( path.substr( path.size() - 32 ) );
        }
        EXPECT_THROW( create( at, "a/b" ), IllegalFileName );
        EXPECT_THROW( create( at, std::string_view( "a\0b", 3 ) ), IllegalFileName );
        EXPECT_THROW( create( at, std::string( 224, 'x' ) ), IllegalFileNameLength );
        gIsGuessable = true;
        fs::path const taken = create( at, "" ).POSIXPath();
        fs::remove( taken );
        fs::create_symlink( folder.Path( "victim" ), taken );
        EXPECT_EQ(
            kUnique + "-48", ErrorOf( folder.Path(), [&, create = create] { create( at, "" ); } ) );
        fs::remove( taken );
        gIsGuessable = false;
    }
    EXPECT_EQ( 6u, endings.size() );
    EXPECT_TRUE( fs::remove( CreateTemporaryFile( "a" ).POSIXPath() ) );
    EXPECT_TRUE( fs::remove( CreateTemporaryDirectory( "a" ).POSIXPath() ) );
}
