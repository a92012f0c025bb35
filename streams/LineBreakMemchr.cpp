#include "streams/LineBreakKernels.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace
{

// The first `byte` in [begin, end), or `end`.
unsigned char const* Find(
    unsigned char byte, unsigned char const* begin, unsigned char const* end )
{
    void const* const found = std::memchr( begin, byte, static_cast<std::size_t>( end - begin ) );
    return found != nullptr ? static_cast<unsigned char const*>( found ) : end;
}

} // namespace

unsigned LineBreaksByMemchr( unsigned char const* text, unsigned length, LineBreakOffsets& offsets )
{
    unsigned char const* const end = text + length;
    // Each is looked for again only when it is passed, so that the time stays linear in pieces with
    // many of one kind and none of the other.
    unsigned char const* cr = Find( '\r', text, end );
    unsigned char const* lf = Find( '\n', text, end );
    unsigned count = 0;
    while ( cr != lf ) // both at the end
    {
        unsigned char const* const first = std::min( cr, lf );
        offsets[count++] = static_cast<std::uint16_t>( first - text );
        ( first == cr ? cr : lf ) = Find( *first, first + 1, end );
    }
    return count;
}
