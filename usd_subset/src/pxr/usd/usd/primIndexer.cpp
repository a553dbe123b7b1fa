#include "pxr/usd/usd/primIndexer.h"

#include "pxr/usd/usd/stageImpl.h"

#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/sdf/schema.h>

PXR_NAMESPACE_OPEN_SCOPE

Usd_PrimIndexPtr Usd_PrimIndexer::ComputePseudoRoot() const
{
    auto index = std::make_shared<Usd_PrimIndex>();
    index->_path = SdfPath::AbsoluteRootPath();
    auto nodes = std::make_shared<std::vector<Usd_PrimIndexNode>>(1);
    nodes->front().layerStack = _stage.layerStack;
    nodes->front().path = index->_path;
    index->_nodes = std::move(nodes);
    for (const Usd_LayerStack::Entry& entry : _stage.layerStack->GetEntries()) {
        index->_sites.push_back({get_pointer(entry.layer), index->_path, entry.offset, 0});
    }
    return index;
}

Usd_PrimIndexPtr Usd_PrimIndexer::ComputeChild(const Usd_PrimIndex& parent, const TfToken& name) const
{
    auto index = std::make_shared<Usd_PrimIndex>();
    index->_path = parent._path.AppendChild(name);
    index->_nodes = parent._nodes;
    // A layer says something of a child only where it says something of the parent.
    for (const Usd_SpecSite& site : parent._sites) {
        if (site.layer->HasSpec(index->_path)) {
            index->_sites.push_back({site.layer, index->_path, site.offset, site.node});
        }
    }
    _WarnOfArcs(*index);
    return index;
}

void Usd_PrimIndexer::_WarnOfArcs(const Usd_PrimIndex& index) const
{
    static const std::pair<TfToken, const char*> arcs[] = {
        {SdfFieldKeys->References, "references"},       {SdfFieldKeys->Payload, "payloads"},
        {SdfFieldKeys->InheritPaths, "inherits"},       {SdfFieldKeys->Specializes, "specializes"},
        {SdfFieldKeys->VariantSetNames, "variantSets"},
    };
    for (const Usd_SpecSite& site : index._sites) {
        for (const TfToken& field : site.layer->ListFields(site.path)) {
            for (const auto& arc : arcs) {
                if (field == arc.first) {
                    _stage.WarnOfArc(arc.second, site.path, *site.layer);
                }
            }
        }
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
