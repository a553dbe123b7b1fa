#include <pxr/base/gf/bbox3d.h>
#include <pxr/base/gf/math.h>

#include <cmath>
#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

void GfBBox3d::_SetMatrices(const GfMatrix4d& matrix)
{
    constexpr double kSmallestDeterminant = 1.0e-13;
    double det = 0.0;
    _matrix = matrix;
    _inverse = matrix.GetInverse(&det, kSmallestDeterminant);
    _isDegenerate = GfAbs(det) <= kSmallestDeterminant;
    if (_isDegenerate) {
        _inverse.SetIdentity();
    }
}

double GfBBox3d::GetVolume() const
{
    if (_box.IsEmpty()) {
        return 0.0;
    }
    const GfVec3d size = _box.GetSize();
    return std::fabs(_matrix.GetDeterminant3() * size[0] * size[1] * size[2]);
}

GfRange3d GfBBox3d::ComputeAlignedRange() const
{
    if (_box.IsEmpty()) {
        return _box;
    }
    // Each coordinate of a transformed corner is a sum with one term for each axis, so that its extremes are
    // the sums of the terms' extremes.
    GfVec3d min = _matrix.ExtractTranslation();
    GfVec3d max = min;
    for (int column = 0; column != 3; ++column) {
        for (int axis = 0; axis != 3; ++axis) {
            const double a = _box.GetMin()[axis] * _matrix[axis][column];
            const double b = _box.GetMax()[axis] * _matrix[axis][column];
            min[column] += a < b ? a : b;
            max[column] += a < b ? b : a;
        }
    }
    return GfRange3d(min, max);
}

GfBBox3d GfBBox3d::Combine(const GfBBox3d& b1, const GfBBox3d& b2)
{
    GfBBox3d result;
    if (b1._box.IsEmpty()) {
        result = b2;
    } else if (b2._box.IsEmpty()) {
        result = b1;
    } else if (b1._isDegenerate && b2._isDegenerate) {
        result = GfBBox3d(GfRange3d::GetUnion(b1.ComputeAlignedRange(), b2.ComputeAlignedRange()));
    } else if (b1._isDegenerate) {
        result = _CombineInOrder(b2, b1);
    } else if (b2._isDegenerate) {
        result = _CombineInOrder(b1, b2);
    } else {
        const GfBBox3d in1 = _CombineInOrder(b1, b2);
        const GfBBox3d in2 = _CombineInOrder(b2, b1);
        const double v1 = in1.GetVolume();
        const double v2 = in2.GetVolume();
        // Rounding must not decide between spaces that are equally good.
        const double tolerance = GfMax(1e-10, 1e-6 * GfAbs(GfMax(v1, v2)));
        result = (GfAbs(v1 - v2) <= tolerance || v1 < v2) ? in1 : in2;
    }
    result.SetHasZeroAreaPrimitives(b1.HasZeroAreaPrimitives() || b2.HasZeroAreaPrimitives());
    return result;
}

GfBBox3d GfBBox3d::_CombineInOrder(const GfBBox3d& b1, const GfBBox3d& b2)
{
    GfBBox3d b2InSpaceOf1;
    b2InSpaceOf1._box = b2._box;
    b2InSpaceOf1._matrix = b2._matrix * b1._inverse;

    GfBBox3d result = b1;
    result._box.UnionWith(b2InSpaceOf1.ComputeAlignedRange());
    return result;
}

GfVec3d GfBBox3d::ComputeCentroid() const { return _matrix.Transform(.5 * (_box.GetMax() + _box.GetMin())); }

std::ostream& operator<<(std::ostream& out, const GfBBox3d& b)
{
    return out << "[(" << b.GetRange() << ") (" << b.GetMatrix() << ") "
               << (b.HasZeroAreaPrimitives() ? "true" : "false") << ']';
}

PXR_NAMESPACE_CLOSE_SCOPE
