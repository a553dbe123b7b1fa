#pragma once

/// The search paths that the default resolver consults.

#include <pxr/pxr.h>
#include <pxr/usd/ar/api.h>

#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Directories in which look-up paths (`a/b.usd`, not `./a/b.usd`) are sought, in their order.
class ArDefaultResolverContext
{
public:
    ArDefaultResolverContext() = default;
    /// Makes relative directories absolute against the working directory and drops empty ones.
    AR_API explicit ArDefaultResolverContext(const std::vector<std::string>& searchPath);

    bool operator==(const ArDefaultResolverContext& rhs) const { return _searchPath == rhs._searchPath; }
    bool operator!=(const ArDefaultResolverContext& rhs) const { return !(*this == rhs); }
    bool operator<(const ArDefaultResolverContext& rhs) const { return _searchPath < rhs._searchPath; }

    const std::vector<std::string>& GetSearchPath() const { return _searchPath; }
    AR_API std::string GetAsString() const;

private:
    std::vector<std::string> _searchPath;
};

AR_API size_t hash_value(const ArDefaultResolverContext& context);

PXR_NAMESPACE_CLOSE_SCOPE
