// The line maker and the message maker against one machine that looks at one byte after another:
// the same events in the same pieces however the message is cut, and the same ones for every cut
// when pieces are joined.

#include "fuzz/FuzzInput.h"
#include "streams/LineMaker.h"
#include "streams/MessageMaker.h"
#include "tests/support/ByteMessageMaker.h"
#include "tests/support/RecordingMessageReceiver.h"

namespace
{

std::string Push(
    DataReceiver& maker, EventLog& log, std::string_view text, std::string_view lengths )
{
    maker.Start();
    ForEachPiece( text, lengths, [&]( std::string_view piece ) { maker << piece; } );
    maker.ReceiveEnd();
    return log.Take();
}

} // namespace

int LLVMFuzzerTestOneInput( std::uint8_t const* data, std::size_t size )
{
    FuzzInput input( data, size );
    std::string_view const lengths = input.TakeText( input.TakeUpTo( 15 ) );
    std::string_view const text = input.TakeText( 250 ); // longer ones are only slower

    EventLog log;
    RecordingMessageReceiver recorder( log );
    MessageMaker messageMaker( recorder );
    LineMaker maker( messageMaker );
    ByteMessageMaker plain( recorder );

    std::string const expected = Push( plain, log, text, {} );
    Require( Push( maker, log, text, {} ) == expected, "whole" );
    Require( Push( maker, log, text, lengths ) == expected, "cut, pieces joined" );
    log.inPieces = true;
    Require( Push( maker, log, text, lengths ) == Push( plain, log, text, lengths ), "in pieces" );
    return 0;
}
