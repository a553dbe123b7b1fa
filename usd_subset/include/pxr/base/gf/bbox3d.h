#pragma once

/// GfBBox3d: a box with a place of its own.

#include <pxr/base/gf/api.h>
#include <pxr/base/gf/hashCombine.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/range3d.h>
#include <pxr/pxr.h>

#include <iosfwd>

PXR_NAMESPACE_OPEN_SCOPE

/// An axis-aligned range and the matrix that puts it into place. Growing by each step of a hierarchy is
/// avoided: transformations only change the matrix, and ComputeAlignedRange() is called once at the end.
class VESK_USD_API GfBBox3d
{
public:
    /// Makes an empty box.
    GfBBox3d() : _matrix(1.0), _inverse(1.0) {}
    GfBBox3d(const GfRange3d& box) : _box(box), _matrix(1.0), _inverse(1.0) {}
    GfBBox3d(const GfRange3d& box, const GfMatrix4d& matrix) { Set(box, matrix); }

    void Set(const GfRange3d& box, const GfMatrix4d& matrix)
    {
        _box = box;
        _SetMatrices(matrix);
    }
    void SetMatrix(const GfMatrix4d& matrix) { _SetMatrices(matrix); }
    void SetRange(const GfRange3d& box) { _box = box; }

    const GfRange3d& GetRange() const { return _box; }
    const GfRange3d& GetBox() const { return GetRange(); }
    const GfMatrix4d& GetMatrix() const { return _matrix; }
    /// Returns the matrix's inverse, the identity where it has none.
    const GfMatrix4d& GetInverseMatrix() const { return _inverse; }

    /// \name Whether the box holds points or lines, which have no area; intersections may want to be generous
    /// then
    /// @{
    void SetHasZeroAreaPrimitives(bool hasThem) { _hasZeroAreaPrimitives = hasThem; }
    bool HasZeroAreaPrimitives() const { return _hasZeroAreaPrimitives; }
    /// @}

    /// Returns the volume in place, 0 for an empty box.
    double GetVolume() const;
    /// Appends a transformation to the matrix.
    void Transform(const GfMatrix4d& matrix) { _SetMatrices(_matrix * matrix); }
    /// Returns the smallest axis-aligned range around the box in place.
    GfRange3d ComputeAlignedRange() const;
    GfRange3d ComputeAlignedBox() const { return ComputeAlignedRange(); }
    /// Returns a box around both, in the space of that of the two which makes it smaller.
    static GfBBox3d Combine(const GfBBox3d& b1, const GfBBox3d& b2);
    /// Returns the middle of the box in place.
    GfVec3d ComputeCentroid() const;

    friend inline size_t hash_value(const GfBBox3d& b) { return Gf_HashCombine(b._box, b._matrix); }
    /// Compares range and matrix, not the places.
    bool operator==(const GfBBox3d& b) const { return _box == b._box && _matrix == b._matrix; }
    bool operator!=(const GfBBox3d& that) const { return !(*this == that); }

private:
    void _SetMatrices(const GfMatrix4d& matrix);
    static GfBBox3d _CombineInOrder(const GfBBox3d& b1, const GfBBox3d& b2);

    GfRange3d _box;
    GfMatrix4d _matrix;
    GfMatrix4d _inverse;
    bool _isDegenerate = false;
    bool _hasZeroAreaPrimitives = false;
};

/// Writes [(range) (matrix) true|false].
VESK_USD_API std::ostream& operator<<(std::ostream& out, const GfBBox3d& b);

PXR_NAMESPACE_CLOSE_SCOPE
