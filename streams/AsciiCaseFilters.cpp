#include "streams/AsciiCaseFilters.h"

namespace Ascii
{

void CaseLoweringFilter::operator()( ConstBuffer& in, Buffer& out )
{
    LowerCase( in, out );
}

void CaseRaisingFilter::operator()( ConstBuffer& in, Buffer& out )
{
    RaiseCase( in, out );
}

CaseLoweringFilter& LowerCase()
{
    static CaseLoweringFilter filter;
    return filter;
}

CaseRaisingFilter& RaiseCase()
{
    static CaseRaisingFilter filter;
    return filter;
}

} // namespace Ascii
