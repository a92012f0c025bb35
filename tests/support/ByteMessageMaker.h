#pragma once

#include "streams/MessageReceiver.h"

/// The plain state machine that a LineMaker and a MessageMaker together are compared with: it looks
/// at one byte after another, may be interrupted anywhere, and does the same to its target in the
/// same pieces. Text and body are passed on at a break and at the end of a push.
class ByteMessageMaker : public DataReceiver
{
  public:
    using DataReceiver::Receive;

    explicit ByteMessageMaker( MessageReceiver& target ) : mTarget( target ) {}

    void Start() override
    {
        mState = State::LineStart;
        mValue = &Ignore();
        mFieldIsOpen = false;
        mPendingBreak = 0;
        mPosition = mLineStart = mLineEnd = mBreakStart = 0;
        mTarget.Start( 0 );
    }

    void Receive( ConstData data ) override
    {
        unsigned char const* text = nullptr;
        for ( unsigned char const& c : data )
        {
            if ( mPendingBreak != 0 )
            {
                bool const isPair = c == ( mPendingBreak == '\r' ? '\n' : '\r' );
                EndLine( mPosition + isPair );
                if ( isPair )
                {
                    ++mPosition;
                    continue;
                }
            }
            if ( c == '\r' || c == '\n' )
            {
                PassOn( text, &c );
                text = nullptr;
                mBreakStart = mPosition;
                mPendingBreak = c;
            }
            else if ( IsText( c ) && text == nullptr )
                text = &c;
            ++mPosition;
        }
        PassOn( text, data.end() );
    }

    void ReceiveEnd() override
    {
        if ( mPendingBreak != 0 )
            EndLine( mPosition );
        if ( mState != State::Body )
        {
            EndHeaders( mPosition == mLineStart ? mLineEnd : mPosition, mPosition );
            mBody->Start( mPosition );
        }
        mBody->ReceiveEnd( mPosition );
        mTarget.ReceiveEnd( mPosition );
    }

  private:
    enum class State
    {
        LineStart,
        Name,
        WhiteSpace,
        Text,
        Body
    };

    static constexpr unsigned kNameSize = 48;

    // Takes a byte that is no break; whether it belongs to a text that is passed on.
    bool IsText( unsigned char c )
    {
        bool const isBlank = c == ' ' || c == '\t';
        switch ( mState )
        {
        case State::LineStart:
            if ( isBlank )
            {
                mValue->Receive( ConstData( " " ) );
                mState = State::WhiteSpace;
                return false;
            }
            EndField( mLineEnd );
            mNameLength = 0;
            mState = State::Name;
            [[fallthrough]];
        case State::Name:
            if ( c == ':' )
                StartValue();
            else if ( mNameLength < kNameSize )
                mName[mNameLength++] = 'A' <= c && c <= 'Z' ? c | 0x20 : c;
            return false;
        case State::WhiteSpace:
            if ( isBlank )
                return false;
            mState = State::Text;
            return true;
        default:
            return true;
        }
    }

    void StartValue()
    {
        mState = State::WhiteSpace;
        if ( mNameLength == kNameSize )
            return;
        mValue = &mTarget.ReceiveField( mLineStart, ConstData( mName, mName + mNameLength ) );
        mFieldIsOpen = true;
        mValue->Start();
    }

    void PassOn( unsigned char const* begin, unsigned char const* end )
    {
        if ( begin == nullptr )
            return;
        if ( mState == State::Body )
            mBody->Receive( ConstData( begin, end ) );
        else
            mValue->Receive( ConstData( begin, end ) );
    }

    void EndLine( unsigned long long end )
    {
        mPendingBreak = 0;
        if ( mState == State::Body )
            mBody->ReceiveLineBreak( { mBreakStart, end } );
        else if ( mState == State::LineStart ) // and so nothing is on it
        {
            EndHeaders( mLineEnd, end );
            mBody->Start( end );
        }
        else
            mState = State::LineStart;
        mLineEnd = mBreakStart;
        mLineStart = end;
    }

    void EndField( unsigned long long position )
    {
        mValue->ReceiveEnd();
        mValue = &Ignore();
        if ( mFieldIsOpen )
            mTarget.ReceiveFieldEnd( position );
        mFieldIsOpen = false;
    }

    void EndHeaders( unsigned long long lastFieldEnd, unsigned long long bodyStart )
    {
        EndField( lastFieldEnd );
        mBody = &mTarget.ReceiveBody( bodyStart );
        mState = State::Body;
    }

    MessageReceiver& mTarget;
    State mState = State::LineStart;
    DataReceiver* mValue = &Ignore();
    LineReceiver* mBody = nullptr;
    bool mFieldIsOpen = false;
    unsigned char mPendingBreak = 0; // a CR or LF that may be half of a pair, or 0
    unsigned char mName[kNameSize] = {};
    unsigned mNameLength = 0;
    unsigned long long mPosition = 0; // of the byte looked at
    unsigned long long mBreakStart = 0;
    unsigned long long mLineEnd = 0;   // of the last line, where its break starts
    unsigned long long mLineStart = 0; // where that break ends
};
