#include "pxr/usd/usd/primIndexer.h"

#include "pxr/usd/usd/primIndexBuilder.h"
#include "pxr/usd/usd/stageImpl.h"

PXR_NAMESPACE_OPEN_SCOPE

Usd_PrimIndexPtr Usd_PrimIndexer::ComputePseudoRoot() const
{
    const Usd_LayerStackPtr& layerStack = _stage.layerStack;
    auto index = std::make_shared<Usd_PrimIndex>();
    index->_path = SdfPath::AbsoluteRootPath();
    auto graph = std::make_shared<Usd_PrimIndex::Graph>();
    graph->path = index->_path;
    graph->nodes.resize(1);
    graph->nodes.front().layerStack = layerStack;
    graph->nodes.front().path = index->_path;
    graph->hasRelocates = !layerStack->GetRelocates().IsEmpty();
    index->_graph = std::move(graph);
    for (const Usd_LayerStack::Entry& entry : layerStack->GetEntries()) {
        index->_sites.push_back({get_pointer(entry.layer), index->_path, entry.offset, 0});
    }
    return index;
}

Usd_PrimIndexPtr Usd_PrimIndexer::ComputeChild(const Usd_PrimIndex& parent, const TfToken& name)
{
    auto index = std::make_shared<Usd_PrimIndex>();
    index->_path = parent._path.AppendChild(name);
    if (parent._graph->hasRelocates) {
        return Usd_PrimIndexBuilder(*this, index->_path).Build(parent);
    }
    index->_graph = parent._graph;
    index->_sites.reserve(parent._sites.size());
    Usd_SiteKinds kinds;
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
            Usd_AddSiteKinds(*site.layer, path, &kinds);
        }
    }
    index->_hasClips = kinds.hasClips;
    return kinds.hasArcs ? Usd_PrimIndexBuilder(*this, index->_path).Build(parent) : index;
}

Usd_LayerStackPtr Usd_PrimIndexer::FindLayerStack(const std::string& asset, const Usd_LayerStack& referrer,
                                                  std::string* why)
{
    return _stage.FindLayerStack(asset, referrer, why);
}

bool Usd_PrimIndexer::IsLoaded(const SdfPath& path) const { return _stage.loadRules.IsLoaded(path); }

std::shared_ptr<Usd_PrimIndex::Graph> Usd_PrimIndexer::MakeGraph() const
{
    return {new Usd_PrimIndex::Graph, [count = _stage.placeCount](const Usd_PrimIndex::Graph* graph) {
                *count -= graph->nodes.size();
                delete graph;
            }};
}

void Usd_PrimIndexer::Count(const Usd_PrimIndex::Graph& graph) const
{
    *_stage.placeCount += graph.nodes.size();
}

void Usd_PrimIndexer::AddDependency(const SdfPath& prim, const Usd_LayerStackPtr& layerStack,
                                    const SdfPath& site)
{
    _stage.dependencies.Add(prim, layerStack, site);
}

void Usd_PrimIndexer::WarnOnceOf(const std::string& kind, const std::string& text)
{
    _stage.WarnOnceOf(kind, text);
}

PXR_NAMESPACE_CLOSE_SCOPE
