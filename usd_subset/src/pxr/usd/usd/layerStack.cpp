#include "pxr/usd/usd/layerStack.h"

#include "pxr/usd/usd/errorText.h"

#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/sdf/layerUtils.h>
#include <pxr/usd/sdf/variableExpression.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// Layers that include each other several times over multiply; no scene comes near this.
constexpr size_t kMaxEntries = 16384;
constexpr size_t kMaxDepth = 512;

} // namespace

struct Usd_LayerStack::Loading
{
    const std::set<std::string>& mutedLayers;
    const Warn& warn;
    std::vector<const SdfLayer*> open; // the layers on the way down from the root
    bool isTooLarge = false;
};

Usd_LayerStack::Usd_LayerStack(const SdfLayerRefPtr& rootLayer, const SdfLayerRefPtr& sessionLayer,
                               const Usd_LayerStack* referrer, const std::set<std::string>& mutedLayers,
                               const Warn& warn)
    : _rootLayer(rootLayer), _sessionLayer(sessionLayer)
{
    _ComposeVariables(referrer);
    Loading loading{mutedLayers, warn, {}, false};
    const double rootRate = rootLayer->GetTimeCodesPerSecond();
    _timeCodesPerSecond = rootRate;
    SdfLayerOffset rootOffset;
    if (sessionLayer && mutedLayers.count(sessionLayer->GetIdentifier()) == 0) {
        const double sessionRate = sessionLayer->GetTimeCodesPerSecond();
        SdfLayerOffset sessionOffset;
        if (_SessionSetsRate(sessionLayer, rootLayer)) {
            _timeCodesPerSecond = sessionRate;
            rootOffset.SetScale(sessionRate / rootRate);
        } else {
            sessionOffset.SetScale(rootRate / sessionRate);
        }
        _Add(sessionLayer, sessionOffset, sessionRate, loading);
    }
    _Add(rootLayer, rootOffset, rootRate, loading);
    if (loading.isTooLarge) {
        warn(TfStringPrintf(
            "The layers below @%s@ include each other more than %zu times; the rest was left out.",
            rootLayer->GetIdentifier().c_str(), kMaxEntries));
    }
    std::vector<const SdfLayer*> layers;
    for (const Entry& entry : _entries) {
        layers.push_back(get_pointer(entry.layer));
    }
    _relocates = Usd_Relocates(layers, warn);
}

void Usd_LayerStack::_ComposeVariables(const Usd_LayerStack* referrer)
{
    _variables = _rootLayer->GetExpressionVariables();
    if (_sessionLayer) {
        VtDictionaryOver(_sessionLayer->GetExpressionVariables(), &_variables);
    }
    if (!referrer) {
        return;
    }
    VtDictionaryOver(referrer->_variables, &_variables);
    if (_variables == referrer->_variables) {
        _variablesSource = referrer->_variablesSource;
    }
}

std::string Usd_LayerStack::Evaluate(const std::string& text, std::string* why) const
{
    if (!SdfVariableExpression::IsExpression(text)) {
        return text;
    }
    const SdfVariableExpression::Result result =
        SdfVariableExpression(text).EvaluateTyped<std::string>(_variables);
    *why = TfStringJoin(result.errors, " ");
    return result.value.GetWithDefault<std::string>();
}

bool Usd_LayerStack::_SessionSetsRate(const SdfLayerRefPtr& session, const SdfLayerRefPtr& root)
{
    return session->HasTimeCodesPerSecond() ||
           (!root->HasTimeCodesPerSecond() && session->HasFramesPerSecond());
}

bool Usd_LayerStack::NeedsOtherTimeCodesPerSecond() const
{
    const bool bySession = _sessionLayer && _SessionSetsRate(_sessionLayer, _rootLayer);
    return (bySession ? _sessionLayer : _rootLayer)->GetTimeCodesPerSecond() != _timeCodesPerSecond;
}

const Usd_LayerStack::Entry* Usd_LayerStack::FindEntry(const SdfLayer* layer) const
{
    const auto found = std::find_if(_entries.begin(), _entries.end(), [layer](const Entry& entry) {
        return get_pointer(entry.layer) == layer;
    });
    return found == _entries.end() ? nullptr : &*found;
}

void Usd_LayerStack::_Add(const SdfLayerRefPtr& layer, const SdfLayerOffset& offset,
                          double timeCodesPerSecond, Loading& loading)
{
    if (_entries.size() >= kMaxEntries || loading.open.size() >= kMaxDepth) {
        loading.isTooLarge = true;
        return;
    }
    // A layer that is included several times has its strongest place's offset everywhere.
    const Entry* const stronger = FindEntry(get_pointer(layer));
    _entries.push_back({layer, stronger ? stronger->offset : offset});
    loading.open.push_back(get_pointer(layer));
    const std::vector<std::string> paths = layer->GetSubLayerPaths();
    const SdfLayerOffsetVector offsets = layer->GetSubLayerOffsets();
    for (size_t i = 0; i != paths.size(); ++i) {
        _AddSublayer(layer, paths[i], i < offsets.size() ? offsets[i] : SdfLayerOffset(), offset,
                     timeCodesPerSecond, loading);
    }
    loading.open.pop_back();
}

void Usd_LayerStack::_AddSublayer(const SdfLayerRefPtr& layer, const std::string& path,
                                  SdfLayerOffset sublayerOffset, const SdfLayerOffset& offset,
                                  double timeCodesPerSecond, Loading& loading)
{
    std::string why;
    const std::string evaluated = Evaluate(path, &why);
    if (!why.empty()) {
        loading.warn(TfStringPrintf("Sublayer @%s@ of @%s@ was left out: %s", path.c_str(),
                                    layer->GetIdentifier().c_str(), why.c_str()));
    }
    const std::string fullPath =
        evaluated.empty() ? evaluated : SdfComputeAssetPathRelativeToLayer(layer, evaluated);
    if (evaluated.empty() || loading.mutedLayers.count(fullPath)) {
        return;
    }
    const SdfLayerRefPtr sublayer = Usd_OpenLayer(fullPath, &why);
    const char* const from = layer->GetIdentifier().c_str();
    if (!sublayer) {
        loading.warn(
            TfStringPrintf("Sublayer @%s@ of @%s@ was left out: %s", path.c_str(), from, why.c_str()));
        return;
    }
    if (loading.mutedLayers.count(sublayer->GetIdentifier())) {
        return;
    }
    if (std::count(loading.open.begin(), loading.open.end(), get_pointer(sublayer))) {
        loading.warn(TfStringPrintf(
            "Sublayer @%s@ of @%s@ was left out: it includes itself. Remove the cycle.", path.c_str(), from));
        return;
    }
    if (!sublayerOffset.IsValid() || !sublayerOffset.GetInverse().IsValid()) {
        loading.warn(
            TfStringPrintf("Sublayer @%s@ of @%s@ has an offset that cannot be inverted; none is used.",
                           path.c_str(), from));
        sublayerOffset = SdfLayerOffset();
    }
    const double sublayerRate = sublayer->GetTimeCodesPerSecond();
    if (sublayerRate != timeCodesPerSecond) {
        sublayerOffset.SetScale(sublayerOffset.GetScale() * timeCodesPerSecond / sublayerRate);
    }
    _Add(sublayer, offset * sublayerOffset, sublayerRate, loading);
}

PXR_NAMESPACE_CLOSE_SCOPE
