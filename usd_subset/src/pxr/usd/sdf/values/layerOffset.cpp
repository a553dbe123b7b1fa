#include <pxr/usd/sdf/layerOffset.h>

#include <pxr/base/tf/hash.h>
#include <pxr/base/tf/registryManager.h>
#include <pxr/base/tf/type.h>
#include <pxr/usd/sdf/timeCode.h>

#include <cmath>
#include <limits>
#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

TF_REGISTRY_FUNCTION(TfType)
{
    TfType::Define<SdfLayerOffset>();
    TfType::Define<SdfLayerOffsetVector>();
}

namespace {

bool IsClose(double a, double b) { return std::abs(a - b) < 1e-6; }

} // namespace

bool SdfLayerOffset::IsIdentity() const { return *this == SdfLayerOffset(); }

bool SdfLayerOffset::IsValid() const { return std::isfinite(_offset) && std::isfinite(_scale); }

SdfLayerOffset SdfLayerOffset::GetInverse() const
{
    if (IsIdentity()) {
        return *this;
    }
    const double scale = _scale != 0.0 ? 1.0 / _scale : std::numeric_limits<double>::infinity();
    return SdfLayerOffset(-_offset * scale, scale);
}

size_t SdfLayerOffset::GetHash() const { return TfHash::Combine(_offset, _scale); }

bool SdfLayerOffset::operator==(const SdfLayerOffset& rhs) const
{
    return (!IsValid() && !rhs.IsValid()) || (IsClose(_offset, rhs._offset) && IsClose(_scale, rhs._scale));
}

bool SdfLayerOffset::operator<(const SdfLayerOffset& rhs) const
{
    if (!IsValid() || !rhs.IsValid()) {
        return IsValid();
    }
    if (!IsClose(_scale, rhs._scale)) {
        return _scale < rhs._scale;
    }
    return !IsClose(_offset, rhs._offset) && _offset < rhs._offset;
}

SdfLayerOffset SdfLayerOffset::operator*(const SdfLayerOffset& rhs) const
{
    return SdfLayerOffset(_scale * rhs._offset + _offset, _scale * rhs._scale);
}

double SdfLayerOffset::operator*(double time) const { return time * _scale + _offset; }

SdfTimeCode SdfLayerOffset::operator*(const SdfTimeCode& time) const
{
    return SdfTimeCode(*this * time.GetValue());
}

std::ostream& operator<<(std::ostream& out, const SdfLayerOffset& offset)
{
    return out << "SdfLayerOffset(" << offset.GetOffset() << ", " << offset.GetScale() << ")";
}

PXR_NAMESPACE_CLOSE_SCOPE
