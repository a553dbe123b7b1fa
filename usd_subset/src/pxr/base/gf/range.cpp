#include <pxr/base/gf/ostreamHelpers.h>
#include <pxr/base/gf/range1d.h>
#include <pxr/base/gf/range2d.h>
#include <pxr/base/gf/range3d.h>
#include <pxr/base/tf/diagnostic.h>

#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

template <class Range>
std::ostream& Write(std::ostream& out, Range const& r)
{
    return out << '[' << Gf_OstreamHelperP(r.GetMin()) << "..." << Gf_OstreamHelperP(r.GetMax()) << ']';
}

// Reports an index above the last corner of a range.
bool IsValidPart(size_t i, size_t last, const char* what)
{
    if (i > last) {
        TF_CODING_ERROR("Invalid %s %zu > %zu.", what, i, last);
        return false;
    }
    return true;
}

} // namespace

#define GF_DEFINE_RANGE(Range, Other)                                                                        \
    Range::Range(class Other const& other)                                                                   \
        : Gf_RangeBase(MinMaxType(other.GetMin()), MinMaxType(other.GetMax()))                               \
    {}                                                                                                       \
    std::ostream& operator<<(std::ostream& out, Range const& r) { return Write(out, r); }

#define GF_DEFINE_RANGE_CORNERS(Range, Vec, GetPart, part, last)                                             \
    Vec Range::GetCorner(size_t i) const { return IsValidPart(i, last, "corner") ? _Corner(i) : _min; }      \
    Range Range::GetPart(size_t i) const { return IsValidPart(i, last, part) ? _Part(i) : Range(); }

GF_DEFINE_RANGE(GfRange1d, GfRange1f)
GF_DEFINE_RANGE(GfRange1f, GfRange1d)
GF_DEFINE_RANGE(GfRange2d, GfRange2f)
GF_DEFINE_RANGE(GfRange2f, GfRange2d)
GF_DEFINE_RANGE(GfRange3d, GfRange3f)
GF_DEFINE_RANGE(GfRange3f, GfRange3d)

GF_DEFINE_RANGE_CORNERS(GfRange2d, GfVec2d, GetQuadrant, "quadrant", 3)
GF_DEFINE_RANGE_CORNERS(GfRange2f, GfVec2f, GetQuadrant, "quadrant", 3)
GF_DEFINE_RANGE_CORNERS(GfRange3d, GfVec3d, GetOctant, "octant", 7)
GF_DEFINE_RANGE_CORNERS(GfRange3f, GfVec3f, GetOctant, "octant", 7)

const GfRange2d GfRange2d::UnitSquare(GfVec2d(0), GfVec2d(1));
const GfRange2f GfRange2f::UnitSquare(GfVec2f(0), GfVec2f(1));
const GfRange3d GfRange3d::UnitCube(GfVec3d(0), GfVec3d(1));
const GfRange3f GfRange3f::UnitCube(GfVec3f(0), GfVec3f(1));

PXR_NAMESPACE_CLOSE_SCOPE
