#include "pxr/usd/sdf/layerRegistry.h"

#include <pxr/usd/ar/resolver.h>

PXR_NAMESPACE_OPEN_SCOPE

Sdf_LayerRegistry& Sdf_LayerRegistry::Get()
{
    // Layers may outlive static destruction, hence the registry is never destroyed.
    static Sdf_LayerRegistry* const registry = new Sdf_LayerRegistry;
    return *registry;
}

std::string Sdf_LayerRegistry::FileKey(const ArResolvedPath& path, const SdfLayer::FileFormatArguments& args)
{
    return path.IsEmpty() ? std::string() : SdfLayer::CreateIdentifier(path, args);
}

SdfLayerRefPtr Sdf_LayerRegistry::_Find(const std::string& identifier, const std::string& fileKey) const
{
    const auto find = [this](const auto& map, const std::string& key) {
        const auto found = map.find(key);
        const auto entry = found == map.end() ? _entries.end() : _entries.find(found->second);
        return entry == _entries.end() ? SdfLayerRefPtr() : SdfLayerRefPtr(entry->second.layer);
    };
    // What a search finds differs from stage to stage, so such names do not tell which layer is meant.
    std::string assetPath;
    SdfLayer::FileFormatArguments args;
    const bool isSought = !SdfLayer::IsAnonymousLayerIdentifier(identifier) &&
                          SdfLayer::SplitIdentifier(identifier, &assetPath, &args) &&
                          ArGetResolver().IsContextDependentPath(assetPath);
    SdfLayerRefPtr layer = isSought ? SdfLayerRefPtr() : find(_byIdentifier, identifier);
    return layer || fileKey.empty() ? layer : find(_byFile, fileKey);
}

void Sdf_LayerRegistry::_Erase(const SdfLayer* layer)
{
    const auto entry = _entries.find(layer);
    if (entry == _entries.end()) {
        return;
    }
    const auto eraseOwn = [layer](auto& map, const std::string& key) {
        const auto it = map.find(key);
        if (it != map.end() && it->second == layer) {
            map.erase(it);
        }
    };
    eraseOwn(_byIdentifier, entry->second.identifier);
    eraseOwn(_byFile, entry->second.fileKey);
    _entries.erase(entry);
}

void Sdf_LayerRegistry::_Add(const SdfLayer* layer, const _Entry& entry)
{
    _entries[layer] = entry;
    _byIdentifier[entry.identifier] = layer;
    if (!entry.fileKey.empty()) {
        _byFile[entry.fileKey] = layer;
    }
}

SdfLayerRefPtr Sdf_LayerRegistry::InsertOrFind(const SdfLayerRefPtr& layer)
{
    const std::string fileKey = FileKey(layer->GetResolvedPath(), layer->GetFileFormatArguments());
    const std::lock_guard<std::mutex> lock(_mutex);
    SdfLayerRefPtr other = _Find(layer->GetIdentifier(), fileKey);
    if (!other) {
        _Add(get_pointer(layer), {SdfLayerHandle(layer), layer->GetIdentifier(), fileKey});
    }
    return other;
}

void Sdf_LayerRegistry::Erase(const SdfLayer* layer)
{
    const std::lock_guard<std::mutex> lock(_mutex);
    _Erase(layer);
}

bool Sdf_LayerRegistry::Rename(const SdfLayer* layer, const std::string& identifier,
                               const std::string& fileKey)
{
    // Declared first, so that a last reference is dropped without the lock, which the layer's end takes.
    SdfLayerRefPtr other;
    const std::lock_guard<std::mutex> lock(_mutex);
    other = _Find(identifier, fileKey);
    if (other && get_pointer(other) != layer) {
        return false;
    }
    const auto entry = _entries.find(layer);
    if (entry != _entries.end()) {
        _Entry renamed = entry->second;
        renamed.identifier = identifier;
        renamed.fileKey = fileKey;
        _Erase(layer);
        _Add(layer, renamed);
    }
    return true;
}

SdfLayerRefPtr Sdf_LayerRegistry::Find(const std::string& identifier, const std::string& fileKey) const
{
    const std::lock_guard<std::mutex> lock(_mutex);
    return _Find(identifier, fileKey);
}

SdfLayerHandleSet Sdf_LayerRegistry::GetLayers() const
{
    SdfLayerHandleSet layers;
    const std::lock_guard<std::mutex> lock(_mutex);
    for (const auto& entry : _entries) {
        if (entry.second.layer) {
            layers.insert(entry.second.layer);
        }
    }
    return layers;
}

PXR_NAMESPACE_CLOSE_SCOPE
