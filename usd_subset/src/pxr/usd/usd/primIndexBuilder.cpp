#include "pxr/usd/usd/primIndexBuilder.h"

#include "pxr/usd/usd/primIndexer.h"

#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/usd/stage.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// A prim has a handful of sites; arcs that multiply each other end here.
constexpr int kMaxNodes = 1000;
// Each arc on the way costs as much as all before it.
constexpr int kMaxArcDepth = 100;

} // namespace

Usd_PrimIndexPtr Usd_PrimIndexBuilder::Build(const Usd_PrimIndex& parent)
{
    _Graft(parent, _path.GetNameToken(), -1, Usd_PrimIndexNode());
    _FollowAll();
    return _Finish();
}

int Usd_PrimIndexBuilder::_Graft(const Usd_PrimIndex& index, const TfToken& child, int parent,
                                 const Usd_PrimIndexNode& top)
{
    const int first = _graph.GetSize();
    const Usd_PrimIndexNodes& nodes = index.GetNodes();
    // A class brings in no place a second time; nodes that are left out have no place.
    const bool skipsDuplicates = parent >= 0 && Usd_IsClassArc(top.arc);
    std::vector<int> places(nodes.size(), -1);
    auto site = index.GetSites().begin();
    for (size_t i = 0; i != nodes.size(); ++i) {
        Usd_GraphNode grafted;
        grafted.node = nodes[i];
        if (i == 0 && parent >= 0) {
            const Usd_LayerStackPtr layerStack = nodes[0].layerStack;
            grafted.node = top;
            grafted.node.layerStack = layerStack;
            grafted.node.parent = parent;
        } else if (i > 0) {
            grafted.node.parent = places[static_cast<size_t>(nodes[i].parent)];
            if (parent >= 0) {
                grafted.node.depth = top.depth - 1; // came with a prim above the one that the arc leads to
            }
        }
        if (i == 0) {
            grafted.path = index.GetPath().AppendChild(child);
        }
        for (; site != index.GetSites().end() && site->node == i; ++site) {
            grafted.path = site->path.AppendChild(child);
            if (site->layer->HasSpec(grafted.path)) {
                grafted.specs.push_back(nodes[i].layerStack->FindEntry(site->layer));
            }
        }
        const bool isBelowNothing = i > 0 && grafted.node.parent < 0;
        if (isBelowNothing || (i > 0 && skipsDuplicates && !grafted.specs.empty() &&
                               _graph.HasSite(grafted.node.layerStack, grafted.path))) {
            continue;
        }
        const int added = _graph.Add(std::move(grafted));
        places[i] = added;
        if (!_graph[added].specs.empty()) {
            _open.push_back(added);
        }
    }
    return first;
}

void Usd_PrimIndexBuilder::_FollowAll()
{
    do {
        while (!_open.empty()) {
            const int site = _open.front();
            _open.pop_front();
            _FollowArcs(site);
        }
    } while (_FollowNextVariant());
}

void Usd_PrimIndexBuilder::_FollowArcs(int site)
{
    const Usd_SiteArcs arcs(_graph[site]);
    _graph[site].variantSets = arcs.variantSets;
    for (const Usd_AssetArc& arc : arcs.references) {
        _FollowAssetArc(site, arc, Usd_ArcType::Reference);
    }
    _hasPayloads = _hasPayloads || !arcs.payloads.empty();
    if (_includePayloads) {
        for (const Usd_AssetArc& arc : arcs.payloads) {
            _FollowAssetArc(site, arc, Usd_ArcType::Payload);
        }
    }
    for (const SdfPath& path : arcs.inherits) {
        _FollowClassArc(site, path, Usd_ArcType::Inherit);
    }
    for (const SdfPath& path : arcs.specializes) {
        _FollowClassArc(site, path, Usd_ArcType::Specialize);
    }
}

void Usd_PrimIndexBuilder::_FollowAssetArc(int site, const Usd_AssetArc& arc, Usd_ArcType type)
{
    const Usd_LayerStackPtr source = _graph[site].node.layerStack;
    Usd_LayerStackPtr target = source;
    SdfLayerOffset written = arc.written;
    if (!written.IsValid() || !written.GetInverse().IsValid()) {
        _Warn(site, TfStringPrintf("The arc to @%s@ has an offset that cannot be inverted; none is used.",
                                   arc.asset.c_str()));
        written = SdfLayerOffset();
    }
    SdfLayerOffset offset = arc.offset * written;
    if (!arc.asset.empty()) {
        std::string why;
        target = _indexer.FindLayerStack(arc.fullAsset, &why);
        if (!target) {
            if (!why.empty()) {
                _Warn(site,
                      TfStringPrintf("The arc to @%s@ was left out: %s.", arc.asset.c_str(), why.c_str()));
            }
            return;
        }
        const double sourceRate = arc.source->GetTimeCodesPerSecond();
        if (sourceRate != target->GetTimeCodesPerSecond()) {
            offset.SetScale(offset.GetScale() * sourceRate / target->GetTimeCodesPerSecond());
        }
    }
    const SdfPath path = _FindTargetPath(site, arc, *target->GetRootLayer());
    if (path.IsEmpty()) {
        return;
    }
    const int added = _AddArc(site, type, target, path, offset, arc.asset.empty());
    if (added >= 0 && !_HasSpecsFrom(added)) {
        _Warn(site,
              TfStringPrintf("The arc to @%s@<%s> leads to no prim.", arc.asset.c_str(), path.GetText()));
    }
}

bool Usd_PrimIndexBuilder::_HasSpecsFrom(int first) const
{
    for (int i = first; i != _graph.GetSize(); ++i) {
        if (!_graph[i].specs.empty()) {
            return true;
        }
    }
    return false;
}

SdfPath Usd_PrimIndexBuilder::_FindTargetPath(int site, const Usd_AssetArc& arc, const SdfLayer& root) const
{
    if (arc.primPath.IsEmpty()) {
        const SdfPath path = root.GetDefaultPrimAsPath();
        if (path.IsEmpty()) {
            _Warn(site, TfStringPrintf("The arc to @%s@ was left out: it names no prim, and the layer has no "
                                       "default prim. Name one of them.",
                                       arc.asset.c_str()));
        }
        return path;
    }
    if (!arc.primPath.IsAbsolutePath() || !arc.primPath.IsPrimPath() ||
        arc.primPath.ContainsPrimVariantSelection()) {
        _Warn(site,
              TfStringPrintf("The arc to @%s@<%s> was left out: it must name a prim by its absolute path.",
                             arc.asset.c_str(), arc.primPath.GetText()));
        return SdfPath();
    }
    return arc.primPath;
}

void Usd_PrimIndexBuilder::_FollowClassArc(int site, const SdfPath& classPath, Usd_ArcType type)
{
    if (!classPath.IsAbsolutePath() || !classPath.IsPrimPath() || classPath.ContainsPrimVariantSelection()) {
        _Warn(site,
              TfStringPrintf("The arc to <%s> was left out: it must name a prim.", classPath.GetText()));
        return;
    }
    _AddArc(site, type, _graph[site].node.layerStack, classPath, SdfLayerOffset(), true);
}

int Usd_PrimIndexBuilder::_AddArc(int site, Usd_ArcType type, Usd_LayerStackPtr layerStack,
                                  const SdfPath& path, const SdfLayerOffset& offset, bool keepsNames)
{
    if (_graph.MakesCycle(site, layerStack, path)) {
        _Warn(site,
              TfStringPrintf("The arc to <%s> was left out: it leads back to where it comes from. Remove the "
                             "cycle.",
                             path.GetText()));
        return -1;
    }
    if (_graph.GetSize() >= kMaxNodes) {
        // One such prim is mostly followed by many, for the same reason.
        _indexer.WarnOnceOf("nodes",
                            TfStringPrintf("The arcs of prim <%s> lead to more than %d places; the rest was "
                                           "left out, here and on other prims that do so.",
                                           _path.GetText(), kMaxNodes));
        return -1;
    }
    if (_graph.GetArcDepth(site) >= kMaxArcDepth || _indexer.IsDeep()) {
        _indexer.WarnOnceOf("arcs",
                            TfStringPrintf("The arcs of prim <%s> lead on through more than %d others; the "
                                           "rest was left out, here and on other prims that do so.",
                                           _path.GetText(), kMaxArcDepth));
        return -1;
    }
    const Usd_PrimIndexPtr above = _indexer.FindIndex(layerStack, path.GetParentPath());
    if (!above) {
        _Warn(site,
              TfStringPrintf("The arc to <%s> was left out: what is above it leads back to where it comes "
                             "from. Remove the cycle.",
                             path.GetText()));
        return -1;
    }
    std::vector<Usd_PathMapping::Pair> pairs{{path, _graph[site].plainPath}};
    if (keepsNames) {
        pairs.emplace_back(SdfPath::AbsoluteRootPath(), SdfPath::AbsoluteRootPath());
    }
    Usd_PrimIndexNode top;
    top.toParent = Usd_PathMapping(std::move(pairs), offset);
    top.arc = type;
    top.depth = static_cast<std::int32_t>(_path.GetPathElementCount());
    const int added = _Graft(*above, path.GetNameToken(), site, top);
    _indexer.AddDependency(_path, layerStack, path);
    const int end = _graph.GetSize();
    for (int i = added; i != end; ++i) {
        if (i != added && !_graph[i].specs.empty()) {
            _indexer.AddDependency(_path, _graph[i].node.layerStack, _graph[i].plainPath);
        }
        if (Usd_IsClassArc(_graph[i].node.arc)) {
            _AddImpliedClasses(i);
        }
    }
    return added;
}

// A class that a referenced prim inherits from can be overridden where the prim is referenced: the class of
// the same name in each stronger layer stack counts as inherited there.
void Usd_PrimIndexBuilder::_AddImpliedClasses(int classNode)
{
    const Usd_ArcType type = _graph[classNode].node.arc;
    const Usd_LayerStackPtr classStack = _graph[classNode].node.layerStack;
    const SdfPath classPath = _graph[classNode].path;
    SdfPath path = classPath.StripAllVariantSelections();
    int instance = _graph[classNode].node.parent;
    while (true) {
        while (instance > 0 && Usd_IsClassArc(_graph[instance].node.arc)) {
            instance = _graph[instance].node.parent;
        }
        if (instance <= 0) {
            return;
        }
        const Usd_PathMapping& mapping = _graph[instance].node.toParent;
        const SdfPath mapped = mapping.MapSourceToTarget(path);
        path = mapped.IsEmpty() ? path : mapped;
        const int outer = _graph[instance].node.parent;
        const Usd_LayerStackPtr outerStack = _graph[outer].node.layerStack;
        if (!(outerStack == classStack && path == classPath)) {
            if (!_graph.HasSite(outerStack, path) && !_graph.MakesCycle(outer, outerStack, path)) {
                _AddArc(outer, type, outerStack, path, SdfLayerOffset(), true);
            }
            return;
        }
        instance = outer;
    }
}

bool Usd_PrimIndexBuilder::_FollowNextVariant()
{
    const std::vector<int> order = _graph.GetStrengthOrder();
    for (const int site : order) {
        if (_graph[site].variantSets.empty()) {
            continue;
        }
        const std::string set = _graph[site].variantSets.front();
        _graph[site].variantSets.erase(_graph[site].variantSets.begin());
        const std::string selection = _FindSelection(set, site, order);
        const SdfPath path =
            selection.empty() ? SdfPath() : _graph[site].path.AppendVariantSelection(set, selection);
        if (path.IsEmpty() || _graph.GetSize() >= kMaxNodes) {
            return true;
        }
        Usd_GraphNode variant;
        variant.node.layerStack = _graph[site].node.layerStack;
        variant.node.arc = Usd_ArcType::Variant;
        variant.node.parent = site;
        variant.node.depth = static_cast<std::int32_t>(_path.GetPathElementCount());
        variant.path = path;
        for (const Usd_LayerStack::Entry* entry : _graph[site].specs) {
            if (entry->layer->HasSpec(path)) {
                variant.specs.push_back(entry);
            }
        }
        const int added = _graph.Add(std::move(variant));
        if (!_graph[added].specs.empty()) {
            _open.push_back(added);
        }
        return true;
    }
    return false;
}

std::string Usd_PrimIndexBuilder::_FindSelection(const std::string& set, int site,
                                                 const std::vector<int>& order) const
{
    for (const int other : order) {
        for (const Usd_LayerStack::Entry* entry : _graph[other].specs) {
            SdfVariantSelectionMap selections;
            if (entry->layer->HasField(_graph[other].path, SdfFieldKeys->VariantSelection, &selections)) {
                const auto found = selections.find(set);
                if (found != selections.end() && !found->second.empty()) {
                    return found->second;
                }
            }
        }
    }
    const PcpVariantFallbackMap fallbacks = UsdStage::GetGlobalVariantFallbacks();
    const auto wanted = fallbacks.find(set);
    if (wanted != fallbacks.end()) {
        for (const std::string& name : wanted->second) {
            const SdfPath path = _graph[site].path.AppendVariantSelection(set, name);
            for (const Usd_LayerStack::Entry* entry : _graph[site].specs) {
                if (entry->layer->HasSpec(path)) {
                    return name;
                }
            }
        }
    }
    return std::string();
}

void Usd_PrimIndexBuilder::_Warn(int site, const std::string& text) const
{
    const Usd_GraphNode& at = _graph[site];
    const SdfLayerRefPtr layer =
        at.specs.empty() ? at.node.layerStack->GetRootLayer() : at.specs.front()->layer;
    _indexer.Warn(TfStringPrintf("%s It is written on <%s> in @%s@.", text.c_str(), at.path.GetText(),
                                 layer->GetIdentifier().c_str()));
}

Usd_PrimIndexPtr Usd_PrimIndexBuilder::_Finish() const
{
    // Nodes that say nothing, and lead to none that does, need not be kept.
    std::vector<char> isKept(static_cast<size_t>(_graph.GetSize()), 0);
    isKept[0] = 1;
    for (int i = _graph.GetSize() - 1; i > 0; --i) {
        if (!_graph[i].specs.empty() || isKept[static_cast<size_t>(i)]) {
            isKept[static_cast<size_t>(i)] = 1;
            isKept[static_cast<size_t>(_graph[i].node.parent)] = 1;
        }
    }
    auto index = std::make_shared<Usd_PrimIndex>();
    const std::shared_ptr<Usd_PrimIndexNodes> nodes = _indexer.MakeNodes();
    std::vector<std::int32_t> places(static_cast<size_t>(_graph.GetSize()), -1);
    index->_path = _path;
    for (const int i : _graph.GetStrengthOrder()) {
        if (!isKept[static_cast<size_t>(i)]) {
            continue;
        }
        const auto place = static_cast<std::int32_t>(nodes->size());
        places[static_cast<size_t>(i)] = place;
        nodes->push_back(_graph[i].node);
        if (place > 0) {
            nodes->back().parent = places[static_cast<size_t>(_graph[i].node.parent)];
        }
        const SdfLayerOffset& offset = _graph[i].node.toStage.GetTimeOffset();
        for (const Usd_LayerStack::Entry* entry : _graph[i].specs) {
            index->_sites.push_back({get_pointer(entry->layer), _graph[i].path, offset * entry->offset,
                                     static_cast<std::uint32_t>(place)});
        }
    }
    _indexer.Count(*nodes);
    index->_nodes = nodes;
    index->_hasPayloads = _hasPayloads;
    index->_isInstanceable = _IsInstanceable(*index);
    return index;
}

bool Usd_PrimIndexBuilder::_IsInstanceable(const Usd_PrimIndex& index) const
{
    const Usd_PrimIndexNodes& nodes = index.GetNodes();
    const bool hasArcs = std::any_of(nodes.begin() + 1, nodes.end(), [&index](const Usd_PrimIndexNode& node) {
        return index.IsDirect(node);
    });
    for (const Usd_SpecSite& site : index.GetSites()) {
        bool instanceable = false;
        if (hasArcs && site.layer->HasField(site.path, SdfFieldKeys->Instanceable, &instanceable)) {
            return instanceable;
        }
    }
    return false;
}

PXR_NAMESPACE_CLOSE_SCOPE
