#include "foundation/MakeString.h"

#include <algorithm>

std::string MakeString( ConstData text )
{
    return { reinterpret_cast<char const*>( text.begin() ), text.Length() };
}

std::string MakeString( ConstDataRopeReference text )
{
    std::string result( TotalLength( text ), '\0' );
    auto next = result.begin();
    for ( ConstData piece : text )
        next = std::copy( piece.begin(), piece.end(), next );
    return result;
}
