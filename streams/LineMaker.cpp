#include "streams/LineMaker.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace
{

constexpr unsigned char kCR = 13;
constexpr unsigned char kLF = 10;

// The first `byte` in [begin, end), or `end`.
unsigned char const* Find(
    unsigned char byte, unsigned char const* begin, unsigned char const* end )
{
    void const* const found = std::memchr( begin, byte, static_cast<std::size_t>( end - begin ) );
    return found != nullptr ? static_cast<unsigned char const*>( found ) : end;
}

} // namespace

LineMaker::LineMaker( LineReceiver& target ) : mTarget( &target ) {}

LineMaker& LineMaker::operator()( LineReceiver& target )
{
    mTarget = &target;
    return *this;
}

void LineMaker::Start()
{
    Start( 0 );
}

void LineMaker::Start( unsigned long long position )
{
    mPosition = position;
    mPendingBreak = 0;
    mTarget->Start( position );
}

void LineMaker::Receive( ConstData data )
{
    if ( data.IsEmpty() )
        return;
    unsigned char const* cur = data.begin();
    unsigned char const* const end = data.end();
    // Each is looked for again only when it is passed, so that the time stays linear in pieces with
    // many of one kind and none of the other.
    unsigned char const* cr = Find( kCR, cur, end );
    unsigned char const* lf = Find( kLF, cur, end );
    while ( cur != end )
    {
        if ( mPendingBreak != 0 )
        {
            bool const isPair = cur == ( mPendingBreak == kCR ? lf : cr );
            ReportBreak( isPair ? 2 : 1 );
            cur += isPair;
        }
        if ( cr < cur )
            cr = Find( kCR, cur, end );
        if ( lf < cur )
            lf = Find( kLF, cur, end );
        unsigned char const* const textEnd = std::min( cr, lf );
        if ( textEnd != end )
            mPendingBreak = *textEnd;
        if ( textEnd != cur )
        {
            mTarget->Receive( ConstData( cur, textEnd ) );
            mPosition += static_cast<unsigned long long>( textEnd - cur );
        }
        cur = textEnd != end ? textEnd + 1 : end;
    }
}

void LineMaker::ReceiveEnd()
{
    if ( mPendingBreak != 0 )
        ReportBreak( 1 );
    mTarget->ReceiveEnd( mPosition );
}

void LineMaker::ReportBreak( unsigned length )
{
    mTarget->ReceiveLineBreak( { mPosition, mPosition + length } );
    mPosition += length;
    mPendingBreak = 0;
}
