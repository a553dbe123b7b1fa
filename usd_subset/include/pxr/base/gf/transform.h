#pragma once

/// GfTransform: a transformation in parts.

#include <pxr/base/gf/api.h>
#include <pxr/base/gf/rotation.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/pxr.h>

#include <iosfwd>

PXR_NAMESPACE_OPEN_SCOPE

class GfMatrix4d;

/// Scales about a pivot along the axes of an orientation, then rotates about the pivot, then translates.
class VESK_USD_API GfTransform
{
public:
    /// Makes the identity.
    GfTransform() { SetIdentity(); }
    GfTransform(const GfVec3d& scale, const GfRotation& pivotOrientation, const GfRotation& rotation,
                const GfVec3d& pivotPosition, const GfVec3d& translation)
    {
        Set(scale, pivotOrientation, rotation, pivotPosition, translation);
    }
    GfTransform(const GfVec3d& translation, const GfRotation& rotation, const GfVec3d& scale,
                const GfVec3d& pivotPosition, const GfRotation& pivotOrientation)
    {
        Set(translation, rotation, scale, pivotPosition, pivotOrientation);
    }
    GfTransform(const GfMatrix4d& m)
    {
        SetIdentity();
        SetMatrix(m);
    }

    GfTransform& Set(const GfVec3d& scale, const GfRotation& pivotOrientation, const GfRotation& rotation,
                     const GfVec3d& pivotPosition, const GfVec3d& translation);
    GfTransform& Set(const GfVec3d& translation, const GfRotation& rotation, const GfVec3d& scale,
                     const GfVec3d& pivotPosition, const GfRotation& pivotOrientation)
    {
        return Set(scale, pivotOrientation, rotation, pivotPosition, translation);
    }
    /// Splits a matrix (without its projection) into the parts; the pivot stays.
    GfTransform& SetMatrix(const GfMatrix4d& m);
    GfTransform& SetIdentity();

    /// \name The parts
    /// @{
    void SetScale(const GfVec3d& scale) { _scale = scale; }
    void SetPivotOrientation(const GfRotation& pivotOrient) { _pivotOrientation = pivotOrient; }
    void SetScaleOrientation(const GfRotation& pivotOrient) { SetPivotOrientation(pivotOrient); }
    void SetRotation(const GfRotation& rotation) { _rotation = rotation; }
    void SetPivotPosition(const GfVec3d& pivPos) { _pivotPosition = pivPos; }
    void SetCenter(const GfVec3d& pivPos) { SetPivotPosition(pivPos); }
    void SetTranslation(const GfVec3d& translation) { _translation = translation; }

    const GfVec3d& GetScale() const { return _scale; }
    const GfRotation& GetPivotOrientation() const { return _pivotOrientation; }
    const GfRotation& GetScaleOrientation() const { return GetPivotOrientation(); }
    const GfRotation& GetRotation() const { return _rotation; }
    const GfVec3d& GetPivotPosition() const { return _pivotPosition; }
    const GfVec3d& GetCenter() const { return GetPivotPosition(); }
    const GfVec3d& GetTranslation() const { return _translation; }
    /// @}

    /// Returns the whole as one matrix.
    GfMatrix4d GetMatrix() const;

    bool operator==(const GfTransform& xf) const
    {
        return _scale == xf._scale && _pivotOrientation == xf._pivotOrientation &&
               _rotation == xf._rotation && _pivotPosition == xf._pivotPosition &&
               _translation == xf._translation;
    }
    bool operator!=(const GfTransform& xf) const { return !(*this == xf); }

    /// Appends a transformation.
    GfTransform& operator*=(const GfTransform& xf);
    friend GfTransform operator*(const GfTransform& xf1, const GfTransform& xf2)
    {
        return GfTransform(xf1) *= xf2;
    }

private:
    GfVec3d _translation;
    GfRotation _rotation;
    GfVec3d _scale;
    GfRotation _pivotOrientation;
    GfVec3d _pivotPosition;
};

/// Writes the parts as 4-component vectors: scale, its orientation, rotation, pivot, translation.
VESK_USD_API std::ostream& operator<<(std::ostream& out, const GfTransform& xf);

PXR_NAMESPACE_CLOSE_SCOPE
