#pragma once

#include <pxr/pxr.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/layerOffset.h>

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// The layers that are composed at one root: session layers over root layer, each over its sublayers, with
/// the offset from each layer's time to the time of the root. It does not change once it is made.
class Usd_LayerStack
{
public:
    struct Entry
    {
        SdfLayerRefPtr layer;
        SdfLayerOffset offset;
    };
    using Entries = std::vector<Entry>;
    using Warn = std::function<void(const std::string&)>;

    /// Opens the sublayers.
    /// @param sessionLayer may be null
    /// @param mutedLayers identifiers of layers to leave out
    /// @param warn gets one sentence for each sublayer that is missing, broken, in a cycle or has a useless
    /// offset
    Usd_LayerStack(const SdfLayerRefPtr& rootLayer, const SdfLayerRefPtr& sessionLayer,
                   const std::set<std::string>& mutedLayers, const Warn& warn);

    /// Strongest first.
    const Entries& GetEntries() const { return _entries; }
    const SdfLayerRefPtr& GetRootLayer() const { return _rootLayer; }
    const SdfLayerRefPtr& GetSessionLayer() const { return _sessionLayer; }
    /// The rate that times of this stack are meant in.
    double GetTimeCodesPerSecond() const { return _timeCodesPerSecond; }

    bool HasLayer(const SdfLayer* layer) const { return FindEntry(layer) != nullptr; }
    /// The strongest entry of a layer; null when it is none of the stack's.
    const Entry* FindEntry(const SdfLayer* layer) const;

    /// Whether session and root layer imply another rate than the stack was made with.
    bool NeedsOtherTimeCodesPerSecond() const;

private:
    struct Loading;
    static bool _SessionSetsRate(const SdfLayerRefPtr& session, const SdfLayerRefPtr& root);
    void _Add(const SdfLayerRefPtr& layer, const SdfLayerOffset& offset, double timeCodesPerSecond,
              Loading& loading);
    void _AddSublayer(const SdfLayerRefPtr& layer, const std::string& path, SdfLayerOffset sublayerOffset,
                      const SdfLayerOffset& offset, double timeCodesPerSecond, Loading& loading);

    SdfLayerRefPtr _rootLayer;
    SdfLayerRefPtr _sessionLayer;
    Entries _entries;
    double _timeCodesPerSecond = 24.0;
};

using Usd_LayerStackPtr = std::shared_ptr<const Usd_LayerStack>;

PXR_NAMESPACE_CLOSE_SCOPE
