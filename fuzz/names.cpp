// The input is a length, a text of that many bytes, which is tried as a name and as a path, and
// another name.

#include "encoding/InvalidTextEncoding.h"
#include "files/FileLocationWithWildcard.h"
#include "files/FileNameErrors.h"
#include "files/mac/FileErrors.h"
#include "files/mac/MakeFileLocation.h"
#include "fuzz/FuzzInput.h"
#include "platform/CFErrors.h"
#include "platform/CFStrings.h"

#include <string>
#include <strings.h>

namespace
{

using MacintoshPlatform::FileName;

std::u16string Units( FileName const& name )
{
    return { name.Units().begin(), name.Units().end() };
}

/// A name of any units but "/", an unpaired surrogate here and there, at most 255 of them.
FileName Named( std::string_view bytes )
{
    UniChar units[FileName::kMaximumLength];
    std::size_t length = 0;
    for ( char const byte : bytes.substr( 0, FileName::kMaximumLength ) )
    {
        bool const isOther = static_cast<unsigned char>( byte ) >= 0xF0;
        unsigned const unit = isOther ? 0xD800u + static_cast<unsigned char>( byte ) * 0x80u
                                      : static_cast<unsigned char>( byte );
        units[length++] = static_cast<UniChar>( unit == '/' ? '.' : unit );
    }
    FileName name;
    name.Set( MakeCFString( units, static_cast<CFIndex>( length ) ).Get() );
    return name;
}

/// Whether nothing is thrown; the errors have no base class in common.
template<class Action>
bool Succeeds( Action const& action )
try
{
    action();
    return true;
}

catch ( ... )
{
    return false;
}

/// What the parts of a name are is said by the same operations on its units.
void TryParts( FileName const& name, FileName const& part )
{
    std::u16string const units = Units( name );
    std::u16string const other = Units( part );
    Require( name.HasPrefix( part, false ) == units.starts_with( other ), "a prefix" );
    Require( name.HasSuffix( part, false ) == units.ends_with( other ), "a suffix" );
    Require( FileName::Equal( name, part ) == ( units == other ), "equality" );
    Require( FileName::StrCmp( name, part ) ==
                 static_cast<std::int16_t>( -FileName::StrCmp( part, name ) ),
        "the difference has the other sign the other way" );
    Require( ( FileName::StrCmp( name, part ) == 0 ) == ( units == other ), "no difference" );
    Require( Units( name.BaseName() ) == units.substr( 0, units.rfind( u'.' ) ), "a base name" );

    bool const hasExtension = units.ends_with( ( other.starts_with( u'.' ) ? u"" : u"." ) + other );
    Require( name.HasExtension( part, false ) == hasExtension, "an extension" );
    bool const leavesSome = units.size() > other.size();
    FileName rest;
    Require( Succeeds( [&] { rest = name.NameBeforeExtension( part, false ); } ) ==
                 ( hasExtension && leavesSome ),
        "before an extension" );
    Require( rest.Length() == 0 || FileName::Equal( rest.Concatenate( part ), name ),
        "put together again" );
    rest = FileName();
    Require( Succeeds( [&] { rest = name.NameAfterPrefix( part, false ); } ) ==
                 ( units.starts_with( other ) && leavesSome ),
        "after a prefix" );
    Require( rest.Length() == 0 || FileName::Equal( part.Concatenate( rest ), name ),
        "put together again" );
    Require( Succeeds( [&] { rest = name.Concatenate( part ); } ) ==
                 ( units.size() + other.size() <= 255 ),
        "no name becomes too long" );
}

/// Bytes are a name either way that names are made, and lead back to themselves, if they are UTF-8.
void TryBytes( std::string const& bytes )
{
    FileName name;
    FileName onDisk;
    bool const isText =
        Succeeds( [&] { name = FileName( ConstData( bytes ), kCFStringEncodingUTF8 ); } );
    bool const isOnDisk =
        Succeeds( [&] { onDisk = FileName::FromFileSystem( ConstData( bytes ) ); } );
    Require( isOnDisk || !isText, "UTF-8 is a name on the disk as well" );
    Require( !isOnDisk || isText || Units( onDisk ).find( u'\xFFFD' ) != std::u16string::npos,
        "a byte that is no text is replaced" );
    if ( isText )
    {
        Require( FileName::Equal( name, onDisk ), "UTF-8 gives one name" );
        bool const hasMark = bytes.starts_with( "\xEF\xBB\xBF" );
        AutoUString<UTF8> const text = name.MakeUTF8String();
        Require( std::string( text.begin(), text.end() ) == bytes.substr( hasMark ? 3 : 0 ),
            "a name's bytes" );
        MorvekFileType const type = name.ExtensionType();
        Require( bytes.find( '\0' ) != std::string::npos || hasMark ||
                     type == AdviceFileTypes::TypeOfExtension( bytes.c_str() ),
            "an extension's type" );
    }
}

void TryPath( std::string const& path )
{
    ConstData folder;
    std::string_view const last = std::string_view( path ).substr( path.rfind( '/' ) + 1 );
    bool const hasWildcard = last.find_first_of( "*?" ) != std::string_view::npos;
    char const* const pattern =
        path.empty() ? nullptr : MakeFileLocationWithWildcardUnix( path.c_str(), folder );
    Require( ( pattern != nullptr ) == hasWildcard, "a wildcard stands in the last component" );
    Require( folder.Length() + ( pattern != nullptr ? last.size() : 0 ) == path.size() &&
                 ( pattern == nullptr || pattern == last ),
        "a path is its folder and its pattern" );

    std::string expected = "/" + path;
    MacintoshPlatform::FileLocation const location =
        MacintoshPlatform::MakeFileLocationOfBytes( ConstData( expected ) );
    while ( expected.size() > 1 && expected.back() == '/' )
        expected.pop_back();
    std::string found;
    bool const hasPath = Succeeds( [&] { found = location.POSIXPath(); } );
    Require( hasPath == ( expected.size() < MacintoshPlatform::kPathBufferSize ) ||
                 expected.size() + 1 == MacintoshPlatform::kPathBufferSize,
        "a path that fits" );
    Require( !hasPath || found == expected, "a location's path" );
    if ( !hasPath || location.IsRoot() )
        return;
    FileName name;
    bool const hasName = Succeeds( [&] { name = location.Name(); } );
    std::string const lastPart = expected.substr( expected.rfind( '/' ) + 1 );
    bool const isStep =
        lastPart == "." || lastPart == ".." || lastPart.starts_with( "\xEF\xBB\xBF" );
    if ( hasName && !isStep )
        Require( location.Sibling( name ).Equal( location ), "up and down again" );
}

} // namespace

int LLVMFuzzerTestOneInput( std::uint8_t const* data, std::size_t size )
{
    FuzzInput input( data, size );
    std::string const bytes( input.TakeText( input.TakeUpTo( 1100 ) % 1100 ) );
    std::string_view const other = input.TakeRest();
    TryBytes( bytes );
    TryParts( Named( bytes ), Named( other ) );
    if ( bytes.find( '\0' ) == std::string::npos )
        TryPath( bytes );
    return 0;
}
