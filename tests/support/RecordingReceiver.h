#pragma once

#include "foundation/MakeString.h"
#include "streams/DataReceiver.h"

#include <string>
#include <vector>

/// Writes down what is done to it: "Start", "Receive:" with the bytes, "End".
class RecordingReceiver : public DataReceiver
{
  public:
    using DataReceiver::Receive;

    void Start() override { mEvents.push_back( "Start" ); }

    void Receive( ConstData data ) override
    {
        mEvents.push_back( "Receive:" + MakeString( data ) );
        mBytes += MakeString( data );
    }

    void ReceiveEnd() override { mEvents.push_back( "End" ); }

    std::vector<std::string> const& Events() const { return mEvents; }

    /// Everything received so far.
    std::string const& Bytes() const { return mBytes; }

  private:
    std::vector<std::string> mEvents;
    std::string mBytes;
};
