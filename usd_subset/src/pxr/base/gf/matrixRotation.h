#pragma once

/// The upper left 3 x 3 part of a matrix as a rotation, for 3 x 3 and 4 x 4 matrices.

#include <pxr/base/gf/math.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/base/tf/diagnostic.h>
#include <pxr/pxr.h>

#include <cmath>

PXR_NAMESPACE_OPEN_SCOPE

/// Sets the part to the rotation of the unit quaternion (r, i); the result is rounded to the matrix's type
/// last.
template <class Mat, class Scalar, class Vec3>
void Gf_SetRotation(Mat* m, Scalar r, const Vec3& i)
{
    (*m)[0][0] = 1.0 - 2.0 * (i[1] * i[1] + i[2] * i[2]);
    (*m)[0][1] = 2.0 * (i[0] * i[1] + i[2] * r);
    (*m)[0][2] = 2.0 * (i[2] * i[0] - i[1] * r);

    (*m)[1][0] = 2.0 * (i[0] * i[1] - i[2] * r);
    (*m)[1][1] = 1.0 - 2.0 * (i[2] * i[2] + i[0] * i[0]);
    (*m)[1][2] = 2.0 * (i[1] * i[2] + i[0] * r);

    (*m)[2][0] = 2.0 * (i[2] * i[0] + i[1] * r);
    (*m)[2][1] = 2.0 * (i[1] * i[2] - i[0] * r);
    (*m)[2][2] = 1.0 - 2.0 * (i[1] * i[1] + i[0] * i[0]);
}

/// Returns the quaternion of a rotation. Its largest coefficient is computed first, by a square root, and the
/// others from it; corner is m[3][3] of a 4 x 4 matrix and 1 for a 3 x 3 one.
template <class Quat, class Scalar, class Vec3, class Mat, class Corner>
Quat Gf_GetRotationQuat(const Mat& m, Corner corner)
{
    const int larger = m[0][0] > m[1][1] ? 0 : 1;
    const int i = m[larger][larger] > m[2][2] ? larger : 2;
    Vec3 imaginary;
    Scalar real;
    if (m[0][0] + m[1][1] + m[2][2] > m[i][i]) {
        real = 0.5 * std::sqrt(m[0][0] + m[1][1] + m[2][2] + corner);
        imaginary.Set((m[1][2] - m[2][1]) / (4.0 * real), (m[2][0] - m[0][2]) / (4.0 * real),
                      (m[0][1] - m[1][0]) / (4.0 * real));
    } else {
        const int j = (i + 1) % 3;
        const int k = (i + 2) % 3;
        const Scalar q = 0.5 * std::sqrt(m[i][i] - m[j][j] - m[k][k] + corner);
        imaginary[i] = q;
        imaginary[j] = (m[i][j] + m[j][i]) / (4 * q);
        imaginary[k] = (m[k][i] + m[i][k]) / (4 * q);
        real = (m[j][k] - m[k][j]) / (4 * q);
    }
    return Quat(GfClamp(real, Scalar(-1), Scalar(1)), imaginary);
}

/// Makes the rows of the part orthonormal, in double precision.
template <class Mat>
bool Gf_OrthonormalizeRows(Mat* m, bool issueWarning)
{
    GfVec3d rows[3];
    for (int r = 0; r != 3; ++r) {
        rows[r] = GfVec3d((*m)[r]);
    }
    const bool converged = GfOrthogonalizeBasis(&rows[0], &rows[1], &rows[2], true);
    for (int r = 0; r != 3; ++r) {
        for (int c = 0; c != 3; ++c) {
            (*m)[r][c] = rows[r][c];
        }
    }
    if (!converged && issueWarning) {
        TF_WARN("OrthogonalizeBasis did not converge, matrix may not be orthonormal.");
    }
    return converged;
}

PXR_NAMESPACE_CLOSE_SCOPE
