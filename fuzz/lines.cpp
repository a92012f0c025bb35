// The line maker, whole and cut anywhere, against a plain search for breaks; and every line break
// kernel against the same bytes.

#include "fuzz/FuzzInput.h"
#include "streams/LineBreakKernels.h"
#include "streams/LineMaker.h"
#include "tests/support/RecordingLineReceiver.h"

namespace
{

bool IsBreak( char c )
{
    return c == '\r' || c == '\n';
}

// What should be written down of `text`.
std::string Lines( std::string_view text, unsigned long long start )
{
    EventLog log;
    RecordingLineReceiver recorder( log );
    recorder.Start( start );
    for ( std::size_t i = 0; i < text.size(); )
    {
        std::size_t last = std::min( text.find_first_of( "\r\n", i ), text.size() );
        if ( last > i )
            recorder.Receive( text.substr( i, last - i ) );
        else
        {
            bool const isPair =
                i + 1 < text.size() && IsBreak( text[i + 1] ) && text[i + 1] != text[i];
            last = i + 1 + isPair;
            recorder.ReceiveLineBreak( { start + i, start + last } );
        }
        i = last;
    }
    recorder.ReceiveEnd( start + text.size() );
    return log.Take();
}

void CheckKernels( std::string_view text )
{
    auto const* const bytes = reinterpret_cast<unsigned char const*>( text.data() );
    auto const length = static_cast<unsigned>( text.size() );
    std::vector<std::uint16_t> expected;
    std::uint64_t mask = 0;
    for ( unsigned i = 0; i < length; ++i )
        if ( IsBreak( text[i] ) )
        {
            expected.push_back( static_cast<std::uint16_t>( i ) );
            mask |= 1ull << i % 64;
        }
    if ( length >= kFewestBytesForMask && length <= kMostBytesForMask )
        Require( LineBreakMask( bytes, length ) == mask, "LineBreakMask" );
    if ( length <= kMostBytesForMask )
        Require( LineBreakMaskByByte( bytes, length ) == mask, "LineBreakMaskByByte" );
    LineBreakOffsets offsets;
    for ( auto const& kernel : LineBreakKernels() )
        if ( kernel.isSupported() && length > 0 )
        {
            unsigned const count = kernel.function( bytes, length, offsets );
            Require( std::equal( offsets, offsets + count, expected.begin(), expected.end() ),
                kernel.name );
        }
}

} // namespace

int LLVMFuzzerTestOneInput( std::uint8_t const* data, std::size_t size )
{
    FuzzInput input( data, size );
    unsigned long long const start = input.Take<std::uint32_t>() * 2ull;
    std::size_t const choice = input.TakeUpTo( 254 );
    std::string_view const lengths = input.TakeText( input.TakeUpTo( 15 ) );
    // Some texts reach beyond what a kernel is given at once, with their breaks about there.
    std::string text( choice < 240 ? 0 : kLineBreakChunk - 4 * ( choice - 239 ), 'x' );
    text += input.TakeText( 250 ); // longer ones are only slower

    std::vector<char> const chunk =
        ExactCopy( std::string_view( text ).substr( 0, kLineBreakChunk ) );
    CheckKernels( { chunk.data(), chunk.size() } );

    std::string const expected = Lines( text, start );
    EventLog log;
    RecordingLineReceiver recorder( log );
    LineMaker maker( recorder );
    for ( std::string_view const cuts : { std::string_view(), lengths } )
    {
        maker.Start( start );
        ForEachPiece( text, cuts, [&]( std::string_view piece ) { maker << piece; } );
        maker.ReceiveEnd();
        Require( log.Take() == expected, cuts.empty() ? "whole" : "in pieces" );
    }
    return 0;
}
