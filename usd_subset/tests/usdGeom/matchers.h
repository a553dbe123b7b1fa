#pragma once

#include <pxr/base/gf/bbox3d.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/range3d.h>
#include <pxr/base/gf/vec3d.h>

#include <gtest/gtest.h>

PXR_NAMESPACE_USING_DIRECTIVE

inline void ExpectNear(const GfVec3d& actual, const GfVec3d& expected, double tolerance = 1e-6)
{
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(actual[i], expected[i], tolerance) << "component " << i;
    }
}

inline void ExpectBox(const GfRange3d& actual, const GfVec3d& min, const GfVec3d& max,
                      double tolerance = 1e-6)
{
    ASSERT_FALSE(actual.IsEmpty());
    ExpectNear(actual.GetMin(), min, tolerance);
    ExpectNear(actual.GetMax(), max, tolerance);
}
