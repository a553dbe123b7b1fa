#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/notice.h>

PXR_NAMESPACE_OPEN_SCOPE

SdfNotice::Base::~Base() = default;
SdfNotice::LayersDidChangeSentPerLayer::~LayersDidChangeSentPerLayer() = default;
SdfNotice::LayersDidChange::~LayersDidChange() = default;
SdfNotice::LayerInfoDidChange::~LayerInfoDidChange() = default;
SdfNotice::LayerIdentifierDidChange::~LayerIdentifierDidChange() = default;
SdfNotice::LayerDidReplaceContent::~LayerDidReplaceContent() = default;
SdfNotice::LayerDidReloadContent::~LayerDidReloadContent() = default;
SdfNotice::LayerDidSaveLayerToFile::~LayerDidSaveLayerToFile() = default;
SdfNotice::LayerDirtinessChanged::~LayerDirtinessChanged() = default;

SdfLayerHandleVector SdfNotice::BaseLayersDidChange::GetLayers() const
{
    SdfLayerHandleVector layers;
    for (const auto& change : *_vec) {
        layers.push_back(change.first);
    }
    return layers;
}

PXR_NAMESPACE_CLOSE_SCOPE
