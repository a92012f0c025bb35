#include <CoreServices/CoreServices.h>

#include "linux/CoreServices/UserFolders.h"
#include "tests/support/InChild.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace
{

std::string Find( OSType type, SInt16 domain = kUserDomain, bool create = true )
{
    FSRef ref;
    OSErr const result = FSFindFolder( domain, type, create, &ref );
    return result == noErr ? ref.path : std::to_string( result );
}

} // namespace

TEST( SpecialFolders, AreTheUsersOwnOrThoseTheUserChose )
{
    auto const test = []
    {
        TemporaryFolder const home;
        setenv( "HOME", home.Path().c_str(), 1 );
        unsetenv( "XDG_CONFIG_HOME" );
        setenv( "XDG_DATA_HOME", "relative", 1 );
        for ( auto const& [type, name] : { std::pair( kPreferencesFolderType, ".config" ),
                  { kApplicationSupportFolderType, ".local/share" },
                  { kDocumentsFolderType, "Documents" }, { kDesktopFolderType, "Desktop" } } )
        {
            EXPECT_EQ( "-43", Find( type, kUserDomain, false ) );
            EXPECT_EQ( home.Path( name ), Find( type ) );
        }
        EXPECT_EQ( std::filesystem::perms::owner_all,
            std::filesystem::status( home.Path( ".local" ) ).permissions() );
        setenv( "XDG_CONFIG_HOME", home.Path( "a//b/" ).c_str(), 1 );
        EXPECT_EQ( home.Path( "a/b" ), Find( kPreferencesFolderType ) );
        std::filesystem::create_symlink( "Desktop", home.Path( "link" ) );
        std::ofstream( home.Path( "a/b/user-dirs.dirs" ) ) << "XDG_DESKTOP_DIR=\"$HOME/link\"";
        EXPECT_EQ( home.Path( "Desktop" ), Find( kDesktopFolderType ) );
        setenv( "XDG_DATA_HOME", home.Path( "c/" + std::string( 5000, '/' ) ).c_str(), 1 );
        EXPECT_EQ( "-37", Find( kApplicationSupportFolderType ) );
        EXPECT_FALSE( std::filesystem::exists( home.Path( "c" ) ) );
        setenv( "TMPDIR", home.Path().c_str(), 1 );
        EXPECT_EQ( home.Path(), Find( kTemporaryFolderType ) );
        setenv( "TMPDIR", home.Path( "missing" ).c_str(), 1 );
        EXPECT_EQ( Find( kTemporaryFolderType, kSystemDomain ), Find( kTemporaryFolderType ) );
        setenv( "XDG_DATA_HOME", "/dev/null", 1 );
        EXPECT_EQ( "-120", Find( kApplicationSupportFolderType ) );
        return ::testing::Test::HasFailure() ? "failed" : "";
    };
    EXPECT_EQ( "", InChild( test ) );
    EXPECT_EQ( "-43", Find( kTemporaryFolderType, kNetworkDomain ) );
    EXPECT_EQ( "-43", Find( kDocumentsFolderType, kSystemDomain ) );
}

TEST( UserDirectories, AreReadAsTheirToolsWriteThem )
{
    std::pair<std::string_view, std::string> const rows[] = { { "K=\"$HOME/a\"", "/h/a" },
        { "# K=\"/c\"\n  K = \"/a b\" # x\nKK=\"/d\"\n", "/a b" }, { "K=\"/a\"\nK=\"/b\"", "/b" },
        { R"(K="$HOME/\$a\"\\b")", R"(/h/$a"\b)" }, { "K=\"/a\"\nK=\"b\"", "/a" }, { "K=/a", "-" },
        { "K=\"/a", "-" }, { "K=\"/a\\", "-" }, { "K=\"$HOMEX/a\"", "-" },
        { { "K=\"/a\0b\"", 8 }, "-" }, { "KK=\"/a\"", "-" }, { "K", "-" } };
    for ( auto const& [text, expected] : rows )
        EXPECT_EQ( expected, FindUserDirectory( text, "K", "/h" ).value_or( "-" ) ) << text;
}
