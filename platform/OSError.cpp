#include "platform/OSError.h"

#include <CoreServices/MacErrors.h>

OSError& OSError::operator=( std::int32_t code )
{
    if ( mCode == 0 )
    {
        mCode = code;
    }
    return *this;
}

OSError& OSError::operator=( OSError const& other )
{
    return *this = other.mCode;
}

void OSError::Fix( std::int32_t code )
{
    if ( mCode == code )
    {
        mCode = 0;
    }
}

void ThrowRealOSError( std::int32_t code )
{
    if ( code == memFullErr )
    {
        throw MemoryFullError( code );
    }
    throw OSError( code );
}
