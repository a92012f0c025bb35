#pragma once

#include "foundation/Buffer.h"
#include "foundation/Data.h"

/// A source that bytes are pulled from.
///
/// Reading into a Buffer yields what there is at hand; reading into a Data fills it or throws.
/// Derived classes say `using DataReader::operator>>;` to keep the second form. Not safe for use by
/// two threads at once, unless a class says so.
class DataReader
{
  public:
    virtual ~DataReader();

    /// Returns to the beginning of the data.
    virtual void Reset() = 0;

    /// Whether no more bytes will come.
    virtual bool Finished() const = 0;

    virtual bool Unfinished() const;

    /// Writes bytes at hand into the room of `to` and advances it. There may be fewer than would
    /// fit, or none. Returns this reader.
    virtual DataReader& operator>>( Buffer& to ) = 0;

    /// Fills `to` and returns this reader. Throws NoMoreData if the data end before that; the bytes
    /// read until then are in `to`. An empty range asks the reader nothing.
    virtual DataReader& operator>>( Data to );

    /// The one reader that is always finished. Any number of threads may use it.
    static DataReader& Empty();
};
