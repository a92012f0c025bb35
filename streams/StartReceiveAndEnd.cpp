#include "streams/StartReceiveAndEnd.h"

#include "streams/DataFilterer.h"

void StartReceiveAndEnd( DataReceiver& receiver, ConstData data )
{
    receiver.Start();
    receiver.Receive( data );
    receiver.ReceiveEnd();
}

void StartReceiveAndEnd( DataReceiver& receiver, ConstDataRopeReference rope )
{
    receiver.Start();
    receiver.Receive( rope );
    receiver.ReceiveEnd();
}

void StartReceiveAndEnd( DataReceiver& receiver, ConstData data, DataFilter& filter )
{
    DataFilterer filterer;
    StartReceiveAndEnd( filterer( receiver, filter ), data );
}

void StartReceiveAndEnd( DataReceiver& receiver, ConstDataRopeReference rope, DataFilter& filter )
{
    DataFilterer filterer;
    StartReceiveAndEnd( filterer( receiver, filter ), rope );
}
