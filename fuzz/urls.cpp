// The input is flags, a length, a text of that many bytes, which is tried as a URL and as a path,
// and another text, which is its base and a component.

#include "fuzz/FuzzInput.h"

#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>

namespace
{

struct CallCFRelease
{
    void operator()( CFTypeRef object ) const { CFRelease( object ); }
};

template<class Reference>
using Held = std::unique_ptr<std::remove_pointer_t<Reference>, CallCFRelease>;

Held<CFStringRef> String( std::string_view text )
{
    return Held<CFStringRef>(
        CFStringCreateWithBytes( nullptr, reinterpret_cast<UInt8 const*>( text.data() ),
            std::ssize( text ), kCFStringEncodingUTF8, false ) );
}

std::optional<std::string> Bytes( CFStringRef string )
{
    if ( string == nullptr )
        return {};
    CFRange const all = CFRangeMake( 0, CFStringGetLength( string ) );
    std::string bytes( static_cast<std::size_t>( all.length ) * 3, '\0' );
    CFIndex length = 0;
    CFStringGetBytes( string, all, kCFStringEncodingUTF8, 0, false,
        reinterpret_cast<UInt8*>( bytes.data() ), std::ssize( bytes ), &length );
    return bytes.substr( 0, static_cast<std::size_t>( length ) );
}

std::optional<std::string> PathOf( CFURLRef url, bool isResolved )
{
    std::string buffer( 20000, '\0' );
    if ( !CFURLGetFileSystemRepresentation(
             url, isResolved, reinterpret_cast<UInt8*>( buffer.data() ), std::ssize( buffer ) ) )
        return {};
    return buffer.c_str();
}

bool IsIn( std::string_view set, char c )
{
    return set.find( c ) != std::string_view::npos;
}

constexpr std::string_view kHex = "0123456789abcdefABCDEF";
constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";

bool MayBeURL( std::string const& text )
{
    bool hasFragment = false;
    for ( std::size_t i = 0; i < text.size(); ++i )
    {
        char const c = text[i];
        if ( c <= ' ' || c > '~' || IsIn( "\"<>\\^`{|}", c ) || ( c == '#' && hasFragment ) )
            return false;
        if ( c == '%' &&
             !( i + 2 < text.size() && IsIn( kHex, text[i + 1] ) && IsIn( kHex, text[i + 2] ) ) )
            return false;
        hasFragment = hasFragment || c == '#';
    }
    return true;
}

std::string Unescaped( std::string_view text )
{
    std::string bytes;
    for ( std::size_t i = 0; i < text.size(); ++i )
    {
        bool const isEscape = text[i] == '%';
        bytes += isEscape ? static_cast<char>(
                                std::stoi( std::string( text.substr( i + 1, 2 ) ), nullptr, 16 ) )
                          : text[i];
        i += isEscape ? 2 : 0;
    }
    return bytes;
}

/// The pieces that a path's rules need (RFC 3986, 3).
struct Pieces
{
    explicit Pieces( std::string_view text )
    {
        std::size_t const colon =
            text.find_first_not_of( std::string( kLetters ) + "0123456789+-." );
        hasScheme =
            colon != text.npos && colon > 0 && text[colon] == ':' && IsIn( kLetters, text[0] );
        text.remove_prefix( hasScheme ? colon + 1 : 0 );
        text = text.substr( 0, text.find_first_of( "?#" ) );
        hasHost = text.starts_with( "//" );
        path = hasHost ? text.substr( std::min( text.find( '/', 2 ), text.size() ) ) : text;
    }

    bool hasScheme;
    bool hasHost;
    std::string path;
};

/// RFC 3986, 5.2.4, step by step, but for a ".." above the root, which stays.
std::string WithoutDots( std::string in )
{
    std::string out;
    while ( !in.empty() )
    {
        std::size_t const end = std::min( in.find( '/', 1 ), in.size() );
        std::string const segment = in.substr( 0, end );
        in.erase( 0, end );
        bool const climbs = segment == "/.." && !out.empty() && !out.ends_with( "/.." );
        if ( climbs )
            out.erase( out.rfind( '/' ) );
        if ( ( climbs || segment == "/." ) && in.empty() )
            out += '/';
        else if ( !climbs && segment != "/." )
            out += segment;
    }
    return out;
}

/// The bytes of an escaped path without one slash at its end; nothing if there is a zero.
std::optional<std::string> FilePath( std::string path )
{
    if ( path.size() > 1 && path.ends_with( '/' ) )
        path.pop_back();
    std::string bytes = Unescaped( path );
    return bytes.find( '\0' ) != std::string::npos ? std::nullopt : std::optional( bytes );
}

/// The path of a reference in a base, escaped (RFC 3986, 5.2.2).
std::string Resolved( Pieces const& reference, Pieces const& base )
{
    std::string path = reference.path;
    if ( !reference.hasHost && path.empty() )
        return base.path;
    if ( !reference.hasHost && !path.starts_with( '/' ) )
        path = ( base.hasHost && base.path.empty()
                       ? "/"
                       : base.path.substr( 0, base.path.rfind( '/' ) + 1 ) ) +
               path;
    return path.starts_with( '/' ) ? WithoutDots( path ) : path;
}

void TryText( std::string const& bytes, std::string const& base )
{
    Held<CFStringRef> const string = String( bytes );
    std::string const text = Bytes( string.get() ).value_or( "^" ); // without a byte-order mark
    Held<CFURLRef> const url(
        string ? CFURLCreateWithString( nullptr, string.get(), nullptr ) : nullptr );
    Require( ( url != nullptr ) == MayBeURL( text ), "which texts are URLs" );
    if ( url == nullptr )
        return;
    Pieces const pieces( text );
    bool const isOpaque = pieces.hasScheme && !pieces.hasHost && !pieces.path.starts_with( '/' );
    std::optional<std::string> const path = isOpaque ? std::nullopt : FilePath( pieces.path );
    Require( Bytes( CFURLGetString( url.get() ) ) == text, "a URL's text" );
    Require( PathOf( url.get(), false ) == path, "a URL's path" );
    Held<CFURLRef> const baseURL(
        CFURLCreateWithString( nullptr, String( "file:" + base ).get(), nullptr ) );
    Pieces const basePieces( "file:" + base );
    if ( baseURL == nullptr || pieces.hasScheme ||
         ( !basePieces.hasHost && !basePieces.path.starts_with( '/' ) ) )
        return;
    Held<CFURLRef> const relative( CFURLCreateWithString( nullptr, string.get(), baseURL.get() ) );
    Require( PathOf( relative.get(), true ) == FilePath( Resolved( pieces, basePieces ) ),
        "a URL's path in its base" );
}

void TryPath( std::string const& path, std::string const& component, bool isDirectory )
{
    Held<CFURLRef> const url( CFURLCreateFromFileSystemRepresentation(
        nullptr, reinterpret_cast<UInt8 const*>( path.data() ), std::ssize( path ), isDirectory ) );
    Require(
        ( url != nullptr ) == ( path.find( '\0' ) == std::string::npos ), "which bytes are paths" );
    if ( url == nullptr )
        return;
    std::string expected = path.empty() ? "." : path;
    while ( !isDirectory && expected.size() > 1 && expected.ends_with( '/' ) )
        expected.pop_back();
    std::string const above = expected.ends_with( '/' ) ? expected : expected + '/';
    if ( isDirectory && expected.size() > 1 && expected.ends_with( '/' ) )
        expected.pop_back();
    Require( PathOf( url.get(), false ) == expected, "a path and back" );
    std::string const text = Bytes( CFURLGetString( url.get() ) ).value_or( "" );
    Require( MayBeURL( text ), "a path's text is a URL" );
    Held<CFURLRef> const again( CFURLCreateWithString( nullptr, String( text ).get(), nullptr ) );
    Require( !path.starts_with( '/' ) || CFEqual( url.get(), again.get() ), "a text and back" );

    Held<CFStringRef> const added = String( component );
    std::optional<std::string> const name = Bytes( added.get() );
    bool const isName = name && !name->empty() && *name != "." && *name != ".." &&
                        name->find( '/' ) == std::string::npos &&
                        name->find( '\0' ) == std::string::npos;
    if ( !isName )
        return;
    Held<CFURLRef> const child(
        CFURLCreateCopyAppendingPathComponent( nullptr, url.get(), added.get(), isDirectory ) );
    Require( PathOf( child.get(), false ) == above + *name, "a path with a name added" );
    Held<CFStringRef> const last( CFURLCopyLastPathComponent( child.get() ) );
    Require( Bytes( last.get() ) == name || name->starts_with( "\xEF\xBB\xBF" ),
        "the name that was added" );
    Held<CFURLRef> const parent( CFURLCreateCopyDeletingLastPathComponent( nullptr, child.get() ) );
    Require( PathOf( parent.get(), false ) == expected, "the path without it" );
}

} // namespace

int LLVMFuzzerTestOneInput( std::uint8_t const* data, std::size_t size )
{
    FuzzInput input( data, size );
    bool const isDirectory = input.TakeUpTo( 1 ) != 0;
    std::string const text( input.TakeText( input.TakeUpTo( 200 ) ) );
    std::string const other( input.TakeText( 200 ) );
    TryText( text, other );
    TryPath( text, other, isDirectory );
    return 0;
}
