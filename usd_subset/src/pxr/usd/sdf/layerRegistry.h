#pragma once

/// Finds layers in use by their identifier or their file.

#include <pxr/pxr.h>
#include <pxr/usd/ar/resolvedPath.h>
#include <pxr/usd/sdf/declareHandles.h>
#include <pxr/usd/sdf/layer.h>

#include <mutex>
#include <string>
#include <unordered_map>

PXR_NAMESPACE_OPEN_SCOPE

/// The layers of the process. It holds none alive: a layer takes itself out when it dies. Thread: any.
class Sdf_LayerRegistry
{
public:
    static Sdf_LayerRegistry& Get();

    /// Adds a layer unless another one is there under its names, which is then returned; null when it was
    /// added.
    SdfLayerRefPtr InsertOrFind(const SdfLayerRefPtr& layer);
    void Erase(const SdfLayer* layer);
    /// Notes that a layer goes by other names now; false where another layer has them.
    bool Rename(const SdfLayer* layer, const std::string& identifier, const std::string& fileKey);
    SdfLayerRefPtr Find(const std::string& identifier, const std::string& fileKey) const;
    SdfLayerHandleSet GetLayers() const;

    /// Names a file as read with the given arguments; empty where there is no file.
    static std::string FileKey(const ArResolvedPath& path, const SdfLayer::FileFormatArguments& args);

private:
    struct _Entry
    {
        SdfLayerHandle layer;
        std::string identifier;
        std::string fileKey;
    };
    SdfLayerRefPtr _Find(const std::string& identifier, const std::string& fileKey) const;
    void _Erase(const SdfLayer* layer);
    void _Add(const SdfLayer* layer, const _Entry& entry);

    mutable std::mutex _mutex;
    std::unordered_map<const SdfLayer*, _Entry> _entries;
    std::unordered_map<std::string, const SdfLayer*> _byIdentifier;
    std::unordered_map<std::string, const SdfLayer*> _byFile;
};

PXR_NAMESPACE_CLOSE_SCOPE
