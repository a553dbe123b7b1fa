#pragma once

/// Turns asset paths into the places of files.

#include <pxr/base/tf/stringUtils.h>
#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>
#include <pxr/usd/ar/api.h>
#include <pxr/usd/ar/ar.h>
#include <pxr/usd/ar/assetInfo.h>
#include <pxr/usd/ar/resolvedPath.h>
#include <pxr/usd/ar/resolverContext.h>
#include <pxr/usd/ar/timestamp.h>

#include <memory>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

class ArAsset;

/// The resolver of files on disk. Paths that begin with `./`, `../` or a plain name are anchored to the
/// directory of their anchor; a plain relative path that has no file there is sought in the search paths of
/// the bound context and of SetDefaultSearchPath(). No URL is ever fetched. Thread: any; bound contexts
/// belong to the thread that binds them.
class AR_API ArResolver
{
public:
    virtual ~ArResolver();
    ArResolver(const ArResolver&) = delete;
    ArResolver& operator=(const ArResolver&) = delete;

    /// Returns the identifier of an asset: its path, anchored to `anchorAssetPath` where that applies.
    std::string CreateIdentifier(const std::string& assetPath,
                                 const ArResolvedPath& anchorAssetPath = ArResolvedPath()) const;
    /// Returns the identifier of an asset that is about to be created; relative paths become absolute.
    std::string CreateIdentifierForNewAsset(const std::string& assetPath,
                                            const ArResolvedPath& anchorAssetPath = ArResolvedPath()) const;

    /// Returns the absolute path of an existing file, which may lie in a package, or an empty path.
    ArResolvedPath Resolve(const std::string& assetPath) const;
    /// Returns the absolute path at which a new asset would be written.
    ArResolvedPath ResolveForNewAsset(const std::string& assetPath) const;

    /// Binds a context to the calling thread until the matching UnbindContext().
    void BindContext(const ArResolverContext& context, VtValue* bindingData);
    void UnbindContext(const ArResolverContext& context, VtValue* bindingData);
    /// Returns an empty search path context.
    ArResolverContext CreateDefaultContext() const;
    /// Returns a context that searches the directory of the asset.
    ArResolverContext CreateDefaultContextForAsset(const std::string& assetPath) const;
    /// Returns a context from a list of directories separated by colons.
    ArResolverContext CreateContextFromString(const std::string& contextStr) const;
    /// Returns the innermost context that the calling thread has bound.
    ArResolverContext GetCurrentContext() const;
    /// Says whether what the path resolves to depends on the bound context.
    bool IsContextDependentPath(const std::string& assetPath) const;

    /// Returns the extension without its dot; for a path inside a package the one of the innermost path.
    std::string GetExtension(const std::string& assetPath) const;
    ArAssetInfo GetAssetInfo(const std::string& assetPath, const ArResolvedPath& resolvedPath) const;
    /// Returns the modification time of a file; invalid where there is none.
    ArTimestamp GetModificationTimestamp(const std::string& assetPath,
                                         const ArResolvedPath& resolvedPath) const;

    /// Opens a file for reading, which may lie in a package; null where it cannot be read.
    std::shared_ptr<ArAsset> OpenAsset(const ArResolvedPath& resolvedPath) const;
    /// Says whether an asset may be written there; fills `whyNot` where not.
    bool CanWriteAssetToPath(const ArResolvedPath& resolvedPath, std::string* whyNot = nullptr) const;

private:
    friend AR_API ArResolver& ArGetResolver();
    ArResolver() = default;
};

/// Returns the resolver of this process.
AR_API ArResolver& ArGetResolver();

PXR_NAMESPACE_CLOSE_SCOPE
