#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/transform.h>

#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

GfTransform& GfTransform::Set(const GfVec3d& scale, const GfRotation& pivotOrientation,
                              const GfRotation& rotation, const GfVec3d& pivotPosition,
                              const GfVec3d& translation)
{
    _scale = scale;
    _pivotOrientation = pivotOrientation;
    _rotation = rotation;
    _pivotPosition = pivotPosition;
    _translation = translation;
    return *this;
}

GfTransform& GfTransform::SetMatrix(const GfMatrix4d& m)
{
    // m = toOrigin * aboutOrigin * fromOrigin, where the translations are by -pivot and by the pivot.
    GfMatrix4d toPivot, fromPivot;
    toPivot.SetTranslate(_pivotPosition);
    fromPivot.SetTranslate(-_pivotPosition);
    const GfMatrix4d aboutOrigin = toPivot * m * fromPivot;

    // A singular matrix still has usable parts.
    GfMatrix4d scaleOrientation, rotation, projection;
    aboutOrigin.Factor(&scaleOrientation, &_scale, &rotation, &_translation, &projection);
    _rotation = rotation.ExtractRotation();
    if (_scale != GfVec3d(1.0)) {
        _pivotOrientation = scaleOrientation.GetTranspose().ExtractRotation();
    } else {
        _pivotOrientation.SetIdentity();
    }
    return *this;
}

GfTransform& GfTransform::SetIdentity()
{
    _scale = GfVec3d(1.0);
    _pivotOrientation.SetIdentity();
    _rotation.SetIdentity();
    _pivotPosition = GfVec3d(0.0);
    _translation = GfVec3d(0.0);
    return *this;
}

GfMatrix4d GfTransform::GetMatrix() const
{
    const bool hasPivot = _pivotPosition != GfVec3d(0.0);
    // Only the parts that do anything are multiplied, which keeps the others' numbers exact.
    GfMatrix4d product(1.0);
    GfMatrix4d part;
    if (hasPivot) {
        product = part.SetTranslate(-_pivotPosition);
    }
    if (_scale != GfVec3d(1.0)) {
        const bool hasOrientation = _pivotOrientation.GetAngle() != 0.0;
        if (hasOrientation) {
            product *= part.SetRotate(_pivotOrientation.GetInverse());
        }
        product *= part.SetScale(_scale);
        if (hasOrientation) {
            product *= part.SetRotate(_pivotOrientation);
        }
    }
    if (_rotation.GetAngle() != 0.0) {
        product *= part.SetRotate(_rotation);
    }
    if (hasPivot) {
        product *= part.SetTranslate(_pivotPosition);
    }
    if (_translation != GfVec3d(0.0)) {
        product *= part.SetTranslate(_translation);
    }
    return product;
}

GfTransform& GfTransform::operator*=(const GfTransform& xf)
{
    return SetMatrix(GetMatrix() * xf.GetMatrix());
}

namespace {

// With the stream's own precision.
void Write(std::ostream& out, const GfVec3d& v, double fourth)
{
    out << '(' << v[0] << ", " << v[1] << ", " << v[2] << ", " << fourth << ')';
}

} // namespace

std::ostream& operator<<(std::ostream& out, const GfTransform& xf)
{
    out << "( ";
    Write(out, xf.GetScale(), 0);
    out << ", ";
    Write(out, xf.GetPivotOrientation().GetAxis(), xf.GetPivotOrientation().GetAngle());
    out << ", ";
    Write(out, xf.GetRotation().GetAxis(), xf.GetRotation().GetAngle());
    out << ", ";
    Write(out, xf.GetPivotPosition(), 0);
    out << ", ";
    Write(out, xf.GetTranslation(), 0);
    return out << " )";
}

PXR_NAMESPACE_CLOSE_SCOPE
