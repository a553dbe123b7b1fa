#pragma once

/// References to prims of this or another layer.

#include <pxr/base/tf/hash.h>
#include <pxr/base/vt/dictionary.h>
#include <pxr/base/vt/value.h>
#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/sdf/layerOffset.h>
#include <pxr/usd/sdf/path.h>

#include <iosfwd>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// A reference arc: an asset (none for this layer stack), a prim in it (none for its default prim), a time
/// offset, and custom data.
class SdfReference
{
public:
    VESK_USD_API SdfReference(const std::string& assetPath = std::string(),
                              const SdfPath& primPath = SdfPath(),
                              const SdfLayerOffset& layerOffset = SdfLayerOffset(),
                              const VtDictionary& customData = VtDictionary());

    const std::string& GetAssetPath() const { return _assetPath; }
    void SetAssetPath(const std::string& path) { _assetPath = SdfAssetPath(path).GetAssetPath(); }
    const SdfPath& GetPrimPath() const { return _primPath; }
    void SetPrimPath(const SdfPath& path) { _primPath = path; }
    const SdfLayerOffset& GetLayerOffset() const { return _layerOffset; }
    void SetLayerOffset(const SdfLayerOffset& offset) { _layerOffset = offset; }
    const VtDictionary& GetCustomData() const { return _customData; }
    void SetCustomData(const VtDictionary& data) { _customData = data; }
    /// Sets one entry of the custom data; an empty value removes it.
    VESK_USD_API void SetCustomData(const std::string& name, const VtValue& value);
    void SwapCustomData(VtDictionary& data) { _customData.swap(data); }

    /// Returns whether it refers into the layer stack that holds it.
    bool IsInternal() const { return _assetPath.empty(); }

    VESK_USD_API bool operator==(const SdfReference& rhs) const;
    bool operator!=(const SdfReference& rhs) const { return !(*this == rhs); }
    VESK_USD_API bool operator<(const SdfReference& rhs) const;
    bool operator>(const SdfReference& rhs) const { return rhs < *this; }
    bool operator<=(const SdfReference& rhs) const { return !(rhs < *this); }
    bool operator>=(const SdfReference& rhs) const { return !(*this < rhs); }

    friend size_t hash_value(const SdfReference& r)
    {
        return TfHash::Combine(r._assetPath, r._primPath, r._layerOffset, r._customData);
    }

    /// Compares asset and prim alone.
    struct IdentityEqual
    {
        bool operator()(const SdfReference& a, const SdfReference& b) const
        {
            return a._assetPath == b._assetPath && a._primPath == b._primPath;
        }
    };
    struct IdentityLessThan
    {
        bool operator()(const SdfReference& a, const SdfReference& b) const
        {
            return a._assetPath != b._assetPath ? a._assetPath < b._assetPath : a._primPath < b._primPath;
        }
    };

private:
    std::string _assetPath;
    SdfPath _primPath;
    SdfLayerOffset _layerOffset;
    VtDictionary _customData;
};

typedef std::vector<SdfReference> SdfReferenceVector;

/// Returns the index of the first reference with the same asset and prim, -1 where there is none.
VESK_USD_API int SdfFindReferenceByIdentity(const SdfReferenceVector& references,
                                            const SdfReference& reference);

VESK_USD_API std::ostream& operator<<(std::ostream& out, const SdfReference& reference);

PXR_NAMESPACE_CLOSE_SCOPE
