#pragma once

#include "streams/StringReceiver.h"

#include <cstdint>

/// Collects a stream in a string, as StringReceiver does, but no more than a maximum: for bodies of
/// unknown length whose sender must not decide how much memory they take.
class StringHTTPReceiver : public StringReceiver
{
  public:
    /// At most `maximum` bytes are collected in `target`, which must outlive the stream.
    StringHTTPReceiver( std::string& target, std::uint32_t maximum );

    ~StringHTTPReceiver() override;

    using StringReceiver::Receive;

    /// Appends the bytes. Throws ExceptionPL, appending none of them, if the string would become
    /// longer than the maximum.
    void Receive( ConstData data ) override;

  private:
    std::uint32_t mMaximum;
};
