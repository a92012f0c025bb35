#pragma once

#include "streams/DataReader.h"

/// A reader without data, always finished. DataReader::Empty returns a shared one.
class EmptyDataReader : public DataReader
{
  public:
    using DataReader::operator>>;

    void Reset() override;

    bool Finished() const override;

    DataReader& operator>>( Buffer& to ) override;
};
