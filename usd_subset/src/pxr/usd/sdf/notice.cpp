#include <pxr/base/tf/registryManager.h>
#include <pxr/base/tf/type.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/notice.h>

PXR_NAMESPACE_OPEN_SCOPE

TF_REGISTRY_FUNCTION(TfType)
{
    typedef TfType::Bases<SdfNotice::Base> Base;
    TfType::Define<SdfNotice::Base, TfType::Bases<TfNotice>>();
    TfType::Define<SdfNotice::LayersDidChangeSentPerLayer, Base>();
    TfType::Define<SdfNotice::LayersDidChange, Base>();
    TfType::Define<SdfNotice::LayerInfoDidChange, Base>();
    TfType::Define<SdfNotice::LayerIdentifierDidChange, Base>();
    TfType::Define<SdfNotice::LayerDidReplaceContent, Base>();
    TfType::Define<SdfNotice::LayerDidReloadContent, TfType::Bases<SdfNotice::LayerDidReplaceContent>>();
    TfType::Define<SdfNotice::LayerDidSaveLayerToFile, Base>();
    TfType::Define<SdfNotice::LayerDirtinessChanged, Base>();
}

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
