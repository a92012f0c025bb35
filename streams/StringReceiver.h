#pragma once

#include "streams/DataReceiver.h"

#include <string>

/// Collects a stream in a string that the caller owns. The string must be given before the stream
/// starts, and outlive it.
class StringReceiver : public DataReceiver
{
  public:
    StringReceiver() = default;

    explicit StringReceiver( std::string& target );

    using DataReceiver::Receive;

    /// Sets the string to collect in and returns this receiver.
    StringReceiver& operator()( std::string& target );

    /// Clears the string.
    void Start() override;

    /// Appends the bytes; allocates only where the string must grow.
    void Receive( ConstData data ) override;

    void ReceiveEnd() override;

  protected:
    /// What is collected so far.
    std::string const& Target() const { return *mTarget; }

  private:
    std::string* mTarget = nullptr;
};
