#pragma once

/// A path that a resolver has already turned into the place of an asset.

#include <pxr/base/tf/hash.h>
#include <pxr/pxr.h>
#include <pxr/usd/ar/api.h>

#include <functional>
#include <string>

PXR_NAMESPACE_OPEN_SCOPE

/// A resolved asset path, kept apart from unresolved ones by its type. Thread: as std::string.
class ArResolvedPath
{
public:
    ArResolvedPath() = default;
    explicit ArResolvedPath(const std::string& resolvedPath) : _path(resolvedPath) {}
    explicit ArResolvedPath(std::string&& resolvedPath) : _path(std::move(resolvedPath)) {}

    bool operator==(const ArResolvedPath& rhs) const { return _path == rhs._path; }
    bool operator!=(const ArResolvedPath& rhs) const { return _path != rhs._path; }
    bool operator<(const ArResolvedPath& rhs) const { return _path < rhs._path; }
    bool operator>(const ArResolvedPath& rhs) const { return _path > rhs._path; }
    bool operator<=(const ArResolvedPath& rhs) const { return _path <= rhs._path; }
    bool operator>=(const ArResolvedPath& rhs) const { return _path >= rhs._path; }
    bool operator==(const std::string& rhs) const { return _path == rhs; }
    bool operator!=(const std::string& rhs) const { return _path != rhs; }

    /// Says whether the path names a place.
    explicit operator bool() const { return !IsEmpty(); }
    operator const std::string&() const { return _path; }

    bool IsEmpty() const { return _path.empty(); }
    bool empty() const { return _path.empty(); }
    size_t GetHash() const { return std::hash<std::string>()(_path); }
    const std::string& GetPathString() const { return _path; }

private:
    std::string _path;
};

inline size_t hash_value(const ArResolvedPath& p) { return p.GetHash(); }

PXR_NAMESPACE_CLOSE_SCOPE

template <>
struct std::hash<PXR_NS::ArResolvedPath>
{
    size_t operator()(const PXR_NS::ArResolvedPath& p) const { return p.GetHash(); }
};
