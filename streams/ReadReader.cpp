#include "streams/ReadReader.h"

#include "foundation/Buffer.h"
#include "streams/LineMaker.h"
#include "streams/MessageMaker.h"
#include "streams/StringHTTPReceiver.h"
#include "streams/StringReceiver.h"

void ReadReader( DataReader& reader, DataReceiver& receiver )
{
    constexpr unsigned kSize = 4096;
    unsigned char storage[kSize];
    receiver.Start();
    while ( reader.Unfinished() )
    {
        Buffer buffer( Data( storage, storage + kSize ) );
        reader >> buffer;
        receiver.Receive( buffer.Filled() );
    }
    receiver.ReceiveEnd();
}

void ReadReader( DataReader& reader, LineReceiver& receiver )
{
    LineMaker lineMaker( receiver );
    ReadReader( reader, lineMaker );
}

void ReadReader( DataReader& reader, MessageReceiver& receiver )
{
    MessageMaker messageMaker( receiver );
    ReadReader( reader, messageMaker );
}

std::string ReadReader( DataReader& reader )
{
    std::string result;
    StringReceiver receiver( result );
    ReadReader( reader, receiver );
    return result;
}

std::string ReadReader( DataReader& reader, unsigned int maximum )
{
    std::string result;
    StringHTTPReceiver receiver( result, maximum );
    ReadReader( reader, receiver );
    return result;
}
