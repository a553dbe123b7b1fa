#include <pxr/base/gf/math.h>
#include <pxr/base/gf/vec3d.h>

#include <array>
#include <cmath>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

template <class Vec>
using Basis = std::array<Vec, 3>;

// One correction of the basis: each vector moves half way to its part that is orthogonal to both others.
template <class Vec>
Basis<Vec> Correct(Basis<Vec> const& basis, Basis<Vec> const& unit, bool normalize)
{
    constexpr int kOthers[3][2] = {{1, 2}, {0, 2}, {0, 1}};
    Basis<Vec> corrected;
    for (int i = 0; i != 3; ++i) {
        Vec orthogonal = basis[i];
        for (int other : kOthers[i]) {
            orthogonal -= GfDot(unit[other], orthogonal) * unit[other];
        }
        corrected[i] = 0.5 * (basis[i] + orthogonal);
        if (normalize) {
            corrected[i].Normalize();
        }
    }
    return corrected;
}

template <class Vec>
double SquaredChange(Basis<Vec> const& a, Basis<Vec> const& b)
{
    const Basis<Vec> d{a[0] - b[0], a[1] - b[1], a[2] - b[2]};
    return GfDot(d[0], d[0]) + GfDot(d[1], d[1]) + GfDot(d[2], d[2]);
}

template <class Vec>
Basis<Vec> UnitVectors(Basis<Vec> const& basis)
{
    return {basis[0].GetNormalized(), basis[1].GetNormalized(), basis[2].GetNormalized()};
}

template <class Vec>
bool OrthogonalizeBasis(Vec* tx, Vec* ty, Vec* tz, bool normalize, double eps)
{
    constexpr int kMaxRounds = 20;
    if (normalize) {
        tx->Normalize();
        ty->Normalize();
        tz->Normalize();
    }
    Basis<Vec> basis{*tx, *ty, *tz};
    Basis<Vec> unit = normalize ? basis : UnitVectors(basis);
    // Parallel vectors do not change either, so that the loop would take them for a solution.
    if (GfIsClose(unit[0], unit[1], eps) || GfIsClose(unit[0], unit[2], eps) ||
        GfIsClose(unit[1], unit[2], eps)) {
        return false;
    }
    for (int round = 0; round != kMaxRounds; ++round) {
        const Basis<Vec> corrected = Correct(basis, unit, normalize);
        if (SquaredChange(basis, corrected) < GfSqr(eps)) {
            return true;
        }
        basis = corrected;
        *tx = basis[0];
        *ty = basis[1];
        *tz = basis[2];
        unit = normalize ? basis : UnitVectors(basis);
    }
    return false;
}

template <class Vec, class Scalar = typename Vec::ScalarType>
void BuildOrthonormalFrame(Vec const& v0, Vec* v1, Vec* v2, Scalar eps)
{
    const Scalar length = v0.GetLength();
    if (length == 0.) {
        *v1 = *v2 = Vec(0);
        return;
    }
    const Vec unit = v0 / length;
    *v1 = GfCross(Vec::XAxis(), unit);
    if (GfSqr(*v1) < GfSqr(1e-4)) {
        *v1 = GfCross(Vec::YAxis(), unit);
    }
    v1->Normalize();
    *v2 = GfCross(unit, *v1);
    if (length < eps) {
        const double shortened = length / eps;
        *v1 *= shortened;
        *v2 *= shortened;
    }
}

template <class Vec>
Vec Slerp(double alpha, Vec const& v0, Vec const& v1)
{
    const double angle = std::acos(GfClamp(static_cast<double>(GfDot(v0, v1)), -1.0, 1.0));
    if (std::fabs(angle) < 0.001) {
        return GfLerp(alpha, v0, v1);
    }
    const double sinAngle = std::sin(angle);
    if (std::fabs(sinAngle) < 0.00001) {
        // Opposite vectors: any half circle will do.
        Vec side, other;
        v0.BuildOrthonormalFrame(&side, &other);
        return v0 * std::cos(alpha * M_PI) + side * std::sin(alpha * M_PI);
    }
    const double scale = 1.0 / sinAngle;
    return v0 * (std::sin((1.0 - alpha) * angle) * scale) + v1 * (std::sin(alpha * angle) * scale);
}

} // namespace

#define GF_DEFINE_VEC3(Vec, Scalar)                                                                          \
    bool GfOrthogonalizeBasis(Vec* tx, Vec* ty, Vec* tz, bool normalize, double eps)                         \
    {                                                                                                        \
        return OrthogonalizeBasis(tx, ty, tz, normalize, eps);                                               \
    }                                                                                                        \
    void GfBuildOrthonormalFrame(Vec const& v0, Vec* v1, Vec* v2, Scalar eps)                                \
    {                                                                                                        \
        BuildOrthonormalFrame(v0, v1, v2, eps);                                                              \
    }                                                                                                        \
    Vec GfSlerp(double alpha, Vec const& v0, Vec const& v1) { return Slerp(alpha, v0, v1); }

GF_DEFINE_VEC3(GfVec3d, double)
GF_DEFINE_VEC3(GfVec3f, float)
GF_DEFINE_VEC3(GfVec3h, GfHalf)

PXR_NAMESPACE_CLOSE_SCOPE
