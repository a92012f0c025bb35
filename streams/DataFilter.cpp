#include "streams/DataFilter.h"

constinit DataFilter DataFilter::copy;

DataFilter::~DataFilter() = default;

void DataFilter::operator()( ConstBuffer& in, Buffer& out )
{
    out << in;
}

bool DataFilter::Flushed() const
{
    return true;
}

void DataFilter::Flush( Buffer& ) {}

void DataFilter::operator()( ConstData in, Data out )
{
    if ( in.IsEmpty() || out.IsEmpty() )
        return;
    ConstBuffer input( in );
    Buffer output( out );
    ( *this )( input, output );
}

void DataFilter::operator()( ConstBuffer& in, Data out )
{
    if ( out.IsEmpty() )
        return;
    Buffer output( out );
    ( *this )( in, output );
}

void DataFilter::operator()( ConstData in, Buffer& out )
{
    if ( in.IsEmpty() )
        return;
    ConstBuffer input( in );
    ( *this )( input, out );
}
