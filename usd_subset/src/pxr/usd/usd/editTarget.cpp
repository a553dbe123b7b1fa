#include <pxr/usd/usd/editTarget.h>

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/usd/editContext.h>
#include <pxr/usd/usd/stage.h>

PXR_NAMESPACE_OPEN_SCOPE

UsdEditTarget::UsdEditTarget(const SdfLayerHandle& layer, SdfLayerOffset offset)
    : _layer(layer), _mapping(offset)
{}

UsdEditTarget::UsdEditTarget(const SdfLayerRefPtr& layer, SdfLayerOffset offset)
    : UsdEditTarget(SdfLayerHandle(layer), offset)
{}

UsdEditTarget::UsdEditTarget(const SdfLayerHandle& layer, const Usd_PathMapping& mapping)
    : _layer(layer), _mapping(mapping)
{}

UsdEditTarget UsdEditTarget::ForLocalDirectVariant(const SdfLayerHandle& layer, const SdfPath& varSelPath)
{
    if (!varSelPath.IsPrimVariantSelectionPath()) {
        TF_CODING_ERROR("Provided varSelPath <%s> must be a prim variant selection path.",
                        varSelPath.GetText());
        return UsdEditTarget();
    }
    return UsdEditTarget(layer, Usd_PathMapping({{varSelPath, varSelPath.StripAllVariantSelections()},
                                                 {SdfPath::AbsoluteRootPath(), SdfPath::AbsoluteRootPath()}},
                                                SdfLayerOffset()));
}

bool UsdEditTarget::operator==(const UsdEditTarget& other) const
{
    return _layer == other._layer && _mapping == other._mapping;
}

SdfPath UsdEditTarget::MapToSpecPath(const SdfPath& scenePath) const
{
    const SdfPath mapped = _mapping.MapTargetToSource(scenePath);
    return mapped.IsEmpty() && _mapping.HasRootIdentity() ? scenePath : mapped;
}

SdfPrimSpecHandle UsdEditTarget::GetPrimSpecForScenePath(const SdfPath& scenePath) const
{
    const SdfPath path = _layer ? MapToSpecPath(scenePath) : SdfPath();
    return path.IsEmpty() ? SdfPrimSpecHandle() : _layer->GetPrimAtPath(path);
}

SdfPropertySpecHandle UsdEditTarget::GetPropertySpecForScenePath(const SdfPath& scenePath) const
{
    const SdfPath path = _layer ? MapToSpecPath(scenePath) : SdfPath();
    return path.IsEmpty() ? SdfPropertySpecHandle() : _layer->GetPropertyAtPath(path);
}

SdfAttributeSpecHandle UsdEditTarget::GetAttributeSpecForScenePath(const SdfPath& scenePath) const
{
    const SdfPath path = _layer ? MapToSpecPath(scenePath) : SdfPath();
    return path.IsEmpty() ? SdfAttributeSpecHandle() : _layer->GetAttributeAtPath(path);
}

SdfRelationshipSpecHandle UsdEditTarget::GetRelationshipSpecForScenePath(const SdfPath& scenePath) const
{
    const SdfPath path = _layer ? MapToSpecPath(scenePath) : SdfPath();
    return path.IsEmpty() ? SdfRelationshipSpecHandle() : _layer->GetRelationshipAtPath(path);
}

SdfSpecHandle UsdEditTarget::GetSpecForScenePath(const SdfPath& scenePath) const
{
    const SdfPath path = _layer ? MapToSpecPath(scenePath) : SdfPath();
    return path.IsEmpty() ? SdfSpecHandle() : _layer->GetObjectAtPath(path);
}

UsdEditTarget UsdEditTarget::ComposeOver(const UsdEditTarget& weaker) const
{
    if (!_layer) {
        return UsdEditTarget(weaker._layer, _mapping.Compose(weaker._mapping));
    }
    return UsdEditTarget(_layer, _mapping.Compose(weaker._mapping));
}

UsdEditContext::UsdEditContext(const UsdStagePtr& stage) : _stage(stage)
{
    if (stage) {
        _originalEditTarget = stage->GetEditTarget();
    } else {
        TF_CODING_ERROR("Cannot construct EditContext with invalid stage");
    }
}

UsdEditContext::UsdEditContext(const UsdStagePtr& stage, const UsdEditTarget& editTarget)
    : UsdEditContext(stage)
{
    // An invalid target posts its error and leaves the stage's as it is.
    if (stage) {
        stage->SetEditTarget(editTarget);
    }
}

UsdEditContext::UsdEditContext(const std::pair<UsdStagePtr, UsdEditTarget>& stageTarget)
    : UsdEditContext(stageTarget.first, stageTarget.second)
{}

UsdEditContext::~UsdEditContext()
{
    // The original target may be gone: then the stage keeps what it has.
    if (_stage && _originalEditTarget.IsValid()) {
        _stage->SetEditTarget(_originalEditTarget);
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
