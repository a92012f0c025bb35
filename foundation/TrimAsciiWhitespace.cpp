#include "foundation/TrimAsciiWhitespace.h"

#include "foundation/Ascii.h"

ConstData TrimLeadingAsciiWhitespace( ConstData text )
{
    unsigned char const* begin = text.begin();
    while ( begin != text.end() && Ascii::IsMember( Ascii::WhiteSpace(), *begin ) )
        ++begin;
    return { begin, text.end() };
}

ConstData TrimAsciiWhitespace( ConstData text )
{
    ConstData const trimmed = TrimLeadingAsciiWhitespace( text );
    unsigned char const* end = trimmed.end();
    while ( end != trimmed.begin() && Ascii::IsMember( Ascii::WhiteSpace(), end[-1] ) )
        --end;
    return { trimmed.begin(), end };
}
