#include "linux/CoreFoundation/URLText.h"

#include <algorithm>
#include <vector>

namespace
{

constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kHexDigits = "0123456789ABCDEF";

bool IsOneOf( std::string_view set, char character )
{
    return set.find( character ) != std::string_view::npos;
}

bool IsAlphanumeric( char character )
{
    return IsOneOf( kLetters, character ) || IsOneOf( kDigits, character );
}

bool IsKeptInPath( char character )
{
    return IsAlphanumeric( character ) || IsOneOf( "!$&'()*+,-./:=@_~", character );
}

int HexValue( char character )
{
    if ( character >= 'a' && character <= 'f' )
    {
        return character - 'a' + 10;
    }
    std::size_t const place = kHexDigits.find( character );
    return place == std::string_view::npos ? -1 : static_cast<int>( place );
}

bool BeginsEscape( std::string_view text, std::size_t at )
{
    return text[at] == '%' && text.size() - at > 2 && HexValue( text[at + 1] ) >= 0 &&
           HexValue( text[at + 2] ) >= 0;
}

// How many characters at the start of `text` are a scheme and its ":".
std::size_t SchemeLength( std::string_view text )
{
    if ( text.empty() || !IsOneOf( kLetters, text[0] ) )
    {
        return 0;
    }
    auto const end = std::find_if_not( text.begin(), text.end(),
        []( char character )
        { return IsAlphanumeric( character ) || IsOneOf( "+-.", character ); } );
    return end != text.end() && *end == ':' ? static_cast<std::size_t>( end - text.begin() ) + 1
                                            : 0;
}

std::string Cut( std::string_view& text, std::size_t length )
{
    length = std::min( length, text.size() );
    std::string part( text.substr( 0, length ) );
    text.remove_prefix( length );
    return part;
}

// An absolute path with its "." and ".." worked out; what climbs above the root stays.
std::string CollapseDots( std::string_view path )
{
    std::vector<std::string_view> kept;
    bool endsInDots = false;
    for ( std::size_t start = 1; start <= path.size(); )
    {
        std::size_t const end = std::min( path.find( '/', start ), path.size() );
        std::string_view const segment = path.substr( start, end - start );
        bool const climbs = segment == ".." && !kept.empty() && kept.back() != "..";
        endsInDots = climbs || segment == ".";
        if ( climbs )
        {
            kept.pop_back();
        }
        else if ( segment != "." )
        {
            kept.push_back( segment );
        }
        start = end + 1;
    }
    std::string result;
    for ( std::string_view const segment : kept )
    {
        result.append( "/" ).append( segment );
    }
    return endsInDots ? result + '/' : result;
}

} // namespace

std::string URLParts::Text() const
{
    return scheme + authority + path + query + fragment;
}

bool URLParts::IsOpaque() const
{
    return !scheme.empty() && authority.empty() && !path.starts_with( '/' );
}

URLParts SplitURL( std::string_view text )
{
    URLParts parts;
    parts.scheme = Cut( text, SchemeLength( text ) );
    if ( text.starts_with( "//" ) )
    {
        parts.authority = Cut( text, text.find_first_of( "/?#", 2 ) );
    }
    parts.path = Cut( text, text.find_first_of( "?#" ) );
    parts.query = Cut( text, text.find( '#' ) );
    parts.fragment = text;
    return parts;
}

bool IsURLText( std::string_view text )
{
    for ( std::size_t at = 0; at < text.size(); ++at )
    {
        char const character = text[at];
        bool const isLegal = character > ' ' && character < '\x7f' &&
                             !IsOneOf( "\"<>\\^`{|}", character ) &&
                             ( character != '%' || BeginsEscape( text, at ) );
        if ( !isLegal )
        {
            return false;
        }
    }
    return std::count( text.begin(), text.end(), '#' ) <= 1;
}

std::string EscapePath( std::string_view bytes )
{
    std::string text;
    text.reserve( bytes.size() );
    for ( char const byte : bytes )
    {
        if ( IsKeptInPath( byte ) )
        {
            text += byte;
        }
        else
        {
            auto const value = static_cast<unsigned char>( byte );
            text += { '%', kHexDigits[value >> 4], kHexDigits[value & 15] };
        }
    }
    return text;
}

std::string Unescape( std::string_view text )
{
    std::string bytes;
    bytes.reserve( text.size() );
    for ( std::size_t at = 0; at < text.size(); ++at )
    {
        if ( BeginsEscape( text, at ) )
        {
            bytes += static_cast<char>( HexValue( text[at + 1] ) * 16 + HexValue( text[at + 2] ) );
            at += 2;
        }
        else
        {
            bytes += text[at];
        }
    }
    return bytes;
}

std::string WithDirectoryForm( std::string path, bool isDirectory )
{
    if ( !isDirectory )
    {
        path.resize( WithoutTrailingSlashes( path ).size() );
    }
    else if ( !path.ends_with( '/' ) )
    {
        path += '/';
    }
    return path;
}

std::string_view WithoutTrailingSlashes( std::string_view path )
{
    while ( path.size() > 1 && path.ends_with( '/' ) )
    {
        path.remove_suffix( 1 );
    }
    return path;
}

URLParts Resolve( URLParts const& reference, URLParts const& base )
{
    if ( !reference.scheme.empty() )
    {
        return reference;
    }
    URLParts result = reference;
    result.scheme = base.scheme;
    if ( reference.authority.empty() )
    {
        result.authority = base.authority;
        if ( reference.path.empty() )
        {
            result.path = base.path;
            result.query = reference.query.empty() ? base.query : reference.query;
            return result;
        }
        if ( !reference.path.starts_with( '/' ) )
        {
            std::size_t const kept = base.path.rfind( '/' ) + 1;
            result.path = base.path.substr( 0, kept ) + reference.path;
            if ( kept == 0 && !base.authority.empty() )
            {
                result.path.insert( 0, 1, '/' );
            }
        }
    }
    if ( result.path.starts_with( '/' ) )
    {
        result.path = CollapseDots( result.path );
    }
    return result;
}

std::string AppendComponent( std::string const& path, std::string_view component, bool isDirectory )
{
    while ( component.ends_with( '/' ) )
    {
        component.remove_suffix( 1 );
    }
    std::string result = path.empty() ? path : WithDirectoryForm( path, true );
    result += component;
    return isDirectory && !result.empty() ? WithDirectoryForm( result, true ) : result;
}

std::string DeleteLastComponent( std::string_view path )
{
    std::string_view const trimmed = WithoutTrailingSlashes( path );
    std::size_t const start = trimmed.rfind( '/' ) + 1;
    std::string_view const last = trimmed.substr( start );
    std::string const before( trimmed.substr( 0, start ) );
    if ( last == ".." )
    {
        return before + "../../";
    }
    if ( last.empty() || last == "." )
    {
        return before + "../";
    }
    return before.empty() ? "./" : before;
}
