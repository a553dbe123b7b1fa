#include "test_helpers.h"

#include <pxr/base/gf/matrix2d.h>
#include <pxr/base/gf/matrix3d.h>
#include <pxr/base/gf/matrix3f.h>
#include <pxr/base/gf/matrix4f.h>
#include <pxr/base/gf/quatd.h>
#include <pxr/base/gf/vec2d.h>

#include <cfloat>

namespace {

GfMatrix4d scaled(double x, double y, double z)
{
    GfMatrix4d m;
    return m.SetScale(GfVec3d(x, y, z));
}

GfMatrix4d translated(double x, double y, double z)
{
    GfMatrix4d m;
    return m.SetTranslate(GfVec3d(x, y, z));
}

GfMatrix4d rotated(const GfVec3d& axis, double degrees)
{
    GfMatrix4d m;
    return m.SetRotate(GfRotation(axis, degrees));
}

TEST(Matrix, RowsAreContiguousAndIndexable)
{
    GfMatrix4d m(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);
    EXPECT_EQ(m[1][2], 7);
    EXPECT_EQ(m.data()[6], 7);
    EXPECT_EQ(m.GetRow(3), GfVec4d(13, 14, 15, 16));
    EXPECT_EQ(m.GetColumn(0), GfVec4d(1, 5, 9, 13));
    EXPECT_EQ(m.GetRow3(2), GfVec3d(9, 10, 11));
    EXPECT_EQ(m.GetTranspose()[2][1], 7);
    m.SetRow(0, GfVec4d(0));
    m.SetColumn(3, GfVec4d(1, 2, 3, 4));
    EXPECT_EQ(m.GetRow(0), GfVec4d(0, 0, 0, 1));
}

TEST(Matrix, ConvertsBetweenFloatAndDouble)
{
    const GfMatrix4d d(0.1);
    EXPECT_EQ(GfMatrix4f(d)[0][0], 0.1f);
    EXPECT_EQ(GfMatrix4d(GfMatrix4f(d))[0][0], double(0.1f));
    EXPECT_TRUE(GfMatrix4f(1) == GfMatrix4d(1));
    EXPECT_TRUE(GfMatrix4d(1) != GfMatrix4f(2));
}

TEST(Matrix, RowsThatAreTooShortAreFilledFromTheIdentity)
{
    const std::vector<std::vector<double>> rows{{5}, {1, 2, 3, 4, 99}};
    EXPECT_EQ(GfMatrix3d(rows), GfMatrix3d(5, 0, 0, 1, 2, 3, 0, 0, 1));
}

TEST(Matrix, InAProductTheLeftMatrixAppliesFirst)
{
    const GfMatrix4d m = scaled(2, 2, 2) * translated(1, 0, 0);
    expectNear(m.Transform(GfVec3d(1, 1, 1)), GfVec3d(3, 2, 2));
    EXPECT_EQ(GfVec4d(1, 1, 1, 1) * m, GfVec4d(3, 2, 2, 1));
    EXPECT_EQ(m * GfVec4d(1, 1, 1, 1), GfVec4d(2, 2, 2, 2)); // as a column: the rows' sums
}

TEST(Matrix, MultiplyingByItselfUsesTheOldValues)
{
    GfMatrix2d m(1, 1, 1, 0);
    const GfMatrix2d copy = m;
    m *= copy;
    EXPECT_EQ(m, GfMatrix2d(2, 1, 1, 1)); // Fibonacci
}

TEST(Matrix, InverseUndoesTheMatrix)
{
    Numbers numbers(7);
    for (int i = 0; i != 50; ++i) {
        GfMatrix4d m;
        for (int k = 0; k != 16; ++k) {
            m.data()[k] = numbers.in(-5, 5);
        }
        double det = 0;
        expectNear(m * m.GetInverse(&det), GfMatrix4d(1), 1e-9);
        EXPECT_NEAR(det, m.GetDeterminant(), 1e-9 * std::abs(det));
    }
}

TEST(Matrix, InverseOfASingularMatrixIsAScaleByTheLargestFloat)
{
    double det = 1;
    const GfMatrix4d inverse = scaled(1, 0, 1).GetInverse(&det);
    EXPECT_EQ(det, 0);
    EXPECT_EQ(inverse, scaled(FLT_MAX, FLT_MAX, FLT_MAX));
    EXPECT_EQ(GfMatrix3d(0).GetInverse(), GfMatrix3d(FLT_MAX));
    EXPECT_EQ(GfMatrix2d(1, 1, 1, 1).GetInverse(), GfMatrix2d(FLT_MAX));
}

TEST(Matrix, InverseTreatsDeterminantsUpToEpsilonAsZero)
{
    const GfMatrix4d m = scaled(0.1, 0.1, 0.1);
    EXPECT_DOUBLE_EQ(m.GetInverse(nullptr, 1e-4)[0][0], 10);
    EXPECT_EQ(m.GetInverse(nullptr, 1e-2)[0][0], FLT_MAX);
}

TEST(Matrix, DeterminantOfAProductIsTheProductOfTheDeterminants)
{
    const GfMatrix4d m = scaled(2, -3, 4) * rotated(GfVec3d(1, 2, 3), 40) * translated(5, 6, 7);
    EXPECT_NEAR(m.GetDeterminant(), -24, 1e-9);
    EXPECT_NEAR(m.GetDeterminant3(), -24, 1e-9);
    EXPECT_TRUE(m.IsLeftHanded());
    EXPECT_EQ(scaled(1, 1, 0).GetHandedness(), 0);
    EXPECT_EQ(GfMatrix2d(1, 2, 3, 4).GetDeterminant(), -2);
}

TEST(Matrix, TransformDividesByWAndDirectionsIgnoreTheTranslation)
{
    GfMatrix4d m = translated(1, 2, 3);
    m[3][3] = 2;
    expectNear(m.Transform(GfVec3d(1, 0, 0)), GfVec3d(1, 1, 1.5));
    expectNear(m.TransformAffine(GfVec3d(1, 0, 0)), GfVec3d(2, 2, 3));
    expectNear(m.TransformDir(GfVec3d(1, 0, 0)), GfVec3d(1, 0, 0));
    m[3][3] = 0; // w 0 counts as 1
    expectNear(m.Transform(GfVec3d(1, 0, 0)), GfVec3d(2, 2, 3));
}

TEST(Matrix, FloatMatricesTransformInTheTypeOfTheVector)
{
    GfMatrix4f m(1);
    m.SetTranslate(GfVec3f(1, 2, 3));
    static_assert(std::is_same_v<decltype(m.Transform(GfVec3f(0))), GfVec3f>);
    static_assert(std::is_same_v<decltype(m.Transform(GfVec3d(0))), GfVec3d>);
    EXPECT_EQ(m.Transform(GfVec3f(1)), GfVec3f(2, 3, 4));
    EXPECT_EQ(m.TransformDir(GfVec3d(1)), GfVec3d(1));
}

TEST(Matrix, SettingOnlyAPartLeavesTheRest)
{
    GfMatrix4d m = rotated(GfVec3d::ZAxis(), 90);
    m.SetTranslateOnly(GfVec3d(1, 2, 3));
    expectNear(m.Transform(GfVec3d(1, 0, 0)), GfVec3d(1, 3, 3));
    m.SetRotateOnly(GfRotation(GfVec3d::ZAxis(), -90));
    expectNear(m.Transform(GfVec3d(1, 0, 0)), GfVec3d(1, 1, 3));
    m.SetRotate(GfRotation(GfVec3d::ZAxis(), 0));
    EXPECT_EQ(m, GfMatrix4d(1));
}

TEST(Matrix, LookAtMapsTheEyeToTheOriginAndTheCenterDownMinusZ)
{
    GfMatrix4d m;
    m.SetLookAt(GfVec3d(1, 2, 3), GfVec3d(1, 2, -7), GfVec3d::YAxis());
    expectNear(m, translated(-1, -2, -3));
    m.SetLookAt(GfVec3d(5, 0, 0), GfVec3d(0, 0, 0), GfVec3d::ZAxis());
    expectNear(m.Transform(GfVec3d(5, 0, 0)), GfVec3d(0, 0, 0));
    expectNear(m.Transform(GfVec3d(0, 0, 0)), GfVec3d(0, 0, -5));
    expectNear(m.TransformDir(GfVec3d::ZAxis()), GfVec3d::YAxis());
}

TEST(Matrix, LookAtByOrientationIsTheInverseOfThePose)
{
    const GfRotation orientation(GfVec3d(1, 2, 0.5), 70);
    GfMatrix4d pose, view;
    pose.SetTransform(orientation, GfVec3d(4, 5, 6));
    view.SetLookAt(GfVec3d(4, 5, 6), orientation);
    expectNear(view, pose.GetInverse());
}

TEST(Matrix, OrthonormalizingRemovesScaleAndDividesTheTranslation)
{
    GfMatrix4d m = scaled(2, 3, 4) * rotated(GfVec3d(1, 1, 0), 30) * translated(2, 4, 6);
    m[3][3] = 2;
    EXPECT_TRUE(m.Orthonormalize(false));
    expectNear(m, rotated(GfVec3d(1, 1, 0), 30) * translated(1, 2, 3), 1e-9);
}

TEST(Matrix, FactorsMultiplyBackToTheMatrix)
{
    Numbers numbers(3);
    for (int i = 0; i != 20; ++i) {
        GfMatrix4d shear(1);
        shear[0][1] = numbers.in(-1, 1);
        GfMatrix4d m = scaled(numbers.in(0.2, 3), numbers.in(0.2, 3), numbers.in(-3, -0.2)) * shear;
        GfMatrix4d pose;
        m *= pose.SetTransform(numbers.rotation(), numbers.vec(10));
        GfMatrix4d r, u, p;
        GfVec3d s, t;
        ASSERT_TRUE(m.Factor(&r, &s, &u, &t, &p));
        GfMatrix4d translation;
        expectNear(r * scaled(s[0], s[1], s[2]) * r.GetTranspose() * u * translation.SetTranslate(t), m,
                   1e-9);
        expectNear(u * u.GetTranspose(), GfMatrix4d(1), 1e-9); // a rotation
    }
}

TEST(Matrix, FactoringASingularMatrixSaysSo)
{
    GfMatrix4d r, u, p;
    GfVec3d s, t;
    EXPECT_FALSE(scaled(1, 0, 1).Factor(&r, &s, &u, &t, &p));
    EXPECT_EQ(scaled(1, 0, 1).RemoveScaleShear(), scaled(1, 0, 1));
}

TEST(Matrix, RemovingScaleAndShearLeavesThePose)
{
    GfMatrix4d pose;
    pose.SetTransform(GfRotation(GfVec3d(1, 2, 3), 50), GfVec3d(7, 8, 9));
    expectNear((scaled(3, 3, 3) * pose).RemoveScaleShear(), pose, 1e-9);
}

TEST(Matrix, ExtractsTheRotationThatItWasSetTo)
{
    Numbers numbers(11);
    for (int i = 0; i != 50; ++i) {
        const GfRotation rotation = numbers.rotation();
        GfMatrix4d m4;
        m4.SetRotate(rotation);
        GfMatrix3d m3(rotation);
        GfMatrix3f m3f(rotation);
        const GfVec3d v = numbers.vec(1);
        expectNear(m4.ExtractRotation().TransformDir(v), m4.TransformDir(v), 1e-9);
        expectNear(m3.ExtractRotation().TransformDir(v), m4.TransformDir(v), 1e-9);
        expectNear(m3f.ExtractRotation().TransformDir(v), m4.TransformDir(v), 1e-5);
        EXPECT_EQ(m4.ExtractRotationMatrix(), m3);
    }
}

TEST(Matrix, ExtractsHalfTurnsWhereTheRealPartVanishes)
{
    for (const GfVec3d& axis : {GfVec3d::XAxis(), GfVec3d::YAxis(), GfVec3d::ZAxis()}) {
        const GfRotation rotation = rotated(axis, 180).ExtractRotation();
        EXPECT_NEAR(rotation.GetAngle(), 180, 1e-6);
        EXPECT_NEAR(std::abs(rotation.GetAxis() * axis), 1, 1e-9);
    }
}

TEST(Matrix, DecomposedAnglesMakeTheRotationAgain)
{
    const GfMatrix4d m =
        rotated(GfVec3d::ZAxis(), 50) * rotated(GfVec3d::YAxis(), -30) * rotated(GfVec3d::XAxis(), 20);
    expectNear(m.DecomposeRotation(GfVec3d::XAxis(), GfVec3d::YAxis(), GfVec3d::ZAxis()),
               GfVec3d(20, -30, 50), 1e-9);
}

TEST(Matrix, IsCloseComparesEachComponent)
{
    GfMatrix4d m(1);
    m[2][1] = 0.01;
    EXPECT_TRUE(GfIsClose(m, GfMatrix4d(1), 0.011));
    EXPECT_FALSE(GfIsClose(m, GfMatrix4d(1), 0.009));
}

TEST(Matrix, WritesItsRows)
{
    EXPECT_EQ(textOf(GfMatrix2d(1, 0.5, -2, 1e20)), "( (1, 0.5), (-2, 1e20) )");
    EXPECT_EQ(textOf(GfMatrix4d(1)), "( (1, 0, 0, 0), (0, 1, 0, 0), (0, 0, 1, 0), (0, 0, 0, 1) )");
}

TEST(Matrix, EqualMatricesHashAlike)
{
    EXPECT_EQ(hash_value(scaled(1, 2, 3)), hash_value(scaled(1, 2, 3)));
    EXPECT_NE(hash_value(scaled(1, 2, 3)), hash_value(scaled(2, 1, 3)));
}

} // namespace
