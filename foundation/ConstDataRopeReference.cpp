#include "foundation/ConstDataRopeReference.h"

std::size_t TotalLength( ConstDataRopeReference rope )
{
    std::size_t length = 0;
    for ( ConstData piece : rope )
        length += piece.Length();
    return length;
}
