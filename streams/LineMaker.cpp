#include "streams/LineMaker.h"

#include "streams/LineBreakKernels.h"

#include <algorithm>
#include <bit>
#include <cstddef>

namespace
{

// A bit for each of at most kMostBytesForMask bytes.
std::uint64_t FindLineBreaks( unsigned char const* text, unsigned length )
{
    return length < kFewestBytesForMask ? LineBreakMaskByByte( text, length )
                                        : LineBreakMask( text, length );
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
    bool const isByte = data.end() - data.begin() == 1;
    if ( isByte && mPendingBreak == 0 && data[0] != '\r' && data[0] != '\n' )
    {
        mTarget->Receive( data );
        ++mPosition;
    }
    else if ( data.end() - data.begin() <= kMostBytesForMask )
        ReceiveShortPiece( data );
    else
        ReceiveLongPiece( data );
}

// A function of its own: Receive, for a single byte of text, need not save registers.
[[gnu::noinline]] void LineMaker::ReceiveShortPiece( ConstData data )
{
    unsigned char const* text = data.begin(); // not passed on yet
    std::uint64_t breaks = FindLineBreaks( text, data.Length() );
    if ( mPendingBreak != 0 && !data.IsEmpty() && ReportBreak( *text ) )
    {
        ++text;
        breaks &= breaks - 1;
    }
    while ( breaks != 0 )
    {
        bool const isPair = TakeLine( text, data.begin() + std::countr_zero( breaks ), data.end() );
        breaks &= breaks - 1;
        if ( isPair )
            breaks &= breaks - 1;
    }
    PassText( text, data.end() );
}

// A function of its own: shorter pieces need no room for offsets.
[[gnu::noinline]] void LineMaker::ReceiveLongPiece( ConstData data )
{
    static auto* const findBreaks = FirstSupported( LineBreakKernels() );
    unsigned char const* text = data.begin(); // not passed on yet
    unsigned char const* const end = data.end();
    if ( mPendingBreak != 0 )
        text += ReportBreak( *text );
    LineBreakOffsets offsets;
    for ( unsigned char const* chunk = text; chunk != end; )
    {
        auto const length =
            static_cast<unsigned>( std::min<std::ptrdiff_t>( end - chunk, kLineBreakChunk ) );
        unsigned const count = findBreaks( chunk, length, offsets );
        for ( unsigned i = 0; i < count; ++i )
        {
            // A branch, since the processor guesses well; else each offset would wait for this one.
            if ( TakeLine( text, chunk + offsets[i], end ) ) [[unlikely]]
                ++i;
        }
        chunk = std::max( chunk + length, text ); // a pair can reach into the next one
    }
    PassText( text, end );
}

void LineMaker::ReceiveEnd()
{
    if ( mPendingBreak != 0 )
        ReportBreak( 0 );
    mTarget->ReceiveEnd( mPosition );
}

inline void LineMaker::PassText( unsigned char const* begin, unsigned char const* end )
{
    if ( begin == end )
        return;
    mTarget->Receive( ConstData( begin, end ) );
    mPosition += static_cast<unsigned long long>( end - begin );
}

inline bool LineMaker::TakeLine(
    unsigned char const*& text, unsigned char const* lineEnd, unsigned char const* end )
{
    mPendingBreak = *lineEnd;
    PassText( text, lineEnd );
    text = lineEnd + 1;
    if ( text == end || !ReportBreak( *text ) )
        return false;
    ++text;
    return true;
}

inline bool LineMaker::ReportBreak( unsigned char next )
{
    bool const isPair = ( mPendingBreak ^ next ) == ( '\r' ^ '\n' );
    unsigned long long const last = mPosition + 1 + isPair;
    mTarget->ReceiveLineBreak( { mPosition, last } );
    mPosition = last;
    mPendingBreak = 0;
    return isPair;
}
