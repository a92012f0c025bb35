#include "streams/MessageMaker.h"

MessageMaker::MessageMaker( MessageReceiver& target ) : mTarget( &target ) {}

MessageMaker& MessageMaker::operator()( MessageReceiver& target )
{
    mTarget = &target;
    return *this;
}

void MessageMaker::Start( unsigned long long position )
{
    mHeaderMaker( *mTarget );
    mLines = &mHeaderMaker;
    mInHeaders = true;
    mAtLineStart = true;
    mTarget->Start( position );
    mHeaderMaker.Start( position );
}

void MessageMaker::Receive( ConstData text )
{
    mAtLineStart = false; // first, so that nothing is left to do after the call
    if ( mInHeaders )     // the header maker, whose functions need not be looked up
        mHeaderMaker.Receive( text );
    else
        mLines->Receive( text );
}

void MessageMaker::ReceiveLineBreak( Range<unsigned long long> where )
{
    if ( mAtLineStart && mInHeaders )
    {
        mHeaderMaker.ReceiveEnd( where.first );
        mInHeaders = false;
        mLines = &mTarget->ReceiveBody( where.last );
        mLines->Start( where.last );
    }
    else if ( mInHeaders )
        mHeaderMaker.ReceiveLineBreak( where );
    else
        mLines->ReceiveLineBreak( where );
    mAtLineStart = true;
}

void MessageMaker::ReceiveEnd( unsigned long long position )
{
    mLines->ReceiveEnd( position );
    if ( mInHeaders )
    {
        LineReceiver& body = mTarget->ReceiveBody( position );
        body.Start( position );
        body.ReceiveEnd( position );
    }
    mTarget->ReceiveEnd( position );
}
