#include "streams/StringReceiver.h"

StringReceiver::StringReceiver( std::string& target ) : mTarget( &target ) {}

StringReceiver& StringReceiver::operator()( std::string& target )
{
    mTarget = &target;
    return *this;
}

void StringReceiver::Start()
{
    mTarget->clear();
}

void StringReceiver::Receive( ConstData data )
{
    mTarget->append( reinterpret_cast<char const*>( data.begin() ), data.Length() );
}

void StringReceiver::ReceiveEnd() {}
