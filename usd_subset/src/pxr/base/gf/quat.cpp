#include "pxr/base/gf/slerp.h"

#include <pxr/base/gf/quatd.h>
#include <pxr/base/gf/quatf.h>
#include <pxr/base/gf/quath.h>
#include <pxr/base/gf/vec4d.h>

#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

#define GF_DEFINE_QUAT(Quat, Scalar, Vec4)                                                                   \
    Quat GfSlerp(double alpha, const Quat& q0, const Quat& q1) { return Gf_Slerp<Scalar>(alpha, q0, q1); }   \
    Quat GfSlerp(const Quat& q0, const Quat& q1, double alpha) { return Gf_Slerp<Scalar>(alpha, q0, q1); }   \
    std::ostream& operator<<(std::ostream& out, Quat const& q)                                               \
    {                                                                                                        \
        const auto& i = q.GetImaginary();                                                                    \
        return out << Vec4(q.GetReal(), i[0], i[1], i[2]);                                                   \
    }

#define GF_DEFINE_QUAT_CONVERSION(Quat, Other)                                                               \
    Quat::Quat(Other const& other)                                                                           \
        : Gf_QuatBase(static_cast<ScalarType>(other.GetReal()), ImaginaryType(other.GetImaginary()))         \
    {}

GF_DEFINE_QUAT(GfQuatd, double, GfVec4d)
GF_DEFINE_QUAT(GfQuatf, float, GfVec4f)
GF_DEFINE_QUAT(GfQuath, GfHalf, GfVec4h)

GF_DEFINE_QUAT_CONVERSION(GfQuatd, GfQuatf)
GF_DEFINE_QUAT_CONVERSION(GfQuatd, GfQuath)
GF_DEFINE_QUAT_CONVERSION(GfQuatf, GfQuatd)
GF_DEFINE_QUAT_CONVERSION(GfQuatf, GfQuath)
GF_DEFINE_QUAT_CONVERSION(GfQuath, GfQuatd)
GF_DEFINE_QUAT_CONVERSION(GfQuath, GfQuatf)

PXR_NAMESPACE_CLOSE_SCOPE
