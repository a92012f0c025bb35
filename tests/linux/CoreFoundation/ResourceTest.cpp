#include <CoreFoundation/CFBundle.h>
#include <CoreFoundation/CFURLAccess.h>

#include "linux/CoreFoundation/CFURLObject.h"
#include "tests/linux/CoreFoundation/Held.h"
#include "tests/support/InChild.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <numeric>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>

namespace
{

// What the process's locale for messages is, as far as bundles learn.
char gLocale[16] = "C";

} // namespace

// Stands in for the C library's function, since no other locale need be installed.
extern "C" char* setlocale( int, char const* ) noexcept
{
    return gLocale;
}

namespace
{

using namespace std::string_literals;
namespace fs = std::filesystem;
using Bundle = std::unique_ptr<CFBundleObject, CallCFRelease>;

constexpr char kList[] = "<dict><key>Name</key><string>A</string></dict>";

Bundle BundleAt( std::string const& path )
{
    Held<CFURLRef> const url( CreateFileURL( path, true ) );
    return Bundle( CFBundleCreate( nullptr, url.get() ) );
}

void Write( std::string const& path, std::string const& content )
{
    fs::create_directories( fs::path( path ).parent_path() );
    std::ofstream( path ) << content;
}

// The path of the resource, with a slash at its end for a folder, or "(null)".
std::string Resource(
    CFBundleRef bundle, char const* name, char const* type, char const* folder = "" )
{
    Held<CFStringRef> const typeName = *type != 0 ? String( type ) : nullptr;
    Held<CFURLRef> const url( CFBundleCopyResourceURL(
        bundle, String( name ).get(), typeName.get(), String( folder ).get() ) );
    return url ? Unescape( url->parts.path ) : "(null)";
}

// The content of the resource, or the error's code as text.
std::string Read( CFURLRef url )
{
    CFDataRef data = reinterpret_cast<CFDataRef>( &data );
    CFDictionaryRef properties = reinterpret_cast<CFDictionaryRef>( &properties );
    SInt32 code = 77;
    bool const isRead = CFURLCreateDataAndPropertiesFromResource(
                            nullptr, url, &data, &properties, nullptr, &code ) != 0;
    Held<CFDataRef> const owner( data );
    EXPECT_EQ( nullptr, properties );
    EXPECT_EQ( isRead, code == 0 );
    EXPECT_EQ( isRead, data != nullptr );
    return data != nullptr ? Bytes( data ) : std::to_string( code );
}

// Reads through the URL in directory form, as locations have it.
std::string Read( std::string const& path )
{
    return Read( Held<CFURLRef>( CreateFileURL( path, true ) ).get() );
}

} // namespace

TEST( MainBundle, IsFoundFromTheRunningProgramEvenWithoutAFolder )
{
    fs::path const program = fs::read_symlink( "/proc/self/exe" );
    fs::path const folder = program.parent_path().parent_path() / "share" / program.filename();
    CFBundleRef const bundle = CFBundleGetMainBundle();
    ASSERT_NE( nullptr, bundle );
    EXPECT_EQ( bundle, CFBundleGetMainBundle() );
    EXPECT_EQ( "<dict></dict>", Describe( CFBundleGetInfoDictionary( bundle ) ) );

    Write( folder / "Script.sh", "" );
    EXPECT_EQ( folder / "Script.sh", Resource( bundle, "Script", "sh" ) );
    fs::remove_all( folder );
    EXPECT_EQ( "(null)", Resource( bundle, "Script", "sh" ) );
}

TEST( Bundle, HasTheDictionaryOfItsInfoFileAndAnEmptyOneOtherwise )
{
    TemporaryFolder const folder;
    std::string const file = folder.Path( "Info.plist" );
    EXPECT_EQ( nullptr, BundleAt( file ) );
    for ( std::string const content : { kList, "<array/>", "no list", "" } )
    {
        Write( file, content );
        Bundle const bundle = BundleAt( folder.Path() );
        CFDictionaryRef const info = CFBundleGetInfoDictionary( bundle.get() );
        EXPECT_EQ( content == kList ? kList : "<dict></dict>", Describe( info ) );
        EXPECT_EQ( info, CFBundleGetInfoDictionary( bundle.get() ) );
    }
    EXPECT_EQ( nullptr, BundleAt( file ) );
    EXPECT_EQ( nullptr, CFBundleCreate( nullptr, nullptr ) );
}

TEST( Bundle, LooksForResourcesInItsFolderFirstAndForLocalOnesInItsLanguageFolder )
{
    TemporaryFolder const folder;
    Bundle const bundle = BundleAt( folder.Path() );
    for ( auto const& [path, name, type, subfolder] :
        { std::tuple( "en.lproj/a.sh", "a", "sh", "" ), { "a.sh", "a", "sh", "" },
            { "a.sh", "a.sh", "", "" }, { "en.lproj/in here/a.sh", "a", "sh", "in here" } } )
    {
        Write( folder.Path( path ), "" );
        EXPECT_EQ( folder.Path( path ), Resource( bundle.get(), name, type, subfolder ) );
    }
    EXPECT_EQ( "(null)", Resource( bundle.get(), "a", "sh", "elsewhere" ) );
    EXPECT_EQ( folder.Path( "en.lproj/" ), Resource( bundle.get(), "en", "lproj" ) );
    Write( folder.Path( "InfoPlist.strings" ), kList );
    EXPECT_EQ( nullptr, CFBundleGetLocalInfoDictionary( bundle.get() ) );

    for ( std::string const name : { "en", "de", "de_AT", "C", "../x", "POSIX" } )
        Write( folder.Path( name + ".lproj/b" ), "" );
    for ( auto const& [locale, language] : { std::pair( "C.UTF-8", "en" ), { "POSIX", "en" },
              { "fr_FR", "en" }, { "../x", "en" }, { "de_CH.UTF-8", "de" }, { "de@euro", "de" },
              { "de_AT.UTF-8", "de_AT" }, { "C", "en" } } )
    {
        std::strncpy( gLocale, locale, sizeof gLocale - 1 );
        EXPECT_EQ( folder.Path( language ) + ".lproj/b", Resource( bundle.get(), "b", "" ) )
            << locale;
    }
    fs::remove_all( folder.Path( "../x.lproj" ) );
}

TEST( Resource, IsReadWholeWhateverItsLength )
{
    TemporaryFolder const folder;
    std::string const path = folder.Path( "a file \xff" );
    for ( std::size_t const length : { 0u, 1u, 4095u, 4096u, 4097u, 1'000'000u } )
    {
        std::string content( length, 'a' );
        std::iota( content.begin(), content.end(), 'a' );
        Write( path, content );
        EXPECT_TRUE( content == Read( path ) ) << length;
    }
    fs::resize_file( path, kCFURLMaximumResourceLength );
    EXPECT_EQ( kCFURLMaximumResourceLength, Read( path ).size() );
    EXPECT_LT( 8192u, Read( "/proc/self/smaps" ).size() ) << "a file not knowing its length";
}

TEST( Resource, IsRefusedWithItsCodeWhenItIsNoReadableRegularFile )
{
    TemporaryFolder const folder;
    Write( folder.Path( "file" ), "x" );
    Write( folder.Path( "huge" ), "" );
    fs::resize_file( folder.Path( "huge" ), kCFURLMaximumResourceLength + 1 );
    Shell( folder.Path(), "mkfifo pipe; ln -s pipe link; ln -s loop loop; ln -s file good" );
    ASSERT_EQ( 0, mknod( folder.Path( "socket" ).c_str(), S_IFSOCK | 0600, 0 ) );
    int const free = dup( 0 );
    close( free );
    for ( char const* name : { "missing", "missing/x", "file/x" } )
        EXPECT_EQ( std::to_string( kCFURLResourceNotFoundError ), Read( folder.Path( name ) ) );
    for ( std::string const& path :
        { folder.Path(), folder.Path( "pipe" ), folder.Path( "link" ), folder.Path( "loop" ),
            folder.Path( "socket" ), folder.Path( "huge" ), folder.Path( std::string( 300, 'a' ) ),
            "/"s, "/dev/zero"s, "/dev/tty"s, "/proc/self/mem"s } )
        EXPECT_EQ( std::to_string( kCFURLUnknownError ), Read( path ) ) << path;
    EXPECT_EQ( "x", Read( folder.Path( "good" ) ) );
    EXPECT_EQ( free, dup( 0 ) ) << "no descriptor is lost";
    close( free );
    auto const readAsOrdinaryUser = []
    {
        BecomeOrdinaryUser(); // permissions do not bind root
        TemporaryFolder const own;
        Write( own.Path( "file" ), "x" );
        fs::permissions( own.Path( "file" ), fs::perms::none );
        return Read( own.Path( "file" ) );
    };
    EXPECT_EQ(
        std::to_string( kCFURLResourceAccessViolationError ), InChild( readAsOrdinaryUser ) );
}

TEST( Resource, OfAnotherKindOfURLIsRefused )
{
    std::string const unknown = std::to_string( kCFURLUnknownSchemeError );
    for ( auto const& [text, expected] : { std::pair( "http:///etc/passwd", unknown ),
              { "/dev/null", unknown }, { "file:///dev/null%00x", unknown },
              { "FILE://host/proc/sys/kernel/ostype?q#f", "Linux\n" } } )
        EXPECT_EQ( expected,
            Read( Held<CFURLRef>( CFURLCreateWithString( nullptr, String( text ).get(), nullptr ) )
                      .get() ) )
            << text;
    EXPECT_EQ( std::to_string( kCFURLImproperArgumentsError ), Read( CFURLRef() ) );
}
