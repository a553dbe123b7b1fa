#include "test_helpers.h"

#include <pxr/base/gf/bbox3d.h>
#include <pxr/base/gf/gamma.h>
#include <pxr/base/gf/homogeneous.h>
#include <pxr/base/gf/quatd.h>
#include <pxr/base/gf/quaternion.h>
#include <pxr/base/gf/range1d.h>
#include <pxr/base/gf/vec2d.h>
#include <pxr/base/gf/vec2f.h>
#include <pxr/base/gf/vec3h.h>
#include <pxr/base/gf/vec3i.h>

#include <cstdlib>
#include <limits>

namespace {

// The text of one double, as a vector writes it.
std::string text(double value)
{
    const std::string both = textOf(GfVec2d(value, 0));
    return both.substr(1, both.find(',') - 1);
}

TEST(Stream, NumbersAreWrittenAsTheShortestTextThatReadsBackEqual)
{
    EXPECT_EQ(text(0.1), "0.1");
    EXPECT_EQ(text(0.1 + 0.2), "0.30000000000000004");
    EXPECT_EQ(textOf(GfVec2f(0.1f, 16777216.0f)), "(0.1, 16777216)");
    EXPECT_EQ(text(-2), "-2");
    Numbers numbers(17);
    for (int i = 0; i != 1000; ++i) {
        const double value = numbers.in(-1, 1) * std::pow(10, numbers.in(-300, 300));
        EXPECT_EQ(std::strtod(text(value).c_str(), nullptr), value);
    }
}

TEST(Stream, ExponentsAppearFromTenToTheFifteenthAndBelowAMillionth)
{
    EXPECT_EQ(text(999999999999999), "999999999999999");
    EXPECT_EQ(text(1e15), "1e15");
    EXPECT_EQ(text(1.25e20), "1.25e20");
    EXPECT_EQ(text(1e-6), "0.000001");
    EXPECT_EQ(text(1.5e-7), "1.5e-7");
}

TEST(Stream, ZeroKeepsItsSignAndInfinitiesHaveNames)
{
    EXPECT_EQ(text(0.0), "0");
    EXPECT_EQ(text(-0.0), "-0");
    EXPECT_EQ(text(std::numeric_limits<double>::infinity()), "inf");
    EXPECT_EQ(text(-std::numeric_limits<double>::infinity()), "-inf");
    EXPECT_EQ(text(std::nan("")), "nan");
}

TEST(Stream, EveryTypeHasItsForm)
{
    EXPECT_EQ(textOf(GfVec3i(1, -2, 3)), "(1, -2, 3)");
    EXPECT_EQ(textOf(GfVec3h(0.5f)), "(0.5, 0.5, 0.5)");
    EXPECT_EQ(textOf(GfRange1d(1, 2.5)), "[1...2.5]");
    EXPECT_EQ(textOf(GfRange3d(GfVec3d(0), GfVec3d(1))), "[(0, 0, 0)...(1, 1, 1)]");
    EXPECT_EQ(textOf(GfQuatd(1, 2, 3, 4)), "(1, 2, 3, 4)");
    EXPECT_EQ(textOf(GfQuaternion(1, GfVec3d(2, 3, 4))), "(1 + (2, 3, 4))");
    EXPECT_EQ(textOf(GfRotation(GfVec3d(0, 0, 1), 90)), "[(0, 0, 1) 90]");
    EXPECT_EQ(
        textOf(GfBBox3d(GfRange3d(GfVec3d(0), GfVec3d(1)))),
        "[([(0, 0, 0)...(1, 1, 1)]) (( (1, 0, 0, 0), (0, 1, 0, 0), (0, 0, 1, 0), (0, 0, 0, 1) )) false]");
}

TEST(Homogeneous, ProjectsByW)
{
    EXPECT_EQ(GfProject(GfVec4d(2, 4, 6, 2)), GfVec3d(1, 2, 3));
    EXPECT_EQ(GfProject(GfVec4f(2, 4, 6, 0)), GfVec3f(2, 4, 6));
    EXPECT_EQ(GfGetHomogenized(GfVec4d(2, 4, 6, 2)), GfVec4d(1, 2, 3, 1));
    EXPECT_EQ(GfHomogeneousCross(GfVec4d(2, 0, 0, 2), GfVec4d(0, 3, 0, 1)), GfVec4d(0, 0, 3, 1));
}

TEST(Gamma, ConvertsColoursAndLeavesAlpha)
{
    const GfVec4f display = GfConvertLinearToDisplay(GfVec4f(0.5f, 0, 1, 0.25f));
    EXPECT_NEAR(display[0], std::pow(0.5, 1 / 2.2), 1e-6);
    EXPECT_EQ(display[1], 0);
    EXPECT_EQ(display[2], 1);
    EXPECT_EQ(display[3], 0.25f);
    EXPECT_TRUE(GfIsClose(GfConvertDisplayToLinear(display), GfVec4f(0.5f, 0, 1, 0.25f), 1e-6));
    EXPECT_EQ(GfConvertLinearToDisplay((unsigned char)255), 255);
    EXPECT_EQ(GfGetDisplayGamma(), 2.2);
}

} // namespace
