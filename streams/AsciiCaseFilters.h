#pragma once

#include "foundation/Ascii.h"
#include "streams/DataFilter.h"

namespace Ascii
{

/// Maps 'A' to 'Z' to lower case and copies every other byte. It has no state.
class CaseLoweringFilter : public DataFilter
{
  public:
    using DataFilter::operator();

    void operator()( ConstBuffer& in, Buffer& out ) override;
};

/// Maps 'a' to 'z' to upper case and copies every other byte. It has no state.
class CaseRaisingFilter : public DataFilter
{
  public:
    using DataFilter::operator();

    void operator()( ConstBuffer& in, Buffer& out ) override;
};

/// The shared filter, made on first use. Any number of threads may use it.
CaseLoweringFilter& LowerCase();

/// The shared filter, made on first use. Any number of threads may use it.
CaseRaisingFilter& RaiseCase();

} // namespace Ascii
