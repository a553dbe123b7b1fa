#include "camera_bits.h"

#include <cmath>
#include <cstring>
#include <pxr/base/gf/range1f.h>
#include <pxr/base/gf/vec4f.h>
#include <vector>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::usd::utils {

namespace {

template <class Number>
bool same(Number left, Number right)
{
    if (std::isnan(left) || std::isnan(right)) return std::isnan(left) && std::isnan(right);
    return std::memcmp(&left, &right, sizeof(Number)) == 0;
}

bool samePlanes(const std::vector<GfVec4f>& left, const std::vector<GfVec4f>& right)
{
    if (left.size() != right.size()) return false;
    for (std::size_t index = 0; index < left.size(); ++index) {
        for (int component = 0; component < 4; ++component) {
            if (!same(left[index][component], right[index][component])) return false;
        }
    }
    return true;
}

} // namespace

bool haveSameBits(const GfMatrix4d& left, const GfMatrix4d& right)
{
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            if (!same(left[row][column], right[row][column])) return false;
        }
    }
    return true;
}

bool haveSameLens(const GfCamera& left, const GfCamera& right)
{
    return left.GetProjection() == right.GetProjection() &&
           same(left.GetHorizontalAperture(), right.GetHorizontalAperture()) &&
           same(left.GetVerticalAperture(), right.GetVerticalAperture()) &&
           same(left.GetHorizontalApertureOffset(), right.GetHorizontalApertureOffset()) &&
           same(left.GetVerticalApertureOffset(), right.GetVerticalApertureOffset()) &&
           same(left.GetFocalLength(), right.GetFocalLength()) &&
           same(left.GetClippingRange().GetMin(), right.GetClippingRange().GetMin()) &&
           same(left.GetClippingRange().GetMax(), right.GetClippingRange().GetMax()) &&
           samePlanes(left.GetClippingPlanes(), right.GetClippingPlanes()) &&
           same(left.GetFStop(), right.GetFStop()) && same(left.GetFocusDistance(), right.GetFocusDistance());
}

} // namespace vesk::usd::utils
