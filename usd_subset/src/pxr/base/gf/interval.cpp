#include <pxr/base/gf/interval.h>
#include <pxr/base/gf/ostreamHelpers.h>

#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

std::ostream& operator<<(std::ostream& out, const GfInterval& i)
{
    return out << (i.IsMinClosed() ? '[' : '(') << Gf_OstreamHelperP(i.GetMin()) << ", "
               << Gf_OstreamHelperP(i.GetMax()) << (i.IsMaxClosed() ? ']' : ')');
}

PXR_NAMESPACE_CLOSE_SCOPE
