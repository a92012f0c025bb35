#include "foundation/MilliSecondSleep.h"

#include <unistd.h>

int MilliSecondSleep( unsigned int milliSeconds )
{
    if ( milliSeconds > 999 )
    {
        sleep( milliSeconds / 1000 );
        milliSeconds %= 1000;
    }
    return usleep( milliSeconds * 1000 );
}
