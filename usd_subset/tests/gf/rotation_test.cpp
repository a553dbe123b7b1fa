#include "test_helpers.h"

#include <pxr/base/gf/quatd.h>
#include <pxr/base/gf/quaternion.h>
#include <pxr/base/gf/quatf.h>
#include <pxr/base/gf/quath.h>
#include <pxr/base/gf/transform.h>

namespace {

// Rodrigues' formula.
GfVec3d rotatedAbout(const GfVec3d& unitAxis, double degrees, const GfVec3d& v)
{
    const double angle = degrees * M_PI / 180;
    return v * std::cos(angle) + GfCross(unitAxis, v) * std::sin(angle) +
           unitAxis * (unitAxis * v) * (1 - std::cos(angle));
}

TEST(Rotation, TurnsCounterClockwiseAboutItsAxis)
{
    Numbers numbers(5);
    for (int i = 0; i != 50; ++i) {
        const GfVec3d axis = numbers.vec(1).GetNormalized();
        const double angle = numbers.in(-720, 720);
        const GfVec3d v = numbers.vec(10);
        expectNear(GfRotation(axis, angle).TransformDir(v), rotatedAbout(axis, angle, v), 1e-9);
    }
}

TEST(Rotation, NormalizesTheAxisAndKeepsTheAngle)
{
    const GfRotation r(GfVec3d(0, 0, 5), 725);
    EXPECT_EQ(r.GetAxis(), GfVec3d(0, 0, 1));
    EXPECT_EQ(r.GetAngle(), 725);
    EXPECT_NE(r, GfRotation(GfVec3d(0, 0, 1), 5));
    EXPECT_EQ(r.GetInverse().GetAngle(), -725);
}

TEST(Rotation, InAProductTheLeftOneAppliesFirst)
{
    const GfRotation x(GfVec3d::XAxis(), 90);
    const GfRotation z(GfVec3d::ZAxis(), 90);
    // +y goes to +z by x, and z leaves it there.
    expectNear((x * z).TransformDir(GfVec3d::YAxis()), GfVec3d::ZAxis());
    expectNear((z * x).TransformDir(GfVec3d::YAxis()), GfVec3d(-1, 0, 0));
}

TEST(Rotation, ProductThatIsTheIdentityKeepsTheAxis)
{
    const GfRotation r(GfVec3d(1, 2, 2), 35);
    const GfRotation identity = r * r.GetInverse();
    EXPECT_EQ(identity.GetAngle(), 0);
    EXPECT_EQ(identity.GetAxis(), r.GetAxis());
}

TEST(Rotation, ProductWithAnAngleThatIsNoNumberIsNone)
{
    const GfRotation r = GfRotation(GfVec3d::XAxis(), 10) * GfRotation(GfVec3d::YAxis(), std::nan(""));
    EXPECT_TRUE(r.GetAngle() == 0 || std::isnan(r.GetAngle()));
    EXPECT_TRUE(std::isnan(GfRotation(GfVec3d::YAxis(), std::nan("")).TransformDir(GfVec3d(1))[0]));
}

TEST(Rotation, RotateIntoBringsOneDirectionOntoTheOther)
{
    Numbers numbers(9);
    for (int i = 0; i != 50; ++i) {
        const GfVec3d from = numbers.vec(3);
        const GfVec3d to = numbers.vec(3);
        expectNear(GfRotation(from, to).TransformDir(from.GetNormalized()), to.GetNormalized(), 1e-6);
    }
}

TEST(Rotation, RotateIntoHandlesParallelAndOppositeDirections)
{
    EXPECT_EQ(GfRotation(GfVec3d(2, 0, 0), GfVec3d(3, 0, 0)).GetAngle(), 0);
    for (const GfVec3d& v : {GfVec3d(1, 0, 0), GfVec3d(0, 1, 0), GfVec3d(1, 2, 3)}) {
        const GfRotation r(v, -v);
        EXPECT_EQ(r.GetAngle(), 180);
        EXPECT_NEAR(r.GetAxis() * v, 0, 1e-9);
    }
}

TEST(Rotation, QuaternionHoldsHalfTheAngle)
{
    const GfQuatd q = GfRotation(GfVec3d(0, 3, 4), 60).GetQuat();
    EXPECT_NEAR(q.GetReal(), std::cos(M_PI / 6), 1e-12);
    expectNear(q.GetImaginary(), GfVec3d(0, 0.3, 0.4));
    const GfRotation back(q);
    EXPECT_NEAR(back.GetAngle(), 60, 1e-9);
    expectNear(back.GetAxis(), GfVec3d(0, 0.6, 0.8));
    EXPECT_EQ(GfRotation(GfQuatd(1)).GetAxis(), GfVec3d::XAxis()); // no axis: that of the identity
}

TEST(Rotation, RotateOntoProjectedLooksAlongTheAxis)
{
    const GfRotation r =
        GfRotation::RotateOntoProjected(GfVec3d(1, 0, 5), GfVec3d(0, 2, -3), GfVec3d(0, 0, 2));
    EXPECT_NEAR(r.GetAngle(), 90, 1e-9);
    expectNear(r.GetAxis(), GfVec3d::ZAxis());
    // Nothing is left of a vector along the axis.
    EXPECT_EQ(
        GfRotation::RotateOntoProjected(GfVec3d(0, 0, 1), GfVec3d(1, 0, 0), GfVec3d::ZAxis()).GetAngle(), 0);
}

TEST(Rotation, DecomposeUndoesThreeTurns)
{
    // The last axis turns first.
    const GfRotation r = GfRotation(GfVec3d::YAxis(), -40) * GfRotation(GfVec3d::XAxis(), 25) *
                         GfRotation(GfVec3d::ZAxis(), 15);
    expectNear(r.Decompose(GfVec3d::ZAxis(), GfVec3d::XAxis(), GfVec3d::YAxis()), GfVec3d(15, 25, -40), 1e-9);
}

TEST(Rotation, FullDecompositionGivesTheAnglesNearestToTheHint)
{
    const GfVec3d tw = GfVec3d::ZAxis(), fb = GfVec3d::XAxis(), lr = GfVec3d::YAxis();
    const double degrees = M_PI / 180;
    GfMatrix4d m;
    m.SetRotate(GfRotation(tw, 15) * GfRotation(fb, 25) * GfRotation(lr, -40));
    double thetaTw, thetaFB, thetaLR;
    GfRotation::DecomposeRotation(m, tw, fb, lr, 1, &thetaTw, &thetaFB, &thetaLR);
    expectNear(GfVec3d(thetaTw, thetaFB, thetaLR) / degrees, GfVec3d(15, 25, -40), 1e-9);

    thetaTw = 370 * degrees;
    thetaFB = 0;
    thetaLR = 350 * degrees;
    GfRotation::DecomposeRotation(m, tw, fb, lr, 1, &thetaTw, &thetaFB, &thetaLR, nullptr, true);
    expectNear(GfVec3d(thetaTw, thetaFB, thetaLR) / degrees, GfVec3d(375, 25, 320), 1e-9);
}

TEST(Rotation, MatchingAnglesAddsFullTurns)
{
    double tw = 0.5, lr = -20;
    GfRotation::MatchClosestEulerRotation(4 * M_PI, 0, 0, 0, &tw, nullptr, &lr, nullptr);
    EXPECT_NEAR(tw, 0.5 + 4 * M_PI, 1e-12);
    EXPECT_NEAR(lr, -20 + 6 * M_PI, 1e-12);
}

TEST(Quat, ProductRotatesByTheRightFactorFirst)
{
    const GfQuatd x = GfRotation(GfVec3d::XAxis(), 90).GetQuat();
    const GfQuatd z = GfRotation(GfVec3d::ZAxis(), 90).GetQuat();
    expectNear((z * x).Transform(GfVec3d::YAxis()), GfVec3d::ZAxis());
}

TEST(Quat, MultipliesAsHamiltonSays)
{
    const GfQuatd i(0, 1, 0, 0), j(0, 0, 1, 0), k(0, 0, 0, 1);
    EXPECT_EQ(i * j, k);
    EXPECT_EQ(j * i, -k);
    EXPECT_EQ(i * i, GfQuatd(-1));
    EXPECT_EQ(GfDot(GfQuatd(1, 2, 3, 4), GfQuatd(5, 6, 7, 8)), 70);
    EXPECT_EQ(GfQuaternion(0, GfVec3d(1, 0, 0)) * GfQuaternion(0, GfVec3d(0, 1, 0)),
              GfQuaternion(0, GfVec3d(0, 0, 1)));
}

TEST(Quat, InverseUndoesTheQuaternion)
{
    const GfQuatd q(1, 2, 3, 4);
    const GfQuatd one = q * q.GetInverse();
    EXPECT_NEAR(one.GetReal(), 1, 1e-12);
    expectNear(one.GetImaginary(), GfVec3d(0));
    EXPECT_EQ(q.GetConjugate(), GfQuatd(1, -2, -3, -4));
}

TEST(Quat, NormalizingNothingGivesTheIdentity)
{
    EXPECT_EQ(GfQuatd(0).GetNormalized(), GfQuatd::GetIdentity());
    EXPECT_NEAR(GfQuatf(1, 1, 1, 1).GetNormalized().GetReal(), 0.5f, 1e-6f);
}

TEST(Quat, SlerpTakesTheShorterArc)
{
    const GfQuatd a = GfRotation(GfVec3d::YAxis(), 10).GetQuat();
    const GfQuatd b = GfRotation(GfVec3d::YAxis(), 50).GetQuat();
    EXPECT_NEAR(GfRotation(GfSlerp(0.25, a, b)).GetAngle(), 20, 1e-9);
    EXPECT_NEAR(GfRotation(GfSlerp(0.25, a, -b)).GetAngle(), 20, 1e-9);
}

TEST(Quat, ConvertsBetweenComponentTypes)
{
    const GfQuatf f(GfQuatd(0.1, 0.2, 0.3, 0.4));
    EXPECT_EQ(f.GetReal(), 0.1f);
    const GfQuatd d = f; // nothing is lost
    EXPECT_EQ(d.GetImaginary()[2], double(0.4f));
    EXPECT_EQ(float(GfQuath(f).GetReal()), float(GfHalf(0.1f)));
}

TEST(Transform, MatrixScalesThenRotatesAboutThePivotThenTranslates)
{
    GfTransform t;
    t.SetScale(GfVec3d(2, 1, 1));
    t.SetRotation(GfRotation(GfVec3d::ZAxis(), 90));
    t.SetPivotPosition(GfVec3d(1, 0, 0));
    t.SetTranslation(GfVec3d(0, 0, 7));
    // (2, 0, 0) is 1 from the pivot along x: 2 after the scale, then upwards.
    expectNear(t.GetMatrix().Transform(GfVec3d(2, 0, 0)), GfVec3d(1, 2, 7));
}

TEST(Transform, PartsOfAMatrixMakeItAgain)
{
    Numbers numbers(21);
    for (int i = 0; i != 20; ++i) {
        const GfTransform original(GfVec3d(numbers.in(0.5, 2), numbers.in(0.5, 2), numbers.in(0.5, 2)),
                                   numbers.rotation(), numbers.rotation(), numbers.vec(3), numbers.vec(5));
        GfTransform split;
        split.SetCenter(original.GetCenter());
        split.SetMatrix(original.GetMatrix());
        expectNear(split.GetMatrix(), original.GetMatrix(), 1e-9);
    }
}

} // namespace
