#pragma once

/// Names of assets, as authored and as resolved.

#include <pxr/base/tf/hash.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

#include <iosfwd>
#include <string>
#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

/// An asset path and, where somebody resolved it, the resolved path. Both are valid UTF-8 without control
/// characters; other text posts a coding error and gives an empty asset path.
class SdfAssetPath
{
public:
    SdfAssetPath() = default;
    VESK_USD_API explicit SdfAssetPath(const std::string& path);
    VESK_USD_API SdfAssetPath(const std::string& path, const std::string& resolvedPath);

    bool operator==(const SdfAssetPath& rhs) const
    {
        return _assetPath == rhs._assetPath && _resolvedPath == rhs._resolvedPath;
    }
    bool operator!=(const SdfAssetPath& rhs) const { return !(*this == rhs); }
    bool operator<(const SdfAssetPath& rhs) const
    {
        return _assetPath != rhs._assetPath ? _assetPath < rhs._assetPath : _resolvedPath < rhs._resolvedPath;
    }
    bool operator<=(const SdfAssetPath& rhs) const { return !(rhs < *this); }
    bool operator>(const SdfAssetPath& rhs) const { return rhs < *this; }
    bool operator>=(const SdfAssetPath& rhs) const { return !(*this < rhs); }

    size_t GetHash() const { return TfHash::Combine(_assetPath, _resolvedPath); }
    struct Hash
    {
        size_t operator()(const SdfAssetPath& path) const { return path.GetHash(); }
    };
    friend size_t hash_value(const SdfAssetPath& path) { return path.GetHash(); }

    const std::string& GetAssetPath() const& { return _assetPath; }
    std::string GetAssetPath() && { return std::move(_assetPath); }
    const std::string& GetResolvedPath() const& { return _resolvedPath; }
    std::string GetResolvedPath() && { return std::move(_resolvedPath); }

    friend void swap(SdfAssetPath& a, SdfAssetPath& b) noexcept
    {
        a._assetPath.swap(b._assetPath);
        a._resolvedPath.swap(b._resolvedPath);
    }

private:
    std::string _assetPath;
    std::string _resolvedPath;
};

/// Writes "@path@".
VESK_USD_API std::ostream& operator<<(std::ostream& out, const SdfAssetPath& path);

PXR_NAMESPACE_CLOSE_SCOPE
