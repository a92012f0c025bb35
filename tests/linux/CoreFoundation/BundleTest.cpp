#include <CoreFoundation/CFBundle.h>

#include "linux/CoreFoundation/CFURLObject.h"
#include "tests/linux/CoreFoundation/Held.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>

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

using Bundle = std::unique_ptr<CFBundleObject, CallCFRelease>;

constexpr char kList[] = "<dict><key>Name</key><string>A</string></dict>";

Bundle BundleAt( std::string const& path )
{
    Held<CFURLRef> const url( CreateFileURL( path, true ) );
    return Bundle( CFBundleCreate( nullptr, url.get() ) );
}

void Write( std::string const& path, std::string const& content )
{
    std::filesystem::create_directories( std::filesystem::path( path ).parent_path() );
    std::ofstream( path ) << content;
}

// The path of the resource, with a slash at its end for a folder, or "(null)".
std::string Resource(
    CFBundleRef bundle, char const* name, char const* type, char const* folder = nullptr )
{
    Held<CFStringRef> const typeName = type != nullptr ? String( type ) : nullptr;
    Held<CFStringRef> const folderName = folder != nullptr ? String( folder ) : nullptr;
    Held<CFURLRef> const url(
        CFBundleCopyResourceURL( bundle, String( name ).get(), typeName.get(), folderName.get() ) );
    return url ? Unescape( url->parts.path ) : "(null)";
}

} // namespace

TEST( MainBundle, IsFoundFromTheRunningProgramEvenWithoutAFolder )
{
    std::filesystem::path const program = std::filesystem::read_symlink( "/proc/self/exe" );
    std::filesystem::path const folder =
        program.parent_path().parent_path() / "share" / program.filename();
    CFBundleRef const bundle = CFBundleGetMainBundle();
    ASSERT_NE( nullptr, bundle );
    EXPECT_EQ( bundle, CFBundleGetMainBundle() );
    EXPECT_EQ( "{}", Describe( CFBundleGetInfoDictionary( bundle ) ) );
    EXPECT_EQ( nullptr, CFBundleGetLocalInfoDictionary( bundle ) );

    Write( folder / "Script.sh", "" );
    EXPECT_EQ( folder / "Script.sh", Resource( bundle, "Script", "sh" ) );
    std::filesystem::remove_all( folder );
    EXPECT_EQ( "(null)", Resource( bundle, "Script", "sh" ) );
}

TEST( Bundle, HasTheDictionaryOfItsInfoFileAndAnEmptyOneOtherwise )
{
    TemporaryFolder const folder;
    std::string const file = folder.Path( "Info.plist" );
    for ( std::string const content : { kList, "<array/>", "no list", "" } )
    {
        Write( file, content );
        Bundle const bundle = BundleAt( folder.Path() );
        CFDictionaryRef const info = CFBundleGetInfoDictionary( bundle.get() );
        EXPECT_EQ( content == kList ? "{\"Name\"=\"A\"}" : "{}", Describe( info ) );
        EXPECT_EQ( info, CFBundleGetInfoDictionary( bundle.get() ) );
    }
    std::filesystem::remove( file );
    EXPECT_EQ( "{}", Describe( CFBundleGetInfoDictionary( BundleAt( folder.Path() ).get() ) ) );
    EXPECT_EQ( nullptr, BundleAt( file ) );
    Write( file, "" );
    EXPECT_EQ( nullptr, BundleAt( file ) );
    EXPECT_EQ( nullptr, CFBundleCreate( nullptr, nullptr ) );
}

TEST( Bundle, LooksForResourcesInItsFolderFirstAndForLocalOnesInItsLanguageFolder )
{
    TemporaryFolder const folder;
    Bundle const bundle = BundleAt( folder.Path() );
    EXPECT_EQ( "(null)", Resource( bundle.get(), "a", "sh" ) );

    struct
    {
        std::string path;
        char const *name, *type, *folder;
    } const rows[] = { { "en.lproj/a.sh", "a", "sh", nullptr }, { "a.sh", "a", "sh", nullptr },
        { "a.sh", "a.sh", nullptr, nullptr }, { "en.lproj/in here/a.sh", "a", "sh", "in here" } };

    for ( auto const& row : rows )
    {
        Write( folder.Path( row.path ), "" );
        EXPECT_EQ(
            folder.Path( row.path ), Resource( bundle.get(), row.name, row.type, row.folder ) );
    }
    EXPECT_EQ( "(null)", Resource( bundle.get(), "a", "sh", "elsewhere" ) );
    EXPECT_EQ( folder.Path( "en.lproj/" ), Resource( bundle.get(), "en", "lproj", "" ) );

    Write( folder.Path( "InfoPlist.strings" ), kList );
    EXPECT_EQ( nullptr, CFBundleGetLocalInfoDictionary( bundle.get() ) );
    Write( folder.Path( "en.lproj/InfoPlist.strings" ), kList );
    Bundle const again = BundleAt( folder.Path() );
    EXPECT_EQ( "{\"Name\"=\"A\"}", Describe( CFBundleGetLocalInfoDictionary( again.get() ) ) );
}

TEST( Bundle, LooksIntoTheFoldersOfTheUsersLanguageBeforeTheEnglishOne )
{
    TemporaryFolder const folder;
    Bundle const bundle = BundleAt( folder.Path() );
    for ( std::string const name : { "en", "de", "de_AT", "C", "../x", "POSIX" } )
        Write( folder.Path( name + ".lproj/a" ), "" );
    for ( auto const& [locale, language] : { std::pair( "C.UTF-8", "en" ), { "POSIX", "en" },
              { "fr_FR", "en" }, { "../x", "en" }, { "de_CH.UTF-8", "de" }, { "de@euro", "de" },
              { "de_AT.UTF-8", "de_AT" }, { "C", "en" } } )
    {
        std::strncpy( gLocale, locale, sizeof gLocale - 1 );
        EXPECT_EQ( folder.Path( language ) + ".lproj/a", Resource( bundle.get(), "a", "" ) )
            << locale;
    }
}
