#include "streams/StringHTTPReceiver.h"

#include "foundation/ExceptionPL.h"

StringHTTPReceiver::StringHTTPReceiver( std::string& target, std::uint32_t maximum )
    : StringReceiver( target ), mMaximum( maximum )
{
}

StringHTTPReceiver::~StringHTTPReceiver() = default;

void StringHTTPReceiver::Receive( ConstData data )
{
    if ( std::uint64_t{ Target().size() } + data.Length() > mMaximum )
        throw ExceptionPL( "The request cannot be fulfilled because the maximum size for the HTTP "
                           "body has been reached." );
    StringReceiver::Receive( data );
}
