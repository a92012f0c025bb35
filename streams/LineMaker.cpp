#include "streams/LineMaker.h"

#include "streams/LineBreakKernels.h"

#include <algorithm>
#include <cstddef>

namespace
{

constexpr unsigned kFewestBytesForKernels = 16;

unsigned FindLineBreaks( unsigned char const* text, unsigned length, LineBreakOffsets& offsets )
{
    if ( length < kFewestBytesForKernels )
        return LineBreaksByByte( text, 0, length, offsets, 0 );
    static auto* const find = FirstSupported( LineBreakKernels() );
    return find( text, length, offsets );
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
    else if ( !data.IsEmpty() )
        ReceivePiece( data );
}

// A function of its own: a single byte of text, which Receive passes on, needs no room for offsets.
[[gnu::noinline]] void LineMaker::ReceivePiece( ConstData data )
{
    unsigned char const* text = data.begin(); // not passed on yet
    unsigned char const* const end = data.end();
    if ( mPendingBreak != 0 )
        text += ReportBreak( *text );
    LineBreakOffsets offsets;
    for ( unsigned char const* chunk = text; chunk != end; )
    {
        auto const length =
            static_cast<unsigned>( std::min<std::ptrdiff_t>( end - chunk, kLineBreakChunk ) );
        unsigned const count = FindLineBreaks( chunk, length, offsets );
        for ( unsigned i = 0; i < count; ++i )
        {
            unsigned char const* const textEnd = chunk + offsets[i];
            mPendingBreak = *textEnd;
            PassText( text, textEnd );
            text = textEnd + 1;
            if ( text == end )
                return;
            // A branch, since the processor guesses well; else each offset would wait for this one.
            if ( ReportBreak( *text ) ) [[unlikely]]
            {
                ++text;
                ++i;
            }
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

inline bool LineMaker::ReportBreak( unsigned char next )
{
    bool const isPair = ( mPendingBreak ^ next ) == ( '\r' ^ '\n' );
    unsigned long long const last = mPosition + 1 + isPair;
    mTarget->ReceiveLineBreak( { mPosition, last } );
    mPosition = last;
    mPendingBreak = 0;
    return isPair;
}
