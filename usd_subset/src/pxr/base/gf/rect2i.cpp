#include <pxr/base/gf/rect2i.h>

#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

GfRect2i GfRect2i::GetNormalized() const
{
    return GfRect2i(GfVec2i(GfMin(_min[0], _max[0]), GfMin(_min[1], _max[1])),
                    GfVec2i(GfMax(_min[0], _max[0]), GfMax(_min[1], _max[1])));
}

std::ostream& operator<<(std::ostream& out, const GfRect2i& r)
{
    return out << '[' << r.GetMin() << ":" << r.GetMax() << ']';
}

PXR_NAMESPACE_CLOSE_SCOPE
