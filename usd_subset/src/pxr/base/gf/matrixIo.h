#pragma once

/// Comparing and writing matrices of any size.

#include <pxr/base/gf/math.h>
#include <pxr/base/gf/ostreamHelpers.h>
#include <pxr/pxr.h>

#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

template <class Mat>
bool Gf_MatricesAreClose(Mat const& m1, Mat const& m2, double tolerance)
{
    for (size_t i = 0; i != Mat::numRows * Mat::numColumns; ++i) {
        if (!GfIsClose(m1.data()[i], m2.data()[i], tolerance)) {
            return false;
        }
    }
    return true;
}

template <class Mat>
std::ostream& Gf_WriteMatrix(std::ostream& out, Mat const& m)
{
    out << "( ";
    for (int r = 0; r != int(Mat::numRows); ++r) {
        out << (r == 0 ? "(" : ", (");
        for (int c = 0; c != int(Mat::numColumns); ++c) {
            out << (c == 0 ? "" : ", ") << Gf_OstreamHelperP(m[r][c]);
        }
        out << ')';
    }
    return out << " )";
}

#define GF_DEFINE_MATRIX(Mat, Other)                                                                         \
    Mat::Mat(const class Other& m) { _SetFrom(m); }                                                          \
    bool GfIsClose(Mat const& m1, Mat const& m2, double tolerance)                                           \
    {                                                                                                        \
        return Gf_MatricesAreClose(m1, m2, tolerance);                                                       \
    }                                                                                                        \
    std::ostream& operator<<(std::ostream& out, Mat const& m) { return Gf_WriteMatrix(out, m); }

PXR_NAMESPACE_CLOSE_SCOPE
