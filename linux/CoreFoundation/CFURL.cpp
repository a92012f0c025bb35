#include <CoreFoundation/CFURL.h>

#include "linux/CoreFoundation/CFURLObject.h"

#include <cstdlib>
#include <cstring>
#include <functional>
#include <strings.h>
#include <unistd.h>
#include <utility>

namespace
{

constexpr char kFileScheme[] = "file:";

struct FreeMemory
{
    void operator()( char* memory ) const { std::free( memory ); }
};

Owned<CFURLObject const> Retained( CFURLRef url )
{
    return Owned<CFURLObject const>( static_cast<CFURLRef>( CFRetain( url ) ) );
}

CFURLRef Make( URLParts parts, Owned<CFURLObject const> base = nullptr )
{
    return new CFURLObject( std::move( parts ), std::move( base ) );
}

// The absolute form of `base`, as URLs keep it; null for null.
Owned<CFURLObject const> AbsoluteBase( CFURLRef base )
{
    if ( base == nullptr )
    {
        return nullptr;
    }
    return base->base ? Owned<CFURLObject const>( Make( AbsoluteParts( *base ) ) )
                      : Retained( base );
}

CFURLRef CreateAbsoluteFileURL( std::string const& path )
{
    return Make( { kFileScheme, "//", EscapePath( path ), "", "" } );
}

// The current directory; null when it exists no more.
Owned<CFURLObject const> CurrentDirectory()
{
    std::unique_ptr<char, FreeMemory> const path( getcwd( nullptr, 0 ) );
    return Owned<CFURLObject const>(
        path ? CreateAbsoluteFileURL( WithDirectoryForm( path.get(), true ) ) : nullptr );
}

bool HoldsZero( std::string_view bytes )
{
    return bytes.find( '\0' ) != std::string_view::npos;
}

// The bytes of the path that `parts` stand for, one trailing slash dropped.
std::optional<std::string> FileSystemBytes( URLParts const& parts )
{
    std::string_view path = parts.path;
    if ( path.size() > 1 && path.ends_with( '/' ) )
    {
        path.remove_suffix( 1 );
    }
    std::string bytes = Unescape( path );
    if ( parts.IsOpaque() || HoldsZero( bytes ) )
    {
        return {};
    }
    return bytes;
}

// Null when the bytes are no UTF-8 or hold a zero.
CFStringRef StringOfBytes( std::string const& bytes )
{
    return HoldsZero( bytes )
               ? nullptr
               : CFStringCreateWithBytes( kCFAllocatorDefault,
                     reinterpret_cast<UInt8 const*>( bytes.data() ),
                     static_cast<CFIndex>( bytes.size() ), kCFStringEncodingUTF8, false );
}

// The parts of `url`, its path ready to be changed: after a host there is at least the root.
URLParts PartsToChange( CFURLObject const& url )
{
    URLParts parts = url.parts;
    if ( parts.path.empty() && !parts.authority.empty() )
    {
        parts.path += '/';
    }
    return parts;
}

} // namespace

CFURLObject::CFURLObject( URLParts itsParts, Owned<CFURLObject const> itsBase )
    : CFObject( CFKind::kURL ),
      parts( std::move( itsParts ) ),
      base( std::move( itsBase ) ),
      text(
          [this]
          {
              std::string const bytes = parts.Text();
              return CFStringObject::Create( bytes, {} );
          }() )
{
}

bool CFURLObject::Equal( CFObject const& other ) const
{
    auto const& url = static_cast<CFURLObject const&>( other );
    return text->Equal( *url.text ) && ( base == nullptr ) == ( url.base == nullptr ) &&
           ( base == nullptr || base->Equal( *url.base ) );
}

CFHashCode CFURLObject::Hash() const
{
    return text->Hash();
}

URLParts AbsoluteParts( CFURLObject const& url )
{
    return url.base ? Resolve( url.parts, url.base->parts ) : url.parts;
}

std::optional<std::string> AbsoluteFilePath( CFURLRef url )
{
    if ( url == nullptr )
    {
        return {};
    }
    URLParts parts = AbsoluteParts( *url );
    parts.path.resize( WithoutTrailingSlashes( parts.path ).size() );
    bool const isFile = strcasecmp( parts.scheme.c_str(), kFileScheme ) == 0;
    return isFile && parts.path.starts_with( '/' ) ? FileSystemBytes( parts ) : std::nullopt;
}

std::optional<std::string> PathBytes( CFStringRef string )
{
    if ( string == nullptr )
    {
        return {};
    }
    CFRange const whole = CFRangeMake( 0, CFStringGetLength( string ) );
    CFIndex length = 0;
    if ( CFStringGetBytes( string, whole, kCFStringEncodingUTF8, 0, false, nullptr, 0, &length ) !=
         whole.length )
    {
        return {};
    }
    std::string bytes( static_cast<std::size_t>( length ), '\0' );
    CFStringGetBytes( string, whole, kCFStringEncodingUTF8, 0, false,
        reinterpret_cast<UInt8*>( bytes.data() ), length, nullptr );
    return HoldsZero( bytes ) ? std::nullopt : std::optional( std::move( bytes ) );
}

CFURLRef CreateFileURL( std::string path, bool isDirectory, CFURLRef base )
{
    path = WithDirectoryForm( path.empty() ? "." : std::move( path ), isDirectory );
    if ( path.starts_with( '/' ) )
    {
        return CreateAbsoluteFileURL( path );
    }
    Owned<CFURLObject const> absoluteBase = base ? AbsoluteBase( base ) : CurrentDirectory();
    return absoluteBase ? Make( { "", "", EscapePath( path ), "", "" }, std::move( absoluteBase ) )
                        : nullptr;
}

CFURLRef CFURLCreateWithString( CFAllocatorRef, CFStringRef URLString, CFURLRef baseURL )
{
    return NullIfThrown(
        [&]() -> CFURLRef
        {
            std::optional<std::string> const text = PathBytes( URLString );
            if ( !text || !IsURLText( *text ) )
            {
                return nullptr;
            }
            URLParts parts = SplitURL( *text );
            bool const isAbsolute = !parts.scheme.empty();
            return Make( std::move( parts ), AbsoluteBase( isAbsolute ? nullptr : baseURL ) );
        } );
}

CFURLRef CFURLCreateWithFileSystemPath(
    CFAllocatorRef allocator, CFStringRef filePath, CFURLPathStyle pathStyle, Boolean isDirectory )
{
    return CFURLCreateWithFileSystemPathRelativeToBase(
        allocator, filePath, pathStyle, isDirectory, nullptr );
}

CFURLRef CFURLCreateWithFileSystemPathRelativeToBase( CFAllocatorRef, CFStringRef filePath,
    CFURLPathStyle pathStyle, Boolean isDirectory, CFURLRef baseURL )
{
    return NullIfThrown(
        [&]() -> CFURLRef
        {
            std::optional<std::string> path = PathBytes( filePath );
            return path && pathStyle == kCFURLPOSIXPathStyle
                       ? CreateFileURL( std::move( *path ), isDirectory != 0, baseURL )
                       : nullptr;
        } );
}

CFURLRef CFURLCreateFromFileSystemRepresentation(
    CFAllocatorRef, UInt8 const* buffer, CFIndex bufLen, Boolean isDirectory )
{
    return NullIfThrown(
        [&]() -> CFURLRef
        {
            if ( buffer == nullptr || bufLen < 0 )
            {
                return nullptr;
            }
            std::string path(
                reinterpret_cast<char const*>( buffer ), static_cast<std::size_t>( bufLen ) );
            return HoldsZero( path ) ? nullptr
                                     : CreateFileURL( std::move( path ), isDirectory != 0 );
        } );
}

CFStringRef CFURLGetString( CFURLRef url )
{
    return url != nullptr ? url->text.get() : nullptr;
}

CFStringRef CFURLCopyFileSystemPath( CFURLRef url, CFURLPathStyle pathStyle )
{
    return NullIfThrown(
        [&]() -> CFStringRef
        {
            if ( url == nullptr || pathStyle != kCFURLPOSIXPathStyle )
            {
                return nullptr;
            }
            std::optional<std::string> const path = FileSystemBytes( url->parts );
            return path ? StringOfBytes( *path ) : nullptr;
        } );
}

Boolean CFURLGetFileSystemRepresentation(
    CFURLRef url, Boolean resolveAgainstBase, UInt8* buffer, CFIndex maxBufLen )
{
    UInt8 const* const written = NullIfThrown(
        [&]() -> UInt8 const*
        {
            if ( url == nullptr || buffer == nullptr || maxBufLen < 1 )
            {
                return nullptr;
            }
            std::optional<std::string> const path =
                FileSystemBytes( resolveAgainstBase ? AbsoluteParts( *url ) : url->parts );
            if ( !path || path->size() >= static_cast<std::size_t>( maxBufLen ) )
            {
                return nullptr;
            }
            std::memcpy( buffer, path->c_str(), path->size() + 1 );
            return buffer;
        } );
    return written != nullptr;
}

CFStringRef CFURLCopyLastPathComponent( CFURLRef url )
{
    return NullIfThrown(
        [&]() -> CFStringRef
        {
            if ( url == nullptr || url->parts.IsOpaque() )
            {
                return nullptr;
            }
            std::string_view const path = WithoutTrailingSlashes( url->parts.path );
            std::string_view const last = path == "/" ? path : path.substr( path.rfind( '/' ) + 1 );
            return StringOfBytes( Unescape( last ) );
        } );
}

CFURLRef CFURLCreateCopyAppendingPathComponent(
    CFAllocatorRef, CFURLRef url, CFStringRef pathComponent, Boolean isDirectory )
{
    return NullIfThrown(
        [&]() -> CFURLRef
        {
            std::optional<std::string> const component = PathBytes( pathComponent );
            if ( url == nullptr || url->parts.IsOpaque() || !component )
            {
                return nullptr;
            }
            URLParts parts = PartsToChange( *url );
            parts.path = AppendComponent( parts.path, EscapePath( *component ), isDirectory != 0 );
            return Make( std::move( parts ), AbsoluteBase( url->base.get() ) );
        } );
}

CFURLRef CFURLCreateCopyDeletingLastPathComponent( CFAllocatorRef, CFURLRef url )
{
    return NullIfThrown(
        [&]() -> CFURLRef
        {
            if ( url == nullptr || url->parts.IsOpaque() )
            {
                return nullptr;
            }
            URLParts parts = PartsToChange( *url );
            parts.path = DeleteLastComponent( parts.path );
            return Make( std::move( parts ), AbsoluteBase( url->base.get() ) );
        } );
}
