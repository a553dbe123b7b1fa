#pragma once

/// The link between a spec object and its place in a layer.

#include <pxr/pxr.h>
#include <pxr/usd/sdf/api.h>
#include <pxr/usd/sdf/declareHandles.h>
#include <pxr/usd/sdf/path.h>

#include <memory>
#include <mutex>
#include <unordered_map>

PXR_NAMESPACE_OPEN_SCOPE

class Sdf_IdentityRegistry;

/// One place in one layer, shared by every spec object that stands for it; it follows the spec when that
/// moves.
class Sdf_Identity
{
public:
    Sdf_Identity(const SdfLayerHandle& layer, const SdfPath& path) : _layer(layer), _path(path) {}

    const SdfLayerHandle& GetLayer() const { return _layer; }
    const SdfPath& GetPath() const { return _path; }

private:
    friend class Sdf_IdentityRegistry;
    SdfLayerHandle _layer;
    SdfPath _path;
};

using Sdf_IdentityRefPtr = std::shared_ptr<Sdf_Identity>;

/// The identities of one layer. Thread: any.
class Sdf_IdentityRegistry
{
public:
    Sdf_IdentityRegistry() : _table(std::make_shared<_Table>()) {}

    /// Returns the identity of a place, the same one as long as anybody holds it.
    SDF_API Sdf_IdentityRefPtr Identify(const SdfLayerHandle& layer, const SdfPath& path);
    /// Lets the identity of `oldPath` stand for `newPath` from now on.
    SDF_API void MoveIdentity(const SdfPath& oldPath, const SdfPath& newPath);

private:
    struct _Table
    {
        std::mutex mutex;
        std::unordered_map<SdfPath, std::weak_ptr<Sdf_Identity>, SdfPath::Hash> identities;
    };
    struct _Release
    {
        std::weak_ptr<_Table> table;
        void operator()(Sdf_Identity* identity) const;
    };
    std::shared_ptr<_Table> _table;
};

PXR_NAMESPACE_CLOSE_SCOPE
