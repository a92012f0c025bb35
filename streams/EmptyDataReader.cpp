#include "streams/EmptyDataReader.h"

void EmptyDataReader::Reset() {}

bool EmptyDataReader::Finished() const
{
    return true;
}

DataReader& EmptyDataReader::operator>>( Buffer& )
{
    return *this;
}
