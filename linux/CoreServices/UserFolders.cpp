#include "linux/CoreServices/UserFolders.h"

#include "linux/CoreFoundation/RegularFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <new>
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace
{

constexpr std::string_view kHomePrefix = "$HOME/";
constexpr std::size_t kLongestUserEntry = 1 << 20;

std::optional<std::string> AbsolutePath( char const* path )
{
    return path != nullptr && path[0] == '/' ? std::optional<std::string>( path ) : std::nullopt;
}

std::optional<std::string> HomeInUserDatabase()
{
    std::vector<char> buffer( 1024 );
    passwd entry = {};
    passwd* found = nullptr;
    int error = 0;
    while ( ( error = getpwuid_r( geteuid(), &entry, buffer.data(), buffer.size(), &found ) ) ==
                ERANGE &&
            buffer.size() < kLongestUserEntry )
    {
        buffer.resize( 2 * buffer.size() );
    }
    if ( error == ENOMEM )
    {
        throw std::bad_alloc();
    }
    return AbsolutePath( found != nullptr ? found->pw_dir : nullptr );
}

std::optional<std::string> HomeFolder()
{
    std::optional<std::string> const home = PathInEnvironment( "HOME" );
    return home ? home : HomeInUserDatabase();
}

// The content of a regular file; empty when it cannot be read. Throws std::bad_alloc.
std::string ReadText( std::string const& path )
{
    std::vector<UInt8> bytes;
    switch ( ReadRegularFile( path, bytes ) )
    {
    case 0:
        return std::string( bytes.begin(), bytes.end() );
    case ENOMEM:
        throw std::bad_alloc();
    default:
        return {};
    }
}

// Takes the first line off `text`.
std::string_view CutLine( std::string_view& text )
{
    std::string_view const line = text.substr( 0, text.find( '\n' ) );
    text.remove_prefix( std::min( line.size() + 1, text.size() ) );
    return line;
}

// Cuts `prefix` and the blanks after it off; false when `text` begins with something else.
bool Skip( std::string_view& text, std::string_view prefix )
{
    if ( !text.starts_with( prefix ) )
    {
        return false;
    }
    text.remove_prefix( prefix.size() );
    text.remove_prefix( std::min( text.find_first_not_of( " \t" ), text.size() ) );
    return true;
}

// What stands before the closing quote; nothing without one, or with a zero byte.
std::optional<std::string> Unquoted( std::string_view text )
{
    std::string value;
    for ( std::size_t at = 0; at < text.size() && text[at] != '\0'; ++at )
    {
        if ( text[at] == '"' )
        {
            return value;
        }
        if ( text[at] == '\\' && at + 1 < text.size() )
        {
            ++at;
        }
        value += text[at];
    }
    return {};
}

} // namespace

std::optional<std::string> PathInEnvironment( char const* name )
{
    return AbsolutePath( secure_getenv( name ) );
}

std::optional<std::string> UserFolder( char const* variable, std::string_view fallback )
{
    std::optional<std::string> path = PathInEnvironment( variable );
    if ( !path && ( path = HomeFolder() ) )
    {
        path->append( fallback );
    }
    return path;
}

std::optional<std::string> UserDirectory( std::string_view key, std::string_view fallback )
{
    std::optional<std::string> const home = HomeFolder();
    std::optional<std::string> const preferences = UserFolder( "XDG_CONFIG_HOME", "/.config" );
    if ( !home || !preferences )
    {
        return {};
    }
    std::optional<std::string> const path =
        FindUserDirectory( ReadText( *preferences + "/user-dirs.dirs" ), key, *home );
    return path ? path : *home + std::string( fallback );
}

std::optional<std::string> FindUserDirectory(
    std::string_view text, std::string_view key, std::string const& home )
{
    std::optional<std::string> found;
    while ( !text.empty() )
    {
        std::string_view line = CutLine( text );
        bool const isForKey = Skip( line, "" ) && Skip( line, key ) && Skip( line, "=" );
        if ( !isForKey || !line.starts_with( '"' ) )
        {
            continue;
        }
        line.remove_prefix( 1 );
        bool const isInHome = line.starts_with( kHomePrefix );
        line.remove_prefix( isInHome ? kHomePrefix.size() - 1 : 0 );
        std::optional<std::string> const path = Unquoted( line );
        if ( path && path->starts_with( '/' ) )
        {
            found = isInHome ? home + *path : *path;
        }
    }
    return found;
}
