#pragma once

#include "streams/DataReceiver.h"

/// Discards everything. DataReceiver::Ignore returns a shared one.
class IgnoreDataReceiver : public DataReceiver
{
  public:
    using DataReceiver::Receive;

    void Start() override;

    void Receive( ConstData data ) override;

    void ReceiveEnd() override;
};
