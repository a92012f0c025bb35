#include "streams/DataFilterer.h"

namespace
{

constexpr unsigned kOutputSize = 1024;

} // namespace

DataFilterer& DataFilterer::operator()( DataReceiver& downstream, DataFilter& filter )
{
    mDownstream = &downstream;
    mFilter = &filter;
    return *this;
}

void DataFilterer::Start()
{
    mDownstream->Start();
}

void DataFilterer::Receive( ConstData data )
{
    unsigned char storage[kOutputSize];
    ConstBuffer input( data );
    while ( !input.IsEmpty() )
    {
        Buffer output( Data( storage, storage + kOutputSize ) );
        ( *mFilter )( input, output );
        mDownstream->Receive( output.Filled() );
    }
}

void DataFilterer::ReceiveEnd()
{
    unsigned char storage[kOutputSize];
    while ( !mFilter->Flushed() )
    {
        Buffer output( Data( storage, storage + kOutputSize ) );
        mFilter->Flush( output );
        mDownstream->Receive( output.Filled() );
    }
    mDownstream->ReceiveEnd();
}
