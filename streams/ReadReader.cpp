#include "streams/ReadReader.h"

#include "foundation/Buffer.h"
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

std::string ReadReader( DataReader& reader )
{
    std::string result;
    StringReceiver receiver( result );
    ReadReader( reader, receiver );
    return result;
}
