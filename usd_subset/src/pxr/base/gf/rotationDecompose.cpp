#include <pxr/base/gf/math.h>
#include <pxr/base/gf/matrix3d.h>
#include <pxr/base/gf/rotation.h>
#include <pxr/base/tf/diagnostic.h>

#include <cmath>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

constexpr double kEpsilon = 1e-6;

// Four angles in radians in the order in which they apply: twist, front-back, left-right, swing.
enum Angle
{
    Tw,
    FB,
    LR,
    Sw,
    None
};

// Angles that the caller owns; one that is null is 0 here and what is written to it is lost.
class Angles
{
public:
    Angles(double* tw, double* fb, double* lr, double* sw) : _angles{tw, fb, lr, sw}
    {
        for (int i = 0; i != 4; ++i) {
            if (!_angles[i]) {
                _angles[i] = &_standIn;
                _absent = static_cast<Angle>(i);
                ++_absentCount;
            }
        }
    }
    Angles(const Angles&) = delete;
    Angles& operator=(const Angles&) = delete;

    double& operator[](int i) { return *_angles[i]; }
    double* OrNull(int i) const { return _angles[i] == &_standIn ? nullptr : _angles[i]; }
    /// The last angle that is null, None without.
    Angle Absent() const { return _absent; }
    int AbsentCount() const { return _absentCount; }
    GfVec4d Get() const { return GfVec4d(*_angles[0], *_angles[1], *_angles[2], *_angles[3]); }
    void Set(const GfVec4d& values)
    {
        for (int i = 0; i != 4; ++i) {
            *_angles[i] = values[i];
        }
    }

private:
    double* _angles[4];
    double _standIn = 0.0;
    Angle _absent = None;
    int _absentCount = 0;
};

// Adds full turns to an angle until it is within half a turn of its target.
double NearestTurn(double target, double angle)
{
    constexpr double kTurn = 2.0 * M_PI;
    constexpr double kFarAway = 1000 * kTurn;
    const double distance = angle - target;
    if (!std::isfinite(distance)) {
        return angle;
    }
    if (std::fabs(distance) > kFarAway) {
        angle = target + std::remainder(distance, kTurn); // one turn at a time could take for ever
    }
    while (angle > target + M_PI) {
        angle -= kTurn;
    }
    while (angle < target - M_PI) {
        angle += kTurn;
    }
    return angle;
}

GfVec4d NearestTurns(const GfVec4d& targets, const GfVec4d& angles)
{
    GfVec4d nearest;
    for (int i = 0; i != 4; ++i) {
        nearest[i] = NearestTurn(targets[i], angles[i]);
    }
    return nearest;
}

double HalfTurned(double angle) { return angle + (angle > 0 ? -M_PI : M_PI); }

// The angles that make the same rotation. Half a turn about an axis mirrors the two others, so that half
// turns of three neighbouring angles cancel once the middle one changes sign; an absent angle must stay 0.
int EquivalentAngles(const GfVec4d& a, Angle absent, GfVec4d results[4])
{
    const GfVec4d half(HalfTurned(a[Tw]), HalfTurned(a[FB]), HalfTurned(a[LR]), HalfTurned(a[Sw]));
    const GfVec4d firstThree(half[Tw], -half[FB], half[LR], a[Sw]);
    const GfVec4d lastThree(a[Tw], half[FB], -half[LR], half[Sw]);
    const GfVec4d both(half[Tw], -a[FB], -a[LR], half[Sw]);
    results[0] = a;
    switch (absent) {
    case Tw:
        results[1] = lastThree;
        return 2;
    case FB:
    case LR:
        results[1] = both;
        return 2;
    case Sw:
        results[1] = firstThree;
        return 2;
    case None:
        break;
    }
    results[1] = firstThree;
    results[2] = both;
    results[3] = lastThree;
    return 4;
}

double SumOfDistances(const GfVec4d& a, const GfVec4d& b)
{
    double sum = 0.0;
    for (int i = 0; i != 4; ++i) {
        sum += std::fabs(a[i] - b[i]);
    }
    return sum;
}

// Where the middle of three angles makes the outer axes coincide, only the sum or the difference of the outer
// angles counts: both get half of it.
void ShareGimbalLock(double middle, double* first, double* last)
{
    if (std::fabs(std::fabs(middle) - M_PI) < kEpsilon) {
        const double difference = *last - *first;
        *last = difference / 2;
        *first = -difference / 2;
    }
    if (std::fabs(middle) < kEpsilon) {
        const double sum = *last + *first;
        *last = sum / 2;
        *first = sum / 2;
    }
}

// Rotates a frame back onto its axes, one axis at a time, and keeps the angles.
class Unwinding
{
public:
    Unwinding(const GfMatrix4d& rotation, double handedness) : _rotation(rotation), _handedness(handedness) {}

    // Rotates about an axis so that the moved vector comes onto the target, seen along the axis.
    void Rotate(const GfVec3d& vector, const GfVec3d& target, const GfVec3d& axis, double* radians)
    {
        const GfVec3d moved = _back.TransformDir(_rotation.TransformDir(vector));
        const GfRotation step = GfRotation::RotateOntoProjected(moved, target, axis);
        GfMatrix4d matrix;
        _back = _back * matrix.SetRotate(step);
        *radians = step.GetAngle() / (180.0 / M_PI) * -_handedness;
    }

private:
    GfMatrix4d _rotation;
    double _handedness;
    GfMatrix4d _back{1.0};
};

} // namespace

void GfRotation::MatchClosestEulerRotation(double targetTw, double targetFB, double targetLR, double targetSw,
                                           double* thetaTw, double* thetaFB, double* thetaLR, double* thetaSw)
{
    Angles angles(thetaTw, thetaFB, thetaLR, thetaSw);
    const GfVec4d targets(targetTw, targetFB, targetLR, targetSw);
    if (angles.AbsentCount() == 4) {
        return;
    }
    if (angles.AbsentCount() > 1) {
        angles.Set(NearestTurns(targets, angles.Get()));
        return;
    }
    GfVec4d candidates[4];
    const int count = EquivalentAngles(angles.Get(), angles.Absent(), candidates);
    int nearest = 0;
    double nearestSum = 0.0;
    for (int i = 0; i != count; ++i) {
        candidates[i] = NearestTurns(targets, candidates[i]);
        const double sum = SumOfDistances(candidates[i], targets);
        if (i == 0 || sum < nearestSum) {
            nearest = i;
            nearestSum = sum;
        }
    }
    angles.Set(candidates[nearest]);
}

void GfRotation::DecomposeRotation(const GfMatrix4d& rot, const GfVec3d& TwAxis, const GfVec3d& FBAxis,
                                   const GfVec3d& LRAxis, double handedness, double* thetaTw, double* thetaFB,
                                   double* thetaLR, double* thetaSw, bool useHint, const double* swShift)
{
    Angles angles(thetaTw, thetaFB, thetaLR, thetaSw);
    if (angles.AbsentCount() > 1) {
        TF_CODING_ERROR("Need three angles to correctly decompose rotation");
        return;
    }
    const Angle absent = angles.Absent();
    if (swShift && absent != None) {
        TF_WARN("A swing shift was provided but we're not decomposing into four angles.  "
                "The swing shift will be ignored.");
    }
    const GfVec4d hint = useHint ? angles.Get() : GfVec4d(0.0);

    Unwinding unwinding(rot, handedness);
    switch (absent) {
    case Sw:
    case None:
        unwinding.Rotate(TwAxis, TwAxis, LRAxis, &angles[LR]);
        unwinding.Rotate(TwAxis, TwAxis, FBAxis, &angles[FB]);
        unwinding.Rotate(FBAxis, FBAxis, TwAxis, &angles[Tw]);
        angles[Sw] = swShift ? *swShift : 0.0;
        break;
    case Tw:
        unwinding.Rotate(FBAxis, FBAxis, TwAxis, &angles[Sw]);
        unwinding.Rotate(FBAxis, FBAxis, LRAxis, &angles[LR]);
        unwinding.Rotate(TwAxis, TwAxis, FBAxis, &angles[FB]);
        break;
    case FB:
        unwinding.Rotate(TwAxis, FBAxis, TwAxis, &angles[Sw]);
        unwinding.Rotate(TwAxis, TwAxis, LRAxis, &angles[LR]);
        unwinding.Rotate(FBAxis, FBAxis, TwAxis, &angles[Tw]);
        break;
    case LR:
        unwinding.Rotate(TwAxis, LRAxis, TwAxis, &angles[Sw]);
        unwinding.Rotate(TwAxis, TwAxis, FBAxis, &angles[FB]);
        unwinding.Rotate(FBAxis, FBAxis, TwAxis, &angles[Tw]);
        break;
    }

    MatchClosestEulerRotation(hint[Tw], hint[FB], hint[LR], hint[Sw], angles.OrNull(Tw), angles.OrNull(FB),
                              angles.OrNull(LR), angles.OrNull(Sw));

    GfMatrix3d basis(1);
    basis.SetRow(0, TwAxis);
    basis.SetRow(1, FBAxis);
    basis.SetRow(2, LRAxis);
    const double quarter = M_PI / 2 * basis.GetHandedness();
    switch (absent) {
    case None:
    case Sw:
        ShareGimbalLock(angles[FB] + quarter, &angles[Tw], &angles[LR]);
        break;
    case Tw:
        ShareGimbalLock(angles[LR] + quarter, &angles[FB], &angles[Sw]);
        break;
    case FB:
        ShareGimbalLock(angles[LR], &angles[Tw], &angles[Sw]);
        break;
    case LR:
        ShareGimbalLock(angles[FB], &angles[Tw], &angles[Sw]);
        break;
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
