#include "streams/HeaderMaker.h"

#include "foundation/Ascii.h"

#include <algorithm>

HeaderMaker::HeaderMaker()
    : mLinearWhiteSpace( Ascii::LinearWhiteSpace() ), mValue( &DataReceiver::Ignore() )
{
    EmptyName();
}

HeaderMaker::HeaderMaker( MessageReceiver& target ) : HeaderMaker()
{
    mTarget = &target;
}

HeaderMaker& HeaderMaker::operator()( MessageReceiver& target )
{
    mTarget = &target;
    return *this;
}

void HeaderMaker::Start( unsigned long long position )
{
    EmptyName();
    mValue = &DataReceiver::Ignore();
    mHandler = &HeaderMaker::StartHeaderLine;
    mFieldIsOpen = false;
    mLastBreakStart = position;
    mLineStart = position;
}

void HeaderMaker::Receive( ConstData text )
{
    while ( !text.IsEmpty() )
        ( this->*mHandler )( text );
}

void HeaderMaker::ReceiveLineBreak( Range<unsigned long long> where )
{
    mLastBreakStart = where.first;
    mLineStart = where.last;
    mHandler = &HeaderMaker::StartHeaderLine;
}

void HeaderMaker::ReceiveEnd( unsigned long long position )
{
    mValue->ReceiveEnd();
    SendFieldEnd( position == mLineStart ? mLastBreakStart : position );
}

void HeaderMaker::StartHeaderLine( ConstData& text )
{
    if ( Ascii::IsMember( mLinearWhiteSpace, text[0] ) )
    {
        mValue->Receive( ConstData( " " ) );
        mHandler = &HeaderMaker::EatWhiteSpace;
        return;
    }
    mValue->ReceiveEnd();
    mValue = &DataReceiver::Ignore();
    EmptyName();
    mHandler = &HeaderMaker::HandleFieldName;
    SendFieldEnd( mLastBreakStart );
}

void HeaderMaker::HandleFieldName( ConstData& text )
{
    unsigned char const* const colon = std::find( text.begin(), text.end(), ':' );
    ConstBuffer name( ConstData( text.begin(), colon ) );
    Ascii::LowerCase( name, mName );
    if ( colon == text.end() )
    {
        text = ConstData();
        return;
    }
    text = ConstData( colon + 1, text.end() );
    if ( !mName.IsFull() )
        StartValue();
    mHandler = &HeaderMaker::EatWhiteSpace;
}

void HeaderMaker::EatWhiteSpace( ConstData& text )
{
    auto const isText = [this]( unsigned char c )
    { return !Ascii::IsMember( mLinearWhiteSpace, c ); };
    text = ConstData( std::find_if( text.begin(), text.end(), isText ), text.end() );
    if ( !text.IsEmpty() )
        mHandler = &HeaderMaker::PassText;
}

void HeaderMaker::PassText( ConstData& text )
{
    mValue->Receive( text );
    text = ConstData();
}

void HeaderMaker::EmptyName()
{
    mName = Buffer( Data( mNameStorage, mNameStorage + sizeof mNameStorage ) );
}

void HeaderMaker::StartValue()
{
    mValue = &mTarget->ReceiveField( mLineStart, mName.Filled() );
    mFieldIsOpen = true;
    mValue->Start();
}

void HeaderMaker::SendFieldEnd( unsigned long long position )
{
    if ( mFieldIsOpen )
        mTarget->ReceiveFieldEnd( position );
    mFieldIsOpen = false;
}
