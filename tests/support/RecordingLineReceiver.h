#pragma once

#include "streams/LineReceiver.h"
#include "tests/support/EventLog.h"

/// Writes down what is done to it: "start 0", "text " with the bytes, "break 2-4", "end 6".
class RecordingLineReceiver : public LineReceiver
{
  public:
    explicit RecordingLineReceiver( EventLog& log, std::string const& name = "" )
        : mLog( log ), mName( name )
    {
    }

    void Start( unsigned long long position ) override { mLog.Add( mName, "start ", position ); }

    void Receive( ConstData text ) override { mLog.AddText( text, mName, "text " ); }

    void ReceiveLineBreak( Range<unsigned long long> where ) override
    {
        mLog.Add( mName, "break ", where.first, "-", where.last );
    }

    void ReceiveEnd( unsigned long long position ) override { mLog.Add( mName, "end ", position ); }

  private:
    EventLog& mLog;
    std::string mName;
};
