#pragma once

#include "streams/MessageReceiver.h"
#include "tests/support/RecordingLineReceiver.h"

/// Writes down what is done to it and to the receivers it hands out: "field 6 name", "value start",
/// "value text", "body break 4-6", "end 17" and so on.
class RecordingMessageReceiver : public MessageReceiver
{
  public:
    using Position = unsigned long long;

    explicit RecordingMessageReceiver( EventLog& log )
        : mLog( log ), mValue( log ), mBody( log, "body " )
    {
    }

    void Start( Position position ) override { mLog.Add( "start ", position ); }

    DataReceiver& ReceiveField( Position position, ConstData name ) override
    {
        mLog.Add( "field ", position, " ", name );
        return mValue;
    }

    void ReceiveFieldEnd( Position position ) override { mLog.Add( "field end ", position ); }

    LineReceiver& ReceiveBody( Position position ) override
    {
        mLog.Add( "body ", position );
        return mBody;
    }

    void ReceiveEnd( Position position ) override { mLog.Add( "end ", position ); }

  private:
    struct Value : DataReceiver
    {
        using DataReceiver::Receive;

        explicit Value( EventLog& log ) : mLog( log ) {}

        void Start() override { mLog.Add( "value start" ); }

        void Receive( ConstData text ) override { mLog.AddText( text, "value " ); }

        void ReceiveEnd() override { mLog.Add( "value end" ); }

        EventLog& mLog;
    };

    EventLog& mLog;
    Value mValue;
    RecordingLineReceiver mBody;
};
