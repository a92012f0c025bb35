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

struct Answer
{
    SInt32 code;
    std::string content; // "(null)" without data
};

Answer Read( CFURLRef url )
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
    UInt8 const* const bytes = data != nullptr ? CFDataGetBytePtr( data ) : nullptr;
    return {
        code, data != nullptr ? std::string( bytes, bytes + CFDataGetLength( data ) ) : "(null)" };
}

// Reads through the URL in directory form, as locations have it.
Answer Read( std::string const& path )
{
    return Read( Held<CFURLRef>( CreateFileURL( path, true ) ).get() );
}

SInt32 CodeOfText( char const* text )
{
    return Read(
        Held<CFURLRef>( CFURLCreateWithString( nullptr, String( text ).get(), nullptr ) ).get() )
        .code;
}

void Write( std::string const& path, std::string const& content, std::uintmax_t length )
{
    std::ofstream( path, std::ios::binary ) << content;
    std::filesystem::resize_file( path, length );
}

long OpenDescriptors()
{
    std::filesystem::directory_iterator const descriptors( "/proc/self/fd" );
    return std::distance( begin( descriptors ), end( descriptors ) );
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
        EXPECT_TRUE( content == Read( path ).content ) << length;
    }
    auto const limit = static_cast<std::size_t>( kCFURLMaximumResourceLength );
    Write( path, "", limit );
    EXPECT_EQ( limit, Read( path ).content.size() );
    EXPECT_NE( std::string::npos, Read( "/proc/self/status" ).content.find( "VmPeak" ) )
        << "a file that does not know its length";
    EXPECT_LT( 8192u, Read( "/proc/self/smaps" ).content.size() ) << "a long one of that kind";
}

TEST( Resource, IsRefusedWithItsCodeWhenItIsNoReadableRegularFile )
{
    TemporaryFolder const folder;
    Write( folder.Path( "file" ), "x", 1 );
    Write( folder.Path( "huge" ), "", kCFURLMaximumResourceLength + 1 );
    ASSERT_EQ( 0, mkfifo( folder.Path( "pipe" ).c_str(), 0600 ) );
    ASSERT_EQ( 0, mknod( folder.Path( "socket" ).c_str(), S_IFSOCK | 0600, 0 ) );
    for ( auto const& [target, link] :
        { std::pair( "pipe", "link" ), { "loop", "loop" }, { "file", "good" } } )
        std::filesystem::create_symlink( target, folder.Path( link ) );
    long const before = OpenDescriptors();
    for ( std::string const name : { "missing", "missing/x", "file/x" } )
        EXPECT_EQ( kCFURLResourceNotFoundError, Read( folder.Path( name ) ).code ) << name;
    for ( std::string const& path :
        { folder.Path(), std::string( "/" ), folder.Path( "pipe" ), folder.Path( "link" ),
            folder.Path( "loop" ), folder.Path( "socket" ), folder.Path( "huge" ),
            folder.Path( std::string( 300, 'a' ) ), std::string( "/dev/zero" ),
            std::string( "/dev/tty" ), std::string( "/proc/self/mem" ) } )
        EXPECT_EQ( kCFURLUnknownError, Read( path ).code ) << path;
    EXPECT_EQ( "x", Read( folder.Path( "good" ) ).content );
    EXPECT_EQ( before, OpenDescriptors() );
}

TEST( Resource, ThatOthersHideIsAnAccessViolation )
{
    TemporaryFolder const folder;
    Write( folder.Path( "file" ), "x", 1 );
    ASSERT_EQ( 0, chmod( folder.Path( "file" ).c_str(), 0 ) );
    ASSERT_EQ( 0, chmod( folder.Path().c_str(), 0755 ) );
    bool const isRoot = geteuid() == 0;
    ASSERT_TRUE( !isRoot || seteuid( 65534 ) == 0 );
    EXPECT_EQ( kCFURLResourceAccessViolationError, Read( folder.Path( "file" ) ).code );
    ASSERT_TRUE( !isRoot || seteuid( 0 ) == 0 );
}

TEST( Resource, OfAnotherKindOfURLIsRefused )
{
    for ( char const* text : { "http:///etc/passwd", "/etc/passwd", "file:///etc/passwd%00x" } )
        EXPECT_EQ( kCFURLUnknownSchemeError, CodeOfText( text ) ) << text;
    EXPECT_EQ( 0, CodeOfText( "FILE://host/etc/passwd?q#f" ) );
    EXPECT_EQ( kCFURLImproperArgumentsError, Read( CFURLRef() ).code );
}
