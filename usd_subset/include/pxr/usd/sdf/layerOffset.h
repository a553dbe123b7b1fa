#pragma once

/// How the time of one layer maps to that of another.

#include <pxr/export.h>
#include <pxr/pxr.h>

#include <iosfwd>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

class SdfTimeCode;

/// Maps a time to scale * time + offset. Offsets within 1e-6 of each other are equal, all invalid ones too.
class SdfLayerOffset
{
public:
    explicit SdfLayerOffset(double offset = 0.0, double scale = 1.0) : _offset(offset), _scale(scale) {}

    double GetOffset() const { return _offset; }
    double GetScale() const { return _scale; }
    void SetOffset(double offset) { _offset = offset; }
    void SetScale(double scale) { _scale = scale; }

    VESK_USD_API bool IsIdentity() const;
    /// Returns whether both numbers are finite.
    VESK_USD_API bool IsValid() const;
    VESK_USD_API SdfLayerOffset GetInverse() const;

    VESK_USD_API size_t GetHash() const;
    struct Hash
    {
        size_t operator()(const SdfLayerOffset& offset) const { return offset.GetHash(); }
    };
    friend size_t hash_value(const SdfLayerOffset& offset) { return offset.GetHash(); }

    VESK_USD_API bool operator==(const SdfLayerOffset& rhs) const;
    bool operator!=(const SdfLayerOffset& rhs) const { return !(*this == rhs); }
    /// Orders by scale, then by offset; invalid ones last.
    VESK_USD_API bool operator<(const SdfLayerOffset& rhs) const;
    bool operator>(const SdfLayerOffset& rhs) const { return rhs < *this; }
    bool operator>=(const SdfLayerOffset& rhs) const { return !(*this < rhs); }
    bool operator<=(const SdfLayerOffset& rhs) const { return !(*this > rhs); }

    /// Returns the map that applies rhs first.
    VESK_USD_API SdfLayerOffset operator*(const SdfLayerOffset& rhs) const;
    VESK_USD_API double operator*(double time) const;
    VESK_USD_API SdfTimeCode operator*(const SdfTimeCode& time) const;

private:
    double _offset;
    double _scale;
};

typedef std::vector<SdfLayerOffset> SdfLayerOffsetVector;

VESK_USD_API std::ostream& operator<<(std::ostream& out, const SdfLayerOffset& offset);

PXR_NAMESPACE_CLOSE_SCOPE
