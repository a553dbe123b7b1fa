#pragma once

/// References that are loaded on demand.

#include <pxr/base/tf/hash.h>
#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/sdf/layerOffset.h>
#include <pxr/usd/sdf/path.h>

#include <iosfwd>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// A payload arc: an asset (none for this layer stack), a prim in it (none for its default prim), a time
/// offset.
class SdfPayload
{
public:
    VESK_USD_API SdfPayload(const std::string& assetPath = std::string(), const SdfPath& primPath = SdfPath(),
                            const SdfLayerOffset& layerOffset = SdfLayerOffset());

    const std::string& GetAssetPath() const { return _assetPath; }
    void SetAssetPath(const std::string& path) { _assetPath = SdfAssetPath(path).GetAssetPath(); }
    const SdfPath& GetPrimPath() const { return _primPath; }
    void SetPrimPath(const SdfPath& path) { _primPath = path; }
    const SdfLayerOffset& GetLayerOffset() const { return _layerOffset; }
    void SetLayerOffset(const SdfLayerOffset& offset) { _layerOffset = offset; }

    VESK_USD_API bool operator==(const SdfPayload& rhs) const;
    bool operator!=(const SdfPayload& rhs) const { return !(*this == rhs); }
    VESK_USD_API bool operator<(const SdfPayload& rhs) const;
    bool operator>(const SdfPayload& rhs) const { return rhs < *this; }
    bool operator<=(const SdfPayload& rhs) const { return !(rhs < *this); }
    bool operator>=(const SdfPayload& rhs) const { return !(*this < rhs); }

    friend size_t hash_value(const SdfPayload& p)
    {
        return TfHash::Combine(p._assetPath, p._primPath, p._layerOffset);
    }

private:
    std::string _assetPath;
    SdfPath _primPath;
    SdfLayerOffset _layerOffset;
};

typedef std::vector<SdfPayload> SdfPayloadVector;

VESK_USD_API std::ostream& operator<<(std::ostream& out, const SdfPayload& payload);

PXR_NAMESPACE_CLOSE_SCOPE
