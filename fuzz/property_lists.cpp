// The input is a document. What the reader accepts must be well-formed by expat alone, and what it
// made of it must come back when it is written and read again.

#include "fuzz/FuzzInput.h"
#include "fuzz/PropertyListText.h"

#include <expat.h>

#include <algorithm>
#include <cstdlib>
#include <new>

namespace
{

std::size_t gAllocated = 0; // bytes so far, by operator new

/// A byte-order mark, the encoding it stands for, and where in a unit an ASCII character stands.
struct Mark
{
    std::string_view bytes;
    char const* encoding;
    std::size_t unitSize;
    std::size_t place;
};

constexpr Mark kMarks[] = { { "\xEF\xBB\xBF", "UTF-8", 1, 0 }, { "\xFE\xFF", "UTF-16BE", 2, 1 },
    { "\xFF\xFE", "UTF-16LE", 2, 0 }, { "", nullptr, 1, 0 } };

/// Takes off what the reader allows in front of a document: its mark, which it returns, and blanks.
Mark TakeFront( std::string_view& document )
{
    Mark const mark = *std::ranges::find_if(
        kMarks, [&]( Mark const& each ) { return document.starts_with( each.bytes ); } );
    document.remove_prefix( mark.bytes.size() );
    auto const isBlank = [&]( std::string_view unit )
    {
        return unit.size() == mark.unitSize &&
               std::string_view( " \t\r\n" ).find( unit[mark.place] ) != unit.npos &&
               ( unit.size() == 1 || unit[1 - mark.place] == 0 );
    };
    while ( isBlank( document.substr( 0, mark.unitSize ) ) )
        document.remove_prefix( mark.unitSize );
    return mark;
}

/// A run of expat that stops behind the </plist> of the whole document, as the reader does.
struct Run
{
    XML_Parser parser = nullptr;
    int depth = 0;
    bool hasEnded = false;
};

bool IsWellFormed( std::string_view document )
{
    Run run{ XML_ParserCreate( TakeFront( document ).encoding ) };
    XML_SetUserData( run.parser, &run );
    XML_SetElementHandler(
        run.parser,
        []( void* user, char const*, char const** ) { ++static_cast<Run*>( user )->depth; },
        []( void* user, char const* name )
        {
            Run& ended = *static_cast<Run*>( user );
            if ( --ended.depth == 0 && std::string_view( name ) == "plist" )
            {
                ended.hasEnded = true;
                XML_StopParser( ended.parser, XML_FALSE );
            }
        } );
    XML_Status const status =
        XML_Parse( run.parser, document.data(), static_cast<int>( document.size() ), XML_TRUE );
    // Expat knows four encodings; what others it would take is the reader's own matter.
    bool const isUnknown = XML_GetErrorCode( run.parser ) == XML_ERROR_UNKNOWN_ENCODING;
    XML_ParserFree( run.parser );
    return status == XML_STATUS_OK || run.hasEnded || isUnknown;
}

} // namespace

// The address sanitizer must not supply one of these alone: memory would be freed by another's.

void* operator new( std::size_t size, std::nothrow_t const& ) noexcept
{
    gAllocated += size;
    return std::malloc( size );
}

void* operator new( std::size_t size )
{
    if ( void* const block = operator new( size, std::nothrow ) )
        return block;
    throw std::bad_alloc();
}

void operator delete( void* block ) noexcept
{
    std::free( block );
}

void operator delete( void* block, std::size_t ) noexcept
{
    std::free( block );
}

int LLVMFuzzerTestOneInput( std::uint8_t const* data, std::size_t size )
{
    std::string_view const document( reinterpret_cast<char const*>( data ), size );
    std::size_t const before = gAllocated;
    Held<CFTypeRef> const root = ReadPropertyList( document, kCFPropertyListImmutable );
    std::size_t const most = 16384 + 256 * size;
    Require( gAllocated - before <= most, "the memory is linear in the document" );
    if ( root == nullptr )
        return 0;
    Require( IsWellFormed( document ), "what is accepted is well-formed" );
    Held<CFTypeRef> const mutableRoot =
        ReadPropertyList( document, kCFPropertyListMutableContainersAndLeaves );
    Require( mutableRoot != nullptr, "the same is accepted with every option" );
    std::optional<std::string> const text = PropertyListText( root.get() );
    Require( text == PropertyListText( mutableRoot.get() ), "the same is read with every option" );
    if ( !text )
        return 0;
    Held<CFTypeRef> const again = ReadPropertyList( *text, kCFPropertyListImmutable );
    Require( again != nullptr, "what was written is accepted" );
    Require( PropertyListText( again.get() ) == text, "what was written is read again" );
    Require( CFEqual( root.get(), again.get() ), "the objects are equal" );
    return 0;
}
