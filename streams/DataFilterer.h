#pragma once

#include "streams/DataFilter.h"
#include "streams/DataReceiver.h"

/// A receiver that runs a filter in front of another receiver.
///
/// It borrows both; they must outlive the stream, and be given before it starts. The filter's
/// output comes in pieces of at most 1024 bytes, some of which may be empty. Exceptions of the two
/// pass through.
class DataFilterer : public DataReceiver
{
  public:
    using DataReceiver::Receive;

    /// Sets where the output goes and what makes it; returns this filterer.
    DataFilterer& operator()( DataReceiver& downstream, DataFilter& filter );

    /// Starts the receiver. The filter stays as it is.
    void Start() override;

    /// Filters all of `data`. No data, no output.
    void Receive( ConstData data ) override;

    /// Passes on what the filter holds back, then ends the receiver.
    void ReceiveEnd() override;

  private:
    DataReceiver* mDownstream = nullptr;
    DataFilter* mFilter = nullptr;
};
