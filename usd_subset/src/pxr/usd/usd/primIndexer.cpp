#include "pxr/usd/usd/primIndexer.h"

#include "pxr/usd/usd/primIndexBuilder.h"
#include "pxr/usd/usd/stageImpl.h"

PXR_NAMESPACE_OPEN_SCOPE

const Usd_LayerStackPtr& Usd_PrimIndexer::_GetStageStack() const { return _stage.layerStack; }

Usd_PrimIndexPtr Usd_PrimIndexer::_ComputePseudoRoot(const Usd_LayerStackPtr& layerStack)
{
    auto index = std::make_shared<Usd_PrimIndex>();
    index->_path = SdfPath::AbsoluteRootPath();
    auto nodes = std::make_shared<Usd_PrimIndexNodes>(1);
    nodes->front().layerStack = layerStack;
    index->_nodes = std::move(nodes);
    for (const Usd_LayerStack::Entry& entry : layerStack->GetEntries()) {
        index->_sites.push_back({get_pointer(entry.layer), index->_path, entry.offset, 0});
    }
    return index;
}

Usd_PrimIndexPtr Usd_PrimIndexer::ComputeChild(const Usd_PrimIndex& parent, const TfToken& name)
{
    auto index = std::make_shared<Usd_PrimIndex>();
    index->_path = parent._path.AppendChild(name);
    index->_nodes = parent._nodes;
    index->_sites.reserve(parent._sites.size());
    bool hasArcs = false;
    // A layer says something of a child only where it says something of the parent.
    SdfPath path;
    const SdfPath* parentPath = nullptr;
    for (const Usd_SpecSite& site : parent._sites) {
        if (!parentPath || *parentPath != site.path) {
            parentPath = &site.path;
            path = site.path.AppendChild(name);
        }
        if (site.layer->HasSpec(path)) {
            index->_sites.push_back({site.layer, path, site.offset, site.node});
            hasArcs = hasArcs || Usd_HasArcs(*site.layer, path);
        }
    }
    if (!hasArcs) {
        return index;
    }
    const bool includePayloads = !_underWay.empty() || _stage.loadRules.IsLoaded(index->_path);
    ++_building;
    const Usd_PrimIndexPtr built = Usd_PrimIndexBuilder(*this, index->_path, includePayloads).Build(parent);
    --_building;
    return built;
}

Usd_LayerStackPtr Usd_PrimIndexer::FindLayerStack(const std::string& asset, std::string* why)
{
    return _stage.FindLayerStack(asset, why);
}

Usd_PrimIndexPtr Usd_PrimIndexer::FindIndex(const Usd_LayerStackPtr& layerStack, const SdfPath& path)
{
    const _Site site(layerStack.get(), path);
    const auto known = _indexes.find(site);
    if (known != _indexes.end()) {
        return known->second;
    }
    if (path.IsAbsoluteRootPath()) {
        return _indexes[site] = _ComputePseudoRoot(layerStack);
    }
    if (!_underWay.insert(site).second) {
        return nullptr;
    }
    const Usd_PrimIndexPtr parent = FindIndex(layerStack, path.GetParentPath());
    const Usd_PrimIndexPtr index = parent ? ComputeChild(*parent, path.GetNameToken()) : nullptr;
    _underWay.erase(site);
    if (index) {
        _indexes[site] = index;
    }
    return index;
}

std::shared_ptr<Usd_PrimIndexNodes> Usd_PrimIndexer::MakeNodes() const
{
    return {new Usd_PrimIndexNodes, [count = _stage.placeCount](const Usd_PrimIndexNodes* nodes) {
                *count -= nodes->size();
                delete nodes;
            }};
}

void Usd_PrimIndexer::Count(const Usd_PrimIndexNodes& nodes) const { *_stage.placeCount += nodes.size(); }

void Usd_PrimIndexer::AddDependency(const SdfPath& prim, const Usd_LayerStackPtr& layerStack,
                                    const SdfPath& site)
{
    if (_underWay.empty()) { // else the path is not one of the stage
        _stage.dependencies.Add(prim, layerStack, site);
    }
}

void Usd_PrimIndexer::WarnOnceOf(const std::string& kind, const std::string& text)
{
    _stage.WarnOnceOf(kind, text);
}

PXR_NAMESPACE_CLOSE_SCOPE
