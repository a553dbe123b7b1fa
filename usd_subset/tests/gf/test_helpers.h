#pragma once

/// Comparing and printing the types of gf.

#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/range3d.h>
#include <pxr/base/gf/rotation.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/pxr.h>

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>

PXR_NAMESPACE_USING_DIRECTIVE

/// What a value writes to a stream.
template <class T>
std::string textOf(const T& value)
{
    std::ostringstream out;
    out << value;
    return out.str();
}

inline void expectNear(const GfVec3d& actual, const GfVec3d& expected, double tolerance = 1e-12)
{
    for (int i = 0; i != 3; ++i) {
        EXPECT_NEAR(actual[i], expected[i], tolerance) << "component " << i << " of " << textOf(actual);
    }
}

inline void expectNear(const GfMatrix4d& actual, const GfMatrix4d& expected, double tolerance = 1e-12)
{
    for (int r = 0; r != 4; ++r) {
        for (int c = 0; c != 4; ++c) {
            EXPECT_NEAR(actual[r][c], expected[r][c], tolerance)
                << "row " << r << ", column " << c << " of " << textOf(actual);
        }
    }
}

/// Numbers without pattern, the same in each run.
class Numbers
{
public:
    explicit Numbers(unsigned long long seed) : m_state(seed) {}

    /// Returns a number from low to high.
    double in(double low, double high)
    {
        m_state = m_state * 2862933555777941757ull + 3037000493ull;
        return low + (high - low) * (double(m_state >> 11) / 9007199254740992.0);
    }
    GfVec3d vec(double size)
    {
        const double x = in(-size, size);
        const double y = in(-size, size);
        const double z = in(-size, size);
        return GfVec3d(x, y, z);
    }
    GfRotation rotation() { return GfRotation(vec(1), in(-170, 170)); }

private:
    unsigned long long m_state;
};
