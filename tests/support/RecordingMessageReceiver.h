#pragma once

#include "foundation/MakeString.h"
#include "streams/MessageReceiver.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/// Writes down what is done to it and to the receivers it hands out, one text for each event:
/// "field 6 name", "value start", "value text", "body break 4-6", "end 17" and so on.
///
/// A text that follows a text of the same receiver is joined to it, unless the pieces are wanted.
/// Throws the int 7 instead of writing the event down once `ThrowAfter` are written.
class RecordingMessageReceiver : public MessageReceiver
{
  public:
    using Position = unsigned long long;

    enum class Texts
    {
        Joined,
        InPieces
    };

    explicit RecordingMessageReceiver( Texts texts = Texts::Joined ) : mTexts( texts ) {}

    void ThrowAfter( std::size_t events ) { mThrowAfter = events; }

    std::vector<std::string> TakeEvents() { return std::exchange( mEvents, {} ); }

    void Start( Position position ) override { Add( "start ", position ); }

    DataReceiver& ReceiveField( Position position, ConstData name ) override
    {
        Add( "field ", position, " " + MakeString( name ) );
        return mValue;
    }

    void ReceiveFieldEnd( Position position ) override { Add( "field end ", position ); }

    LineReceiver& ReceiveBody( Position position ) override
    {
        Add( "body ", position );
        return mBody;
    }

    void ReceiveEnd( Position position ) override { Add( "end ", position ); }

  private:
    struct Value : DataReceiver
    {
        using DataReceiver::Receive;

        explicit Value( RecordingMessageReceiver& whole ) : mWhole( whole ) {}

        void Start() override { mWhole.Add( "value start" ); }

        void Receive( ConstData text ) override { mWhole.AddText( "value ", text ); }

        void ReceiveEnd() override { mWhole.Add( "value end" ); }

        RecordingMessageReceiver& mWhole;
    };

    struct Body : LineReceiver
    {
        explicit Body( RecordingMessageReceiver& whole ) : mWhole( whole ) {}

        void Start( Position position ) override { mWhole.Add( "body start ", position ); }

        void Receive( ConstData text ) override { mWhole.AddText( "body text ", text ); }

        void ReceiveLineBreak( Range<Position> where ) override
        {
            mWhole.Add( "body break ", where.first, "-" + std::to_string( where.last ) );
        }

        void ReceiveEnd( Position position ) override { mWhole.Add( "body end ", position ); }

        RecordingMessageReceiver& mWhole;
    };

    void Add( std::string event )
    {
        if ( mEvents.size() == mThrowAfter )
            throw 7;
        mEvents.push_back( std::move( event ) );
        mLastIsText = false;
    }

    void Add( std::string const& event, Position position, std::string const& more = "" )
    {
        Add( event + std::to_string( position ) + more );
    }

    void AddText( std::string const& kind, ConstData text )
    {
        if ( mTexts == Texts::Joined && mLastIsText )
            mEvents.back() += MakeString( text );
        else
            Add( kind + MakeString( text ) );
        mLastIsText = true;
    }

    Texts const mTexts;
    std::size_t mThrowAfter = SIZE_MAX;
    std::vector<std::string> mEvents;
    bool mLastIsText = false;
    Value mValue{ *this };
    Body mBody{ *this };
};
