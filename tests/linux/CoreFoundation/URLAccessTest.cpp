#include <CoreFoundation/CFURLAccess.h>

#include "linux/CoreFoundation/CFURLObject.h"
#include "tests/linux/CoreFoundation/Held.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

using namespace std::string_literals;

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
    if ( data == nullptr )
        return std::to_string( code );
    return { CFDataGetBytePtr( data ), CFDataGetBytePtr( data ) + CFDataGetLength( data ) };
}

// Reads through the URL in directory form, as locations have it.
std::string Read( std::string const& path )
{
    return Read( Held<CFURLRef>( CreateFileURL( path, true ) ).get() );
}

std::string ReadText( char const* text )
{
    return Read(
        Held<CFURLRef>( CFURLCreateWithString( nullptr, String( text ).get(), nullptr ) ).get() );
}

void Write( std::string const& path, std::string const& content, std::uintmax_t length )
{
    std::ofstream( path, std::ios::binary ) << content;
    std::filesystem::resize_file( path, length );
}

long OpenDescriptors()
{
    return std::distance( std::filesystem::directory_iterator( "/proc/self/fd" ), {} );
}

} // namespace

TEST( Resource, IsReadWholeWhateverItsLength )
{
    TemporaryFolder const folder;
    std::string const path = folder.Path( "a file \xff" );
    std::string content;
    for ( std::size_t const length : { 0u, 1u, 4095u, 4096u, 4097u, 1'000'000u } )
    {
        while ( content.size() < length )
            content += static_cast<char>( content.size() * 31 );
        Write( path, content, length );
        EXPECT_TRUE( content == Read( path ) ) << length;
    }
    auto const limit = static_cast<std::size_t>( kCFURLMaximumResourceLength );
    Write( path, "", limit );
    EXPECT_EQ( limit, Read( path ).size() );
    EXPECT_NE( std::string::npos, Read( "/proc/self/status" ).find( "VmPeak" ) )
        << "a file that does not know its length";
    EXPECT_LT( 8192u, Read( "/proc/self/smaps" ).size() ) << "a long one of that kind";
}

TEST( Resource, IsRefusedWithItsCodeWhenItIsNoReadableRegularFile )
{
    TemporaryFolder const folder;
    Write( folder.Path( "file" ), "x", 1 );
    Write( folder.Path( "huge" ), "", kCFURLMaximumResourceLength + 1 );
    ASSERT_EQ( 0, mkfifo( folder.Path( "pipe" ).c_str(), 0600 ) );
    ASSERT_EQ( 0, mknod( folder.Path( "socket" ).c_str(), S_IFSOCK | 0600, 0 ) );
    std::filesystem::create_symlink( "pipe", folder.Path( "link" ) );
    std::filesystem::create_symlink( "loop", folder.Path( "loop" ) );
    std::filesystem::create_symlink( "file", folder.Path( "good" ) );
    long const before = OpenDescriptors();
    for ( char const* name : { "missing", "missing/x", "file/x" } )
        EXPECT_EQ( std::to_string( kCFURLResourceNotFoundError ), Read( folder.Path( name ) ) );
    for ( std::string const& name :
        { ""s, "pipe"s, "link"s, "loop"s, "socket"s, "huge"s, std::string( 300, 'a' ) } )
        EXPECT_EQ( std::to_string( kCFURLUnknownError ), Read( folder.Path( name ) ) ) << name;
    for ( std::string const path : { "/", "/dev/zero", "/dev/tty", "/proc/self/mem" } )
        EXPECT_EQ( std::to_string( kCFURLUnknownError ), Read( path ) ) << path;
    EXPECT_EQ( "x", Read( folder.Path( "good" ) ) );
    EXPECT_EQ( before, OpenDescriptors() );
    // What others hide.
    ASSERT_EQ(
        0, chmod( folder.Path( "file" ).c_str(), 0 ) + chmod( folder.Path().c_str(), 0755 ) );
    bool const isRoot = geteuid() == 0;
    ASSERT_TRUE( !isRoot || seteuid( 65534 ) == 0 );
    EXPECT_EQ(
        std::to_string( kCFURLResourceAccessViolationError ), Read( folder.Path( "file" ) ) );
    ASSERT_TRUE( !isRoot || seteuid( 0 ) == 0 );
}

TEST( Resource, OfAnotherKindOfURLIsRefused )
{
    for ( char const* text : { "http:///etc/passwd", "/etc/passwd", "file:///etc/passwd%00x" } )
        EXPECT_EQ( std::to_string( kCFURLUnknownSchemeError ), ReadText( text ) ) << text;
    EXPECT_LT( 5u, ReadText( "FILE://host/etc/passwd?q#f" ).size() );
    EXPECT_EQ( std::to_string( kCFURLImproperArgumentsError ), Read( CFURLRef() ) );
}
