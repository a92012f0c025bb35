#include "streams/DataReceiver.h"

#include "streams/IgnoreDataReceiver.h"

namespace
{

constinit IgnoreDataReceiver gIgnoreDataReceiver;

} // namespace

DataReceiver& DataReceiver::operator<<( ConstData data )
{
    Receive( data );
    return *this;
}

DataReceiver::~DataReceiver() = default;

void DataReceiver::Receive( ConstDataRopeReference rope )
{
    for ( ConstData piece : rope )
        Receive( piece );
}

DataReceiver& DataReceiver::Ignore()
{
    return gIgnoreDataReceiver;
}
