#include "streams/DataReader.h"

#include "streams/EmptyDataReader.h"
#include "streams/NoMoreData.h"

namespace
{

constinit EmptyDataReader gEmptyDataReader;

} // namespace

DataReader::~DataReader() = default;

bool DataReader::Unfinished() const
{
    return !Finished();
}

DataReader& DataReader::operator>>( Data to )
{
    Buffer buffer( to );
    while ( !buffer.IsFull() && Unfinished() )
        *this >> buffer;
    if ( !buffer.IsFull() )
        throw NoMoreData();
    return *this;
}

DataReader& DataReader::Empty()
{
    return gEmptyDataReader;
}
