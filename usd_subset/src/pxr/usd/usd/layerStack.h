#pragma once

#include "pxr/usd/usd/relocates.h"

#include <pxr/base/vt/dictionary.h>
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
    /// @param referrer the layer stack whose expression variables count over this one's; may be null
    /// @param mutedLayers identifiers of layers to leave out
    /// @param warn gets one sentence for each sublayer that is missing, broken, in a cycle or has a useless
    /// offset
    Usd_LayerStack(const SdfLayerRefPtr& rootLayer, const SdfLayerRefPtr& sessionLayer,
                   const Usd_LayerStack* referrer, const std::set<std::string>& mutedLayers,
                   const Warn& warn);

    /// Strongest first.
    const Entries& GetEntries() const { return _entries; }
    const SdfLayerRefPtr& GetRootLayer() const { return _rootLayer; }
    const SdfLayerRefPtr& GetSessionLayer() const { return _sessionLayer; }
    /// The rate that times of this stack are meant in.
    double GetTimeCodesPerSecond() const { return _timeCodesPerSecond; }

    /// What variables in expressions stand for in all layers of the stack.
    const VtDictionary& GetExpressionVariables() const { return _variables; }
    /// The layer stack, this one or one that refers to it, that gave the variables their values. Layer stacks
    /// of the same layers and the same source are the same.
    const Usd_LayerStack* GetVariablesSource() const { return _variablesSource; }
    /// The text that an expression stands for; empty, with the reason in words, when there is none. Text that
    /// is no expression stays.
    std::string Evaluate(const std::string& text, std::string* why) const;
    /// The prims that the layers move.
    const Usd_Relocates& GetRelocates() const { return _relocates; }

    bool HasLayer(const SdfLayer* layer) const { return FindEntry(layer) != nullptr; }
    /// The strongest entry of a layer; null when it is none of the stack's.
    const Entry* FindEntry(const SdfLayer* layer) const;

    /// Whether session and root layer imply another rate than the stack was made with.
    bool NeedsOtherTimeCodesPerSecond() const;

private:
    struct Loading;
    void _ComposeVariables(const Usd_LayerStack* referrer);
    static bool _SessionSetsRate(const SdfLayerRefPtr& session, const SdfLayerRefPtr& root);
    void _Add(const SdfLayerRefPtr& layer, const SdfLayerOffset& offset, double timeCodesPerSecond,
              Loading& loading);
    void _AddSublayer(const SdfLayerRefPtr& layer, const std::string& path, SdfLayerOffset sublayerOffset,
                      const SdfLayerOffset& offset, double timeCodesPerSecond, Loading& loading);

    SdfLayerRefPtr _rootLayer;
    SdfLayerRefPtr _sessionLayer;
    Entries _entries;
    VtDictionary _variables;
    const Usd_LayerStack* _variablesSource = this;
    Usd_Relocates _relocates;
    double _timeCodesPerSecond = 24.0;
};

using Usd_LayerStackPtr = std::shared_ptr<const Usd_LayerStack>;

PXR_NAMESPACE_CLOSE_SCOPE
