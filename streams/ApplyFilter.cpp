#include "streams/ApplyFilter.h"

#include "streams/StartReceiveAndEnd.h"
#include "streams/StringReceiver.h"

std::string ApplyFilter( ConstData data, DataFilter& filter )
{
    std::string result;
    StringReceiver receiver( result );
    StartReceiveAndEnd( receiver, data, filter );
    return result;
}
