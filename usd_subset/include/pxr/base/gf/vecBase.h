#pragma once

/// What the vector classes have in common. Use GfVec2d ... GfVec4i; these bases have no meaning of their own.

#include <pxr/base/gf/api.h>
#include <pxr/base/gf/half.h>
#include <pxr/base/gf/hashCombine.h>
#include <pxr/base/gf/limits.h>
#include <pxr/base/gf/math.h>
#include <pxr/base/gf/traits.h>
#include <pxr/pxr.h>

#include <cstddef>
#include <iosfwd>
#include <type_traits>

PXR_NAMESPACE_OPEN_SCOPE

/// Components, comparison and arithmetic of a vector class Vec with Dim components of type Scalar.
template <class Vec, class Scalar, size_t Dim>
class Gf_VecBase
{
    template <class Other>
    static constexpr bool _isOtherVec = GfIsGfVec<Other>::value && !std::is_same_v<Other, Vec>;

public:
    typedef Scalar ScalarType;
    static constexpr size_t dimension = Dim;

    /// \name Unit vectors
    /// @{
    static Vec XAxis() { return Axis(0); }
    static Vec YAxis() { return Axis(1); }
    template <size_t D = Dim, std::enable_if_t<(D >= 3), int> = 0>
    static Vec ZAxis()
    {
        return Axis(2);
    }
    template <size_t D = Dim, std::enable_if_t<(D >= 4), int> = 0>
    static Vec WAxis()
    {
        return Axis(3);
    }
    /// Returns the unit vector along axis i, or zero where there is no such axis.
    static Vec Axis(size_t i)
    {
        Vec result(0);
        if (i < Dim) {
            result[i] = 1;
        }
        return result;
    }
    /// @}

    /// Sets all components.
    template <class... S, std::enable_if_t<sizeof...(S) == Dim, int> = 0>
    Vec& Set(S... s)
    {
        const Scalar values[] = {static_cast<Scalar>(s)...};
        return Set(values);
    }
    Vec& Set(Scalar const* a)
    {
        for (size_t i = 0; i != Dim; ++i) {
            _data[i] = a[i];
        }
        return _Self();
    }

    /// \name Access to the components
    /// @{
    Scalar const* data() const { return _data; }
    Scalar* data() { return _data; }
    Scalar const* GetArray() const { return data(); }
    Scalar const& operator[](size_t i) const { return _data[i]; }
    Scalar& operator[](size_t i) { return _data[i]; }
    /// @}

    friend inline size_t hash_value(Vec const& vec) { return Gf_HashArray(vec.data(), Dim); }

    bool operator==(Vec const& other) const { return _Equals(other); }
    bool operator!=(Vec const& other) const { return !_Equals(other); }
    /// Compares the values with those of a vector of another component type.
    template <class Other, std::enable_if_t<_isOtherVec<Other>, int> = 0>
    bool operator==(Other const& other) const
    {
        static_assert(Other::dimension == Dim, "vectors of different dimensions are never equal");
        return _Equals(other);
    }

    Vec operator-() const
    {
        Vec result;
        for (size_t i = 0; i != Dim; ++i) {
            result[i] = -_data[i];
        }
        return result;
    }
    Vec& operator+=(Vec const& other)
    {
        for (size_t i = 0; i != Dim; ++i) {
            _data[i] += other[i];
        }
        return _Self();
    }
    friend Vec operator+(Vec const& l, Vec const& r) { return Vec(l) += r; }
    Vec& operator-=(Vec const& other)
    {
        for (size_t i = 0; i != Dim; ++i) {
            _data[i] -= other[i];
        }
        return _Self();
    }
    friend Vec operator-(Vec const& l, Vec const& r) { return Vec(l) -= r; }

    /// Multiplies each component in double precision.
    Vec& operator*=(double s)
    {
        for (size_t i = 0; i != Dim; ++i) {
            _data[i] *= s;
        }
        return _Self();
    }
    Vec operator*(double s) const { return Vec(_Self()) *= s; }
    friend Vec operator*(double s, Vec const& v) { return v * s; }

    /// Returns the dot product.
    Scalar operator*(Vec const& v) const
    {
        auto sum = _data[0] * v[0];
        for (size_t i = 1; i != Dim; ++i) {
            sum = sum + _data[i] * v[i];
        }
        return sum;
    }

    /// Returns v * (*this * v), the projection onto a unit vector v.
    Vec GetProjection(Vec const& v) const { return v * (_Self() * v); }
    /// Returns what GetProjection(b) leaves.
    Vec GetComplement(Vec const& b) const { return _Self() - GetProjection(b); }
    Scalar GetLengthSq() const { return _Self() * _Self(); }

protected:
    Gf_VecBase() = default;
    template <class... S, std::enable_if_t<sizeof...(S) == Dim, int> = 0>
    constexpr explicit Gf_VecBase(S... s) : _data{static_cast<Scalar>(s)...}
    {}

    Vec& _Self() { return static_cast<Vec&>(*this); }
    Vec const& _Self() const { return static_cast<Vec const&>(*this); }

    Scalar _data[Dim];

private:
    template <class Other>
    bool _Equals(Other const& other) const
    {
        for (size_t i = 0; i != Dim; ++i) {
            if (!(_data[i] == other[i])) {
                return false;
            }
        }
        return true;
    }
};

/// Adds integer division.
template <class Vec, class Scalar, size_t Dim>
class Gf_IntVecBase : public Gf_VecBase<Vec, Scalar, Dim>
{
public:
    Vec& operator/=(Scalar s)
    {
        for (size_t i = 0; i != Dim; ++i) {
            this->_data[i] /= s;
        }
        return this->_Self();
    }
    Vec operator/(Scalar s) const { return Vec(this->_Self()) /= s; }

protected:
    using Gf_VecBase<Vec, Scalar, Dim>::Gf_VecBase;
    Gf_IntVecBase() = default;
};

/// The length below which a vector of these components counts as having none.
template <class Scalar>
inline constexpr double Gf_vecEpsilon = std::is_same_v<Scalar, GfHalf> ? 0.001 : GF_MIN_VECTOR_LENGTH;

/// Adds division and length.
template <class Vec, class Scalar, size_t Dim>
class Gf_RealVecBase : public Gf_VecBase<Vec, Scalar, Dim>
{
public:
    /// Multiplies by 1 / s, rounded to double.
    Vec& operator/=(double s) { return this->_Self() *= (1.0 / s); }
    Vec operator/(double s) const { return this->_Self() * (1.0 / s); }

    Scalar GetLength() const { return GfSqrt(this->GetLengthSq()); }

    /// Divides by the length, or by eps where that is larger; returns the length before.
    Scalar Normalize(Scalar eps = Gf_vecEpsilon<Scalar>)
    {
        const Scalar length = GetLength();
        this->_Self() /= (length > eps) ? length : eps;
        return length;
    }
    Vec GetNormalized(Scalar eps = Gf_vecEpsilon<Scalar>) const
    {
        Vec normalized(this->_Self());
        normalized.Normalize(eps);
        return normalized;
    }

protected:
    using Gf_VecBase<Vec, Scalar, Dim>::Gf_VecBase;
    Gf_RealVecBase() = default;
};

/// Adds what only three dimensions have.
template <class Vec, class Scalar>
class Gf_RealVec3Base : public Gf_RealVecBase<Vec, Scalar, 3>
{
public:
    /// See GfOrthogonalizeBasis().
    static bool OrthogonalizeBasis(Vec* tx, Vec* ty, Vec* tz, const bool normalize,
                                   double eps = GF_MIN_ORTHO_TOLERANCE)
    {
        return GfOrthogonalizeBasis(tx, ty, tz, normalize, eps);
    }
    /// See GfBuildOrthonormalFrame().
    void BuildOrthonormalFrame(Vec* v1, Vec* v2, Scalar eps = Gf_vecEpsilon<Scalar>) const
    {
        GfBuildOrthonormalFrame(this->_Self(), v1, v2, eps);
    }

protected:
    using Gf_RealVecBase<Vec, Scalar, 3>::Gf_RealVecBase;
    Gf_RealVec3Base() = default;
};

/// \name The functions beside the vector classes
/// Functions, not function templates, so that arguments convert: GfDot(GfVec3f, GfVec3d) is that of GfVec3d.
/// @{
#define GF_VEC_FUNCTIONS(Vec, Scalar)                                                                        \
    VESK_USD_API std::ostream& operator<<(std::ostream& out, Vec const& v);                                  \
    inline Scalar GfDot(Vec const& v1, Vec const& v2) { return v1 * v2; }                                    \
    inline Vec GfCompMult(Vec const& v1, Vec const& v2)                                                      \
    {                                                                                                        \
        Vec result;                                                                                          \
        for (size_t i = 0; i != Vec::dimension; ++i) {                                                       \
            result[i] = v1[i] * v2[i];                                                                       \
        }                                                                                                    \
        return result;                                                                                       \
    }                                                                                                        \
    inline Vec GfCompDiv(Vec const& v1, Vec const& v2)                                                       \
    {                                                                                                        \
        Vec result;                                                                                          \
        for (size_t i = 0; i != Vec::dimension; ++i) {                                                       \
            result[i] = v1[i] / v2[i];                                                                       \
        }                                                                                                    \
        return result;                                                                                       \
    }

#define GF_REAL_VEC_FUNCTIONS(Vec, Scalar)                                                                   \
    GF_VEC_FUNCTIONS(Vec, Scalar)                                                                            \
    inline Scalar GfGetLength(Vec const& v) { return v.GetLength(); }                                        \
    inline Scalar GfNormalize(Vec* v, Scalar eps = Gf_vecEpsilon<Scalar>) { return v->Normalize(eps); }      \
    inline Vec GfGetNormalized(Vec const& v, Scalar eps = Gf_vecEpsilon<Scalar>)                             \
    {                                                                                                        \
        return v.GetNormalized(eps);                                                                         \
    }                                                                                                        \
    inline Vec GfGetProjection(Vec const& a, Vec const& b) { return a.GetProjection(b); }                    \
    inline Vec GfGetComplement(Vec const& a, Vec const& b) { return a.GetComplement(b); }                    \
    /* True if the points lie no further apart than tolerance. */                                            \
    inline bool GfIsClose(Vec const& v1, Vec const& v2, double tolerance)                                    \
    {                                                                                                        \
        return (v1 - v2).GetLengthSq() <= tolerance * tolerance;                                             \
    }

#define GF_REAL_VEC3_FUNCTIONS(Vec, Scalar)                                                                  \
    GF_REAL_VEC_FUNCTIONS(Vec, Scalar)                                                                       \
    /* Makes three vectors mutually orthogonal by at most 20 rounds of correction; false if they do not */   \
    /* converge or two of them are parallel. */                                                              \
    VESK_USD_API bool GfOrthogonalizeBasis(Vec* tx, Vec* ty, Vec* tz, bool normalize,                        \
                                           double eps = GF_MIN_ORTHO_TOLERANCE);                             \
    /* Sets v1 and v2 to unit vectors orthogonal to v0 and each other, shortened where v0 is below eps. */   \
    VESK_USD_API void GfBuildOrthonormalFrame(Vec const& v0, Vec* v1, Vec* v2,                               \
                                              Scalar eps = Gf_vecEpsilon<Scalar>);                           \
    inline Vec GfCross(Vec const& v1, Vec const& v2)                                                         \
    {                                                                                                        \
        return Vec(v1[1] * v2[2] - v1[2] * v2[1], v1[2] * v2[0] - v1[0] * v2[2],                             \
                   v1[0] * v2[1] - v1[1] * v2[0]);                                                           \
    }                                                                                                        \
    inline Vec operator^(Vec const& v1, Vec const& v2) { return GfCross(v1, v2); }                           \
    /* Interpolates along the arc between two unit vectors. */                                               \
    VESK_USD_API Vec GfSlerp(double alpha, Vec const& v0, Vec const& v1);
/// @}

PXR_NAMESPACE_CLOSE_SCOPE
