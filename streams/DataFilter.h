#pragma once

#include "foundation/Buffer.h"
#include "foundation/ConstData.h"
#include "foundation/Data.h"

/// Transforms bytes on their way from an input to an output; this base class copies them unchanged.
///
/// A filter may hold output back until it is flushed. As long as there is input and 1024 bytes of
/// room, every call of operator() must consume input or produce output: whoever drives a filter
/// calls it until the input is consumed.
///
/// Derived classes say `using DataFilter::operator();` to keep the forms for plain ranges.
class DataFilter
{
  public:
    virtual ~DataFilter();

    /// Consumes bytes from `in` and writes bytes to `out`, advancing both.
    virtual void operator()( ConstBuffer& in, Buffer& out );

    /// Whether no output is held back.
    virtual bool Flushed() const;

    /// Writes held-back output to `out`, as much as there is room for.
    virtual void Flush( Buffer& out );

    /// Forms for plain ranges. They do nothing if a plain range is empty, and how far one was used
    /// is not told.

    void operator()( ConstData in, Data out );
    void operator()( ConstBuffer& in, Data out );
    void operator()( ConstData in, Buffer& out );

    /// The filter that copies. It has no state: any number of threads may use it.
    static DataFilter copy;
};
