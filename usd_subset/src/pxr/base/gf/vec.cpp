#include <pxr/base/gf/ostreamHelpers.h>
#include <pxr/base/gf/vec2d.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/base/gf/vec4d.h>

#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

template <class Vec>
std::ostream& Write(std::ostream& out, Vec const& v)
{
    out << '(' << Gf_OstreamHelperP(v[0]);
    for (size_t i = 1; i != Vec::dimension; ++i) {
        out << ", " << Gf_OstreamHelperP(v[i]);
    }
    return out << ')';
}

} // namespace

std::ostream& operator<<(std::ostream& out, GfVec2d const& v) { return Write(out, v); }
std::ostream& operator<<(std::ostream& out, GfVec2f const& v) { return Write(out, v); }
std::ostream& operator<<(std::ostream& out, GfVec2h const& v) { return Write(out, v); }
std::ostream& operator<<(std::ostream& out, GfVec2i const& v) { return Write(out, v); }
std::ostream& operator<<(std::ostream& out, GfVec3d const& v) { return Write(out, v); }
std::ostream& operator<<(std::ostream& out, GfVec3f const& v) { return Write(out, v); }
std::ostream& operator<<(std::ostream& out, GfVec3h const& v) { return Write(out, v); }
std::ostream& operator<<(std::ostream& out, GfVec3i const& v) { return Write(out, v); }
std::ostream& operator<<(std::ostream& out, GfVec4d const& v) { return Write(out, v); }
std::ostream& operator<<(std::ostream& out, GfVec4f const& v) { return Write(out, v); }
std::ostream& operator<<(std::ostream& out, GfVec4h const& v) { return Write(out, v); }
std::ostream& operator<<(std::ostream& out, GfVec4i const& v) { return Write(out, v); }

PXR_NAMESPACE_CLOSE_SCOPE
