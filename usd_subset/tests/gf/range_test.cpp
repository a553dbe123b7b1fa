#include "test_helpers.h"

#include <pxr/base/gf/bbox3d.h>
#include <pxr/base/gf/interval.h>
#include <pxr/base/gf/range1d.h>
#include <pxr/base/gf/range1f.h>
#include <pxr/base/gf/range2d.h>
#include <pxr/base/gf/range2f.h>
#include <pxr/base/gf/range3f.h>
#include <pxr/base/gf/rect2i.h>
#include <pxr/base/gf/size2.h>
#include <pxr/base/gf/size3.h>

#include <cfloat>

namespace {

TEST(Range, StartsEmptyFromTheLargestFloatToItsNegative)
{
    EXPECT_TRUE(GfRange3d().IsEmpty());
    EXPECT_EQ(GfRange3d().GetMin(), GfVec3d(FLT_MAX));
    EXPECT_EQ(GfRange1f().GetMax(), -FLT_MAX);
    EXPECT_EQ(GfRange2d().GetMidpoint(), GfVec2d(0));
}

TEST(Range, IsEmptyIfAnyDimensionIs)
{
    EXPECT_TRUE(GfRange2d(GfVec2d(0, 1), GfVec2d(5, 0)).IsEmpty());
    EXPECT_FALSE(GfRange2d(GfVec2d(1, 1), GfVec2d(1, 1)).IsEmpty()); // a point is inside
}

TEST(Range, UnionHoldsEveryPoint)
{
    GfRange3d range;
    range.UnionWith(GfVec3d(1, 5, 3));
    range.ExtendBy(GfVec3d(4, 2, 3));
    EXPECT_EQ(range, GfRange3d(GfVec3d(1, 2, 3), GfVec3d(4, 5, 3)));
    EXPECT_EQ(GfRange3d::GetUnion(range, GfRange3d()), range);
    EXPECT_EQ(range.GetSize(), GfVec3d(3, 3, 0));
    EXPECT_EQ(range.GetMidpoint(), GfVec3d(2.5, 3.5, 3));
}

TEST(Range, IntersectionIsWhatBothHold)
{
    const GfRange1d a(0, 4), b(3, 6), c(5, 6);
    EXPECT_EQ(GfRange1d::GetIntersection(a, b), GfRange1d(3, 4));
    EXPECT_TRUE(GfRange1d::GetIntersection(a, c).IsEmpty());
    EXPECT_TRUE(a.IsOutside(c));
    EXPECT_FALSE(a.IsOutside(b));
}

TEST(Range, ContainsItsEnds)
{
    const GfRange2d range(GfVec2d(0, 0), GfVec2d(2, 3));
    EXPECT_TRUE(range.Contains(GfVec2d(2, 0)));
    EXPECT_FALSE(range.Contains(GfVec2d(2.0001, 0)));
    EXPECT_TRUE(range.Contains(GfRange2d(GfVec2d(0), GfVec2d(1))));
    EXPECT_FALSE(range.Contains(GfVec2d(std::nan(""), 1)));
}

TEST(Range, ArithmeticCoversAllResults)
{
    const GfRange1d a(1, 2), b(10, 20);
    EXPECT_EQ(a + b, GfRange1d(11, 22));
    EXPECT_EQ(b - a, GfRange1d(8, 19)); // 10 - 2 and 20 - 1
    EXPECT_EQ(a * -3, GfRange1d(-6, -3));
    EXPECT_EQ(b / 2, GfRange1d(5, 10));
}

TEST(Range, DistanceIsMeasuredToTheNearestPoint)
{
    const GfRange3d box(GfVec3d(0), GfVec3d(1));
    EXPECT_EQ(box.GetDistanceSquared(GfVec3d(0.5)), 0);
    EXPECT_EQ(box.GetDistanceSquared(GfVec3d(-3, 0.5, 5)), 25);
    EXPECT_EQ(GfRange1d(2, 3).GetDistanceSquared(7), 16);
}

TEST(Range, CornersCountXFirst)
{
    const GfRange3d box(GfVec3d(0, 10, 20), GfVec3d(1, 11, 21));
    EXPECT_EQ(box.GetCorner(0), GfVec3d(0, 10, 20));
    EXPECT_EQ(box.GetCorner(1), GfVec3d(1, 10, 20));
    EXPECT_EQ(box.GetCorner(6), GfVec3d(0, 11, 21));
    EXPECT_EQ(GfRange2f(GfVec2f(0), GfVec2f(1)).GetCorner(2), GfVec2f(0, 1));
}

TEST(Range, OctantsAndQuadrantsShareTheMiddle)
{
    EXPECT_EQ(GfRange3d(GfVec3d(0), GfVec3d(4)).GetOctant(5), GfRange3d(GfVec3d(2, 0, 2), GfVec3d(4, 2, 4)));
    EXPECT_EQ(GfRange2d::UnitSquare.GetQuadrant(3), GfRange2d(GfVec2d(0.5), GfVec2d(1)));
    EXPECT_EQ(GfRange3f::UnitCube.GetSize(), GfVec3f(1));
}

TEST(Range, ConvertsBetweenFloatAndDouble)
{
    const GfRange1d d = GfRange1f(0.1f, 0.2f);
    EXPECT_EQ(d.GetMin(), double(0.1f));
    EXPECT_EQ(GfRange1f(GfRange1d(0.1, 0.2)), GfRange1f(0.1f, 0.2f));
    EXPECT_TRUE(GfRange1f(0, 1) == GfRange1d(0, 1));
}

TEST(BBox, AlignedRangeHoldsTheTransformedCorners)
{
    Numbers numbers(31);
    for (int i = 0; i != 30; ++i) {
        GfRange3d range;
        range.UnionWith(numbers.vec(5));
        range.UnionWith(numbers.vec(5));
        GfMatrix4d matrix;
        matrix.SetTransform(numbers.rotation(), numbers.vec(10));
        GfRange3d expected;
        for (size_t corner = 0; corner != 8; ++corner) {
            expected.UnionWith(matrix.Transform(range.GetCorner(corner)));
        }
        const GfRange3d aligned = GfBBox3d(range, matrix).ComputeAlignedRange();
        expectNear(aligned.GetMin(), expected.GetMin(), 1e-9);
        expectNear(aligned.GetMax(), expected.GetMax(), 1e-9);
    }
}

TEST(BBox, EmptyBoxesStayEmptyAndCountForNothing)
{
    GfMatrix4d matrix;
    matrix.SetTranslate(GfVec3d(1, 2, 3));
    const GfBBox3d empty(GfRange3d(), matrix);
    EXPECT_TRUE(empty.ComputeAlignedRange().IsEmpty());
    EXPECT_EQ(empty.GetVolume(), 0);
    const GfBBox3d box(GfRange3d(GfVec3d(0), GfVec3d(1)));
    EXPECT_EQ(GfBBox3d::Combine(empty, box), box);
    EXPECT_EQ(GfBBox3d::Combine(box, empty), box);
}

TEST(BBox, VolumeAndCentroidAreThoseInPlace)
{
    GfMatrix4d scale, translation;
    GfBBox3d box(GfRange3d(GfVec3d(0), GfVec3d(1, 2, 3)), scale.SetScale(GfVec3d(2, -1, 1)));
    box.Transform(translation.SetTranslate(GfVec3d(10, 0, 0)));
    EXPECT_DOUBLE_EQ(box.GetVolume(), 12);
    expectNear(box.ComputeCentroid(), GfVec3d(11, -1, 1.5));
}

TEST(BBox, CombiningChoosesTheSpaceOfTheSmallerResult)
{
    // A long thin box at 45 degrees and a small cube: the cube's space would hold a huge square.
    GfMatrix4d diagonal;
    diagonal.SetRotate(GfRotation(GfVec3d::ZAxis(), 45));
    const GfBBox3d beam(GfRange3d(GfVec3d(-100, -1, -1), GfVec3d(100, 1, 1)), diagonal);
    const GfBBox3d cube(GfRange3d(GfVec3d(-1), GfVec3d(1)));
    EXPECT_EQ(GfBBox3d::Combine(cube, beam).GetMatrix(), diagonal);
    EXPECT_EQ(GfBBox3d::Combine(beam, cube).GetMatrix(), diagonal);
}

TEST(BBox, CombiningFlatTransformationsUsesTheOtherSpace)
{
    GfMatrix4d flat;
    flat.SetScale(GfVec3d(1, 0, 1));
    const GfBBox3d shadow(GfRange3d(GfVec3d(0), GfVec3d(5)), flat);
    EXPECT_EQ(shadow.GetInverseMatrix(), GfMatrix4d(1));
    const GfBBox3d cube(GfRange3d(GfVec3d(0), GfVec3d(1)));
    EXPECT_EQ(GfBBox3d::Combine(shadow, cube).ComputeAlignedRange(), GfRange3d(GfVec3d(0), GfVec3d(5, 1, 5)));
    EXPECT_EQ(GfBBox3d::Combine(shadow, shadow).ComputeAlignedRange(),
              GfRange3d(GfVec3d(0), GfVec3d(5, 0, 5)));
}

TEST(BBox, PassesOnThatItHoldsPointsOrLines)
{
    GfBBox3d points(GfRange3d(GfVec3d(0), GfVec3d(1)));
    points.SetHasZeroAreaPrimitives(true);
    EXPECT_TRUE(GfBBox3d::Combine(GfBBox3d(), points).HasZeroAreaPrimitives());
    EXPECT_FALSE(GfBBox3d::Combine(GfBBox3d(), GfBBox3d()).HasZeroAreaPrimitives());
}

TEST(Interval, KnowsWhichEndsBelongToIt)
{
    const GfInterval halfOpen(1, 2, true, false);
    EXPECT_TRUE(halfOpen.Contains(1));
    EXPECT_FALSE(halfOpen.Contains(2.0));
    EXPECT_EQ(textOf(halfOpen), "[1, 2)");
    EXPECT_TRUE(GfInterval(1, 1, true, false).IsEmpty());
    EXPECT_FALSE(GfInterval(1).IsEmpty());
    EXPECT_FALSE(GfInterval::GetFullInterval().IsFinite());
    EXPECT_EQ(textOf(GfInterval(0, INFINITY)), "[0, inf)"); // an infinite end is open
}

TEST(Interval, IntersectsAndUnites)
{
    const GfInterval a(0, 2), b(2, 3, false, true);
    EXPECT_FALSE(a.Intersects(b)); // 2 belongs to one of them alone
    EXPECT_EQ(a | b, GfInterval(0, 3));
    EXPECT_EQ(a & GfInterval(1, 5), GfInterval(1, 2));
    EXPECT_EQ(GfInterval(1, 2) * GfInterval(-1, 3), GfInterval(-2, 6));
    EXPECT_EQ(GfInterval(1, 2) - GfInterval(0, 5), GfInterval(-4, 2));
    EXPECT_LT(GfInterval(0, 1), GfInterval(0, 1, false, true));
}

TEST(Rect, CountsBothCornersAsInside)
{
    const GfRect2i rect(GfVec2i(2, 3), 4, 5);
    EXPECT_EQ(rect.GetMax(), GfVec2i(5, 7));
    EXPECT_EQ(rect.GetArea(), 20u);
    EXPECT_TRUE(rect.Contains(GfVec2i(5, 7)));
    EXPECT_TRUE(GfRect2i().IsNull());
    EXPECT_EQ(GfRect2i(GfVec2i(1, 1), GfVec2i(1, 1)).GetSize(), GfVec2i(1, 1));
    EXPECT_EQ(textOf(rect), "[(2, 3):(5, 7)]");
}

TEST(Rect, UnionIgnoresEmptyOnesAndIntersectionKeepsThem)
{
    const GfRect2i a(GfVec2i(0, 0), 4, 4), b(GfVec2i(2, 2), 4, 4);
    EXPECT_EQ(a + b, GfRect2i(GfVec2i(0, 0), 6, 6));
    EXPECT_EQ(a.GetIntersection(b), GfRect2i(GfVec2i(2, 2), 2, 2));
    EXPECT_EQ(a.GetUnion(GfRect2i()), a);
    EXPECT_TRUE(a.GetIntersection(GfRect2i()).IsEmpty());
    EXPECT_EQ(GfRect2i(GfVec2i(3, 0), GfVec2i(1, 2)).GetNormalized(), GfRect2i(GfVec2i(1, 0), GfVec2i(3, 2)));
}

TEST(Size, ComputesByComponent)
{
    EXPECT_EQ(GfSize2(3, 4) * GfSize2(2, 5), GfSize2(6, 20));
    EXPECT_EQ(GfSize3(8, 6, 4) / 2, GfSize3(4, 3, 2));
    EXPECT_EQ(GfSize2(), GfSize2(0, 0));
    EXPECT_EQ(textOf(GfSize3(1, 2, 3)), "( 1 2 3 )");
}

} // namespace
