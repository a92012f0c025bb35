#include "linux/CoreFoundation/PropertyListReader.h"

#include "linux/CoreFoundation/EightBitTables.h"
#include "linux/CoreFoundation/KeyedHash.h"
#include "linux/CoreFoundation/TextConverter.h"

#include <CoreFoundation/CFPropertyList.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <expat.h>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <strings.h>
#include <type_traits>

namespace
{

// A document without its byte-order mark and leading blanks, and what the mark says.
struct Source
{
    std::string_view text;
    char const* encoding = nullptr; // null: the XML declaration decides, or else it is UTF-8
    std::size_t unitSize = 1;
    std::size_t linesSkipped = 0;

    explicit Source( std::string_view document ) : text( document )
    {
        TakeMark( "\xEF\xBB\xBF", "UTF-8", 1 ) || TakeMark( "\xFE\xFF", "UTF-16BE", 2 ) ||
            TakeMark( "\xFF\xFE", "UTF-16LE", 2 );
        for ( ; IsBlankUnit( UnitAt( 0 ) ); text.remove_prefix( unitSize ) )
        {
            linesSkipped += UnitAt( 0 ) == '\n' ? 1 : 0;
        }
        if ( encoding == nullptr && text.substr( 0, 2 ).find( '\0' ) != std::string_view::npos )
        {
            throw PropertyListError( "UTF-16 without a byte-order mark" );
        }
    }

    // The unit at a byte offset; 0, which stands in no document, beyond the end.
    unsigned UnitAt( std::size_t offset ) const
    {
        if ( text.size() < unitSize || offset > text.size() - unitSize )
        {
            return 0;
        }
        auto const byte = [&]( std::size_t i ) -> unsigned
        { return static_cast<unsigned char>( text[offset + i] ); };
        if ( unitSize == 1 )
        {
            return byte( 0 );
        }
        return encoding == std::string_view( "UTF-16BE" ) ? byte( 0 ) << 8 | byte( 1 )
                                                          : byte( 1 ) << 8 | byte( 0 );
    }

  private:
    static bool IsBlankUnit( unsigned unit )
    {
        return unit == ' ' || unit == '\t' || unit == '\n' || unit == '\r';
    }

    bool TakeMark( std::string_view mark, char const* itsEncoding, std::size_t itsUnitSize )
    {
        if ( !text.starts_with( mark ) )
        {
            return false;
        }
        text.remove_prefix( mark.size() );
        encoding = itsEncoding;
        unitSize = itsUnitSize;
        return true;
    }
};

// The character that a byte stands for on its own, or -1.
int CharacterOf( char byte, TextConverter& converter )
{
    std::optional<std::string> const converted = converter.Convert( { &byte, 1 } );
    char32_t character = 0;
    if ( !converted || converted->size() != sizeof character )
    {
        return -1;
    }
    std::memcpy( &character, converted->data(), sizeof character );
    return static_cast<int>( character );
}

// Fills expat's table of an encoding; false when there is none of that name.
bool FillTable( char const* name, int ( &table )[256] )
{
    for ( int i = 0; i < 256; ++i )
    {
        table[i] = i;
    }
    if ( strcasecmp( name, "windows-1252" ) == 0 )
    {
        std::ranges::copy( kWindowsLatin1, table + 0x80 );
        return true;
    }
    if ( strcasecmp( name, "macintosh" ) == 0 )
    {
        std::ranges::copy( kMacRoman, table + 0x80 );
        return true;
    }
    TextConverter converter( HostUTF32Name(), name );
    if ( !converter.IsKnown() )
    {
        return false;
    }
    for ( int i = 0; i < 256; ++i )
    {
        table[i] = CharacterOf( static_cast<char>( i ), converter );
    }
    return true;
}

// One run of expat over one document.
//
// Line ends in strings are to stay as they are, but expat reports each as a single "\n", as XML
// asks it to. It reports it alone, though, and says where in the document the event began; the
// document is in memory, so the handler looks there.
class Reader
{
  public:
    Reader( std::string_view document, CFStringObject::Mutability strings )
        : mSource( document ), mBuilder( strings ), mParser( XML_ParserCreate( mSource.encoding ) )
    {
        if ( !mParser )
        {
            throw std::bad_alloc();
        }
        // Otherwise each parser asks the system for random bits.
        XML_SetHashSalt( Parser(), HashPoint() );
        XML_SetUserData( Parser(), this );
        XML_SetElementHandler( Parser(), OnStart, OnEnd );
        XML_SetCharacterDataHandler( Parser(), OnText );
        XML_SetStartCdataSectionHandler( Parser(), OnStartCData );
        XML_SetCommentHandler( Parser(), OnComment );
        XML_SetProcessingInstructionHandler( Parser(), OnInstruction );
        XML_SetStartDoctypeDeclHandler( Parser(), OnDoctype );
        XML_SetSkippedEntityHandler( Parser(), OnSkippedEntity );
        XML_SetUnknownEncodingHandler( Parser(), OnUnknownEncoding, this );
    }

    Owned<CFObject const> Read()
    {
        // The whole document at once: expat then never starts a long token over.
        XML_Status const status = XML_Parse(
            Parser(), mSource.text.data(), static_cast<int>( mSource.text.size() ), XML_TRUE );
        if ( mFailure )
        {
            Rethrow();
        }
        if ( status != XML_STATUS_OK && !mBuilder.IsPlistClosed() )
        {
            if ( XML_GetErrorCode( Parser() ) == XML_ERROR_NO_MEMORY )
            {
                throw std::bad_alloc();
            }
            throw PropertyListError( AtLine( XML_ErrorString( XML_GetErrorCode( Parser() ) ) ) );
        }
        return mBuilder.TakeRoot();
    }

  private:
    struct FreeParser
    {
        void operator()( XML_Parser parser ) const { XML_ParserFree( parser ); }
    };

    XML_Parser Parser() const { return mParser.get(); }

    // Carries out what an event asks for. No exception passes through expat: it is kept, and expat
    // stopped. Events that expat still reports after it has been stopped are ignored.
    template<class Action>
    static void Handle( void* userData, Action const& action )
    {
        Reader& reader = *static_cast<Reader*>( userData );
        if ( reader.mFailure || reader.mBuilder.IsPlistClosed() )
        {
            return;
        }
        try
        {
            action( reader );
            if ( reader.mBuilder.IsPlistClosed() )
            {
                XML_StopParser( reader.Parser(), XML_FALSE );
            }
        }
        catch ( ... )
        {
            reader.mFailure = std::current_exception();
            XML_StopParser( reader.Parser(), XML_FALSE );
        }
    }

    static void XMLCALL OnStart( void* userData, XML_Char const* name, XML_Char const** )
    {
        Handle( userData, [name]( Reader& reader ) { reader.mBuilder.StartElement( name ); } );
    }

    static void XMLCALL OnEnd( void* userData, XML_Char const* )
    {
        Handle( userData,
            []( Reader& reader )
            {
                // Where start and end are one tag, expat counts its bytes for the start.
                bool const isShortForm = XML_GetCurrentByteCount( reader.Parser() ) == 0;
                reader.mBuilder.EndElement( isShortForm );
            } );
    }

    static void XMLCALL OnText( void* userData, XML_Char const* text, int length )
    {
        Handle( userData,
            [&]( Reader& reader )
            {
                std::string_view const piece( text, static_cast<std::size_t>( length ) );
                reader.mBuilder.Text(
                    reader.mBuilder.IsInLeaf() ? reader.OriginalText( piece ) : piece );
            } );
    }

    static void XMLCALL OnStartCData( void* userData )
    {
        Handle( userData, []( Reader& reader ) { reader.mBuilder.StartCData(); } );
    }

    static void XMLCALL OnComment( void* userData, XML_Char const* )
    {
        Handle( userData, []( Reader& reader ) { reader.mBuilder.AllowOnlyOutsideLeaves(); } );
    }

    static void XMLCALL OnInstruction( void* userData, XML_Char const*, XML_Char const* )
    {
        Handle( userData, []( Reader& reader ) { reader.mBuilder.AllowOnlyOutsideLeaves(); } );
    }

    static void XMLCALL OnDoctype(
        void* userData, XML_Char const*, XML_Char const*, XML_Char const*, int hasInternalSubset )
    {
        Handle( userData,
            [hasInternalSubset]( Reader& )
            {
                if ( hasInternalSubset != 0 )
                {
                    throw PropertyListError( "a DOCTYPE with an internal subset" );
                }
            } );
    }

    static void XMLCALL OnSkippedEntity( void* userData, XML_Char const*, int )
    {
        Handle( userData, []( Reader& ) { throw PropertyListError( "undefined entity" ); } );
    }

    static int XMLCALL OnUnknownEncoding( void* userData, XML_Char const* name, XML_Encoding* info )
    {
        bool isKnown = false;
        Handle( userData, [&]( Reader& ) { isKnown = FillTable( name, info->map ); } );
        info->data = nullptr;
        info->convert = nullptr;
        info->release = nullptr;
        return isKnown ? XML_STATUS_OK : XML_STATUS_ERROR;
    }

    // The text of the current event with the document's own line end.
    std::string_view OriginalText( std::string_view text ) const
    {
        if ( text != "\n" )
        {
            return text;
        }
        auto const offset = static_cast<std::size_t>( XML_GetCurrentByteIndex( Parser() ) );
        if ( mSource.UnitAt( offset ) != '\r' )
        {
            return text;
        }
        return mSource.UnitAt( offset + mSource.unitSize ) == '\n' ? "\r\n" : "\r";
    }

    std::string AtLine( std::string const& reason ) const
    {
        return "Line " +
               std::to_string( XML_GetCurrentLineNumber( Parser() ) + mSource.linesSkipped ) +
               ": " + reason;
    }

    [[noreturn]] void Rethrow() const
    {
        try
        {
            std::rethrow_exception( mFailure );
        }
        catch ( PropertyListError const& error )
        {
            throw PropertyListError( AtLine( error.what() ) );
        }
    }

    Source const mSource;
    PropertyListBuilder mBuilder;
    std::unique_ptr<std::remove_pointer_t<XML_Parser>, FreeParser> const mParser;
    std::exception_ptr mFailure;
};

} // namespace

Owned<CFObject const> ReadPropertyList(
    std::string_view document, CFStringObject::Mutability strings )
{
    if ( document.size() > static_cast<std::size_t>( kCFPropertyListMaximumDataLength ) )
    {
        throw PropertyListError( "The data is longer than 16 MiB" );
    }
    return Reader( document, strings ).Read();
}
