#include "foundation/Buffer.h"

#include <algorithm>
#include <cstring>

namespace
{

void Append( Buffer& to, ConstData bytes )
{
    std::uint32_t const count = std::min( bytes.Length(), to.Room().Length() );
    if ( count == 0 )
        return;
    std::memmove( to.Next(), bytes.begin(), count );
    to.Advance( count );
}

} // namespace

Buffer& operator<<( Buffer& to, ConstBuffer& from )
{
    std::uint32_t const unread = from.Unread().Length();
    std::uint32_t const room = to.Room().Length();
    Append( to, from.Unread() );
    from.Advance( std::min( unread, room ) );
    return to;
}

Buffer& operator<<( Buffer& to, ConstDataRopeReference rope )
{
    for ( ConstData piece : rope )
        Append( to, piece );
    return to;
}

Data operator<<( Data to, ConstDataRopeReference rope )
{
    Buffer buffer( to );
    buffer << rope;
    return buffer.Room();
}
