#pragma once

/// What the matrix classes have in common. Use GfMatrix2d ... GfMatrix4f; this base has no meaning of its
/// own.

#include <pxr/base/gf/api.h>
#include <pxr/base/gf/hashCombine.h>
#include <pxr/base/gf/limits.h>
#include <pxr/base/gf/math.h>
#include <pxr/base/gf/matrixData.h>
#include <pxr/base/gf/traits.h>
#include <pxr/pxr.h>

#include <cfloat>
#include <cstddef>
#include <iosfwd>
#include <type_traits>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Components, comparison and arithmetic of a Dim x Dim matrix class Mat. m[i][j] is row i, column j. Points
/// are row vectors: in the product A * B, A applies first.
template <class Mat, class Scalar, int Dim, class Vec>
class Gf_MatrixBase
{
    template <class Other>
    static constexpr bool _isOtherMatrix = GfIsGfMatrix<Other>::value && !std::is_same_v<Other, Mat>;

public:
    typedef Scalar ScalarType;
    static constexpr size_t numRows = Dim;
    static constexpr size_t numColumns = Dim;

    /// \name Rows and columns
    /// @{
    void SetRow(int i, const Vec& v)
    {
        for (int c = 0; c != Dim; ++c) {
            _mtx[i][c] = v[c];
        }
    }
    void SetColumn(int i, const Vec& v)
    {
        for (int r = 0; r != Dim; ++r) {
            _mtx[r][i] = v[r];
        }
    }
    Vec GetRow(int i) const { return Vec(_mtx[i]); }
    Vec GetColumn(int i) const
    {
        Vec column;
        for (int r = 0; r != Dim; ++r) {
            column[r] = _mtx[r][i];
        }
        return column;
    }
    /// @}

    /// Sets all components, row by row.
    template <class... S, std::enable_if_t<sizeof...(S) == Dim * Dim, int> = 0>
    Mat& Set(S... s)
    {
        int i = 0;
        ((data()[i++] = static_cast<Scalar>(s)), ...);
        return _Self();
    }
    Mat& Set(const Scalar m[Dim][Dim])
    {
        for (int r = 0; r != Dim; ++r) {
            for (int c = 0; c != Dim; ++c) {
                _mtx[r][c] = m[r][c];
            }
        }
        return _Self();
    }
    Mat& SetIdentity() { return SetDiagonal(Scalar(1)); }
    Mat& SetZero() { return SetDiagonal(Scalar(0)); }
    Mat& SetDiagonal(Scalar s) { return SetDiagonal(Vec(s)); }
    Mat& SetDiagonal(const Vec& v)
    {
        for (int r = 0; r != Dim; ++r) {
            for (int c = 0; c != Dim; ++c) {
                _mtx[r][c] = r == c ? v[r] : Scalar(0);
            }
        }
        return _Self();
    }

    /// Copies the components to m, row by row, and returns its first element.
    Scalar* Get(Scalar m[Dim][Dim]) const
    {
        for (int r = 0; r != Dim; ++r) {
            for (int c = 0; c != Dim; ++c) {
                m[r][c] = _mtx[r][c];
            }
        }
        return &m[0][0];
    }

    /// \name Access to the components, row by row
    /// @{
    Scalar* data() { return _mtx.GetData(); }
    const Scalar* data() const { return _mtx.GetData(); }
    Scalar* GetArray() { return _mtx.GetData(); }
    const Scalar* GetArray() const { return _mtx.GetData(); }
    Scalar* operator[](int i) { return _mtx[i]; }
    const Scalar* operator[](int i) const { return _mtx[i]; }
    /// @}

    friend inline size_t hash_value(Mat const& m) { return Gf_HashArray(m.data(), Dim * Dim); }

    bool operator==(const Mat& m) const { return _Equals(m); }
    bool operator!=(const Mat& m) const { return !_Equals(m); }
    /// Compares the values with those of the matrix of the other component type.
    template <class Other, std::enable_if_t<_isOtherMatrix<Other>, int> = 0>
    bool operator==(const Other& m) const
    {
        static_assert(Other::numRows == Dim, "matrices of different sizes are never equal");
        return _Equals(m);
    }
    template <class Other, std::enable_if_t<_isOtherMatrix<Other>, int> = 0>
    bool operator!=(const Other& m) const
    {
        return !(*this == m);
    }

    Mat GetTranspose() const
    {
        Mat transpose;
        for (int r = 0; r != Dim; ++r) {
            for (int c = 0; c != Dim; ++c) {
                transpose[c][r] = _mtx[r][c];
            }
        }
        return transpose;
    }

    Mat& operator*=(const Mat& m)
    {
        Mat product;
        for (int r = 0; r != Dim; ++r) {
            for (int c = 0; c != Dim; ++c) {
                Scalar sum = _mtx[r][0] * m[0][c];
                for (int i = 1; i != Dim; ++i) {
                    sum = sum + _mtx[r][i] * m[i][c];
                }
                product[r][c] = sum;
            }
        }
        return _Self() = product;
    }
    Mat& operator*=(double d)
    {
        for (int i = 0; i != Dim * Dim; ++i) {
            data()[i] *= d;
        }
        return _Self();
    }
    friend Mat operator*(const Mat& m1, double d) { return Mat(m1) *= d; }
    friend Mat operator*(double d, const Mat& m) { return Mat(m) *= d; }
    Mat& operator+=(const Mat& m)
    {
        for (int i = 0; i != Dim * Dim; ++i) {
            data()[i] += m.data()[i];
        }
        return _Self();
    }
    Mat& operator-=(const Mat& m)
    {
        for (int i = 0; i != Dim * Dim; ++i) {
            data()[i] -= m.data()[i];
        }
        return _Self();
    }
    friend Mat operator-(const Mat& m)
    {
        Mat negated;
        for (int i = 0; i != Dim * Dim; ++i) {
            negated.data()[i] = -m.data()[i];
        }
        return negated;
    }
    friend Mat operator+(const Mat& m1, const Mat& m2) { return Mat(m1) += m2; }
    friend Mat operator-(const Mat& m1, const Mat& m2) { return Mat(m1) -= m2; }
    friend Mat operator*(const Mat& m1, const Mat& m2) { return Mat(m1) *= m2; }
    /// Multiplies by the inverse of m2.
    friend Mat operator/(const Mat& m1, const Mat& m2) { return m1 * m2.GetInverse(); }

    /// Takes vec for a column.
    friend inline Vec operator*(const Mat& m, const Vec& vec)
    {
        Vec result;
        for (int r = 0; r != Dim; ++r) {
            Scalar sum = vec[0] * m[r][0];
            for (int i = 1; i != Dim; ++i) {
                sum = sum + vec[i] * m[r][i];
            }
            result[r] = sum;
        }
        return result;
    }
    /// Takes vec for a row: this is how a matrix transforms.
    friend inline Vec operator*(const Vec& vec, const Mat& m)
    {
        Vec result;
        for (int c = 0; c != Dim; ++c) {
            Scalar sum = vec[0] * m[0][c];
            for (int i = 1; i != Dim; ++i) {
                sum = sum + vec[i] * m[i][c];
            }
            result[c] = sum;
        }
        return result;
    }

protected:
    Gf_MatrixBase() = default;

    /// Fills in rows that may be too short or too few from the identity matrix and ignores what is too much.
    template <class S>
    void _SetRows(const std::vector<S>* const rows, size_t count)
    {
        SetIdentity();
        for (size_t r = 0; r < size_t(Dim) && r < count; ++r) {
            for (size_t c = 0; c < size_t(Dim) && c < rows[r].size(); ++c) {
                _mtx[int(r)][c] = static_cast<Scalar>(rows[r][c]);
            }
        }
    }

    /// Copies from a matrix of the other component type.
    template <class Other>
    void _SetFrom(const Other& other)
    {
        for (int i = 0; i != Dim * Dim; ++i) {
            data()[i] = static_cast<Scalar>(other.data()[i]);
        }
    }

    Mat& _Self() { return static_cast<Mat&>(*this); }
    Mat const& _Self() const { return static_cast<Mat const&>(*this); }

    GfMatrixData<Scalar, Dim, Dim> _mtx;

private:
    template <class Other>
    bool _Equals(const Other& m) const
    {
        for (int i = 0; i != Dim * Dim; ++i) {
            if (!(data()[i] == m.data()[i])) {
                return false;
            }
        }
        return true;
    }
};

/// The vector, quaternion and matrix types with components of one type.
template <class Scalar>
struct Gf_MatrixTypes;

template <>
struct Gf_MatrixTypes<double>
{
    using Vec2 = class GfVec2d;
    using Vec3 = class GfVec3d;
    using Vec4 = class GfVec4d;
    using Quat = class GfQuatd;
    using Matrix3 = class GfMatrix3d;
    using Matrix4 = class GfMatrix4d;
    static constexpr double factorEpsilon = 1e-10;
};

template <>
struct Gf_MatrixTypes<float>
{
    using Vec2 = class GfVec2f;
    using Vec3 = class GfVec3f;
    using Vec4 = class GfVec4f;
    using Quat = class GfQuatf;
    using Matrix3 = class GfMatrix3f;
    using Matrix4 = class GfMatrix4f;
    static constexpr double factorEpsilon = 1e-5;
};

PXR_NAMESPACE_CLOSE_SCOPE
