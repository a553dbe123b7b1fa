#include "pxr/usd/usd/stageImpl.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/vt/dictionary.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/usd/stage.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

bool isLayerField(const TfToken& field)
{
    return SdfSchema::GetInstance().IsValidFieldForSpec(field, SdfSpecTypePseudoRoot);
}

// The layer that stage metadata is written to; null, with an error, when it cannot be written.
SdfLayerHandle editedLayer(const Usd_StageImpl& stage, const TfToken& field, const char* verb)
{
    const char* const root = stage.rootLayer->GetIdentifier().c_str();
    if (!isLayerField(field)) {
        TF_CODING_ERROR(
            "Metadata '%s' is not registered as valid Layer metadata, and cannot be %s on UsdStage %s.",
            field.GetText(), verb, root);
        return {};
    }
    const SdfLayerHandle layer = stage.editTarget.GetLayer();
    if (layer != stage.rootLayer && layer != stage.sessionLayer) {
        TF_CODING_ERROR(
            "Cannot edit layer metadata '%s' in current edit target \"%s\", as it is not the root layer "
            "or session layer of stage \"%s\".",
            field.GetText(), layer ? layer->GetIdentifier().c_str() : "", root);
        return {};
    }
    return layer;
}

const SdfPath& root() { return SdfPath::AbsoluteRootPath(); }

// The frame range of old files, which the time code range replaced.
bool getOldField(const SdfLayerRefPtr& layer, const TfToken& field, double* value)
{
    return layer && layer->HasField(root(), field, value);
}

double getRangeEnd(const Usd_StageImpl& stage, const TfToken& field, const TfToken& oldField)
{
    double value = 0.0;
    for (const SdfLayerRefPtr& layer : {stage.sessionLayer, stage.rootLayer}) {
        if (layer && (layer->HasField(root(), field, &value) || getOldField(layer, oldField, &value))) {
            break;
        }
    }
    return value;
}

} // namespace

bool UsdStage::GetMetadata(const TfToken& key, VtValue* value) const
{
    if (!value) {
        TF_CODING_ERROR("Null out-param 'value' for UsdStage::GetMetadata(\"%s\")", key.GetText());
        return false;
    }
    if (!isLayerField(key)) {
        return false;
    }
    const VtValue& fallback = SdfSchema::GetInstance().GetFallback(key);
    if (!GetPseudoRoot().GetMetadata(key, value)) {
        *value = fallback;
    } else if (value->IsHolding<VtDictionary>() && fallback.IsHolding<VtDictionary>()) {
        VtDictionary merged = value->UncheckedGet<VtDictionary>();
        VtDictionaryOverRecursive(&merged, fallback.UncheckedGet<VtDictionary>());
        *value = merged;
    }
    return true;
}

bool UsdStage::HasMetadata(const TfToken& key) const
{
    return isLayerField(key) &&
           (GetPseudoRoot().HasAuthoredMetadata(key) || !SdfSchema::GetInstance().GetFallback(key).IsEmpty());
}

bool UsdStage::HasAuthoredMetadata(const TfToken& key) const
{
    return isLayerField(key) && GetPseudoRoot().HasAuthoredMetadata(key);
}

bool UsdStage::SetMetadata(const TfToken& key, const VtValue& value) const
{
    const SdfLayerHandle layer = editedLayer(*_impl, key, "set");
    if (!layer) {
        return false;
    }
    layer->SetField(root(), key, value);
    return true;
}

bool UsdStage::ClearMetadata(const TfToken& key) const
{
    const SdfLayerHandle layer = editedLayer(*_impl, key, "cleared");
    if (!layer) {
        return false;
    }
    layer->EraseField(root(), key);
    return true;
}

bool UsdStage::GetMetadataByDictKey(const TfToken& key, const TfToken& keyPath, VtValue* value) const
{
    if (keyPath.IsEmpty() || !isLayerField(key)) {
        return false;
    }
    if (!value) {
        TF_CODING_ERROR("Null out-param 'value' for UsdStage::GetMetadataByDictKey(\"%s\", \"%s\")",
                        key.GetText(), keyPath.GetText());
        return false;
    }
    if (GetPseudoRoot().GetMetadataByDictKey(key, keyPath, value)) {
        return true;
    }
    const VtValue& fallback = SdfSchema::GetInstance().GetFallback(key);
    const VtValue* const found =
        fallback.IsHolding<VtDictionary>()
            ? fallback.UncheckedGet<VtDictionary>().GetValueAtPath(keyPath.GetString())
            : nullptr;
    if (found) {
        *value = *found;
    }
    return found;
}

bool UsdStage::HasMetadataDictKey(const TfToken& key, const TfToken& keyPath) const
{
    VtValue value;
    return GetMetadataByDictKey(key, keyPath, &value);
}

bool UsdStage::HasAuthoredMetadataDictKey(const TfToken& key, const TfToken& keyPath) const
{
    return !keyPath.IsEmpty() && isLayerField(key) &&
           GetPseudoRoot().HasAuthoredMetadataDictKey(key, keyPath);
}

bool UsdStage::SetMetadataByDictKey(const TfToken& key, const TfToken& keyPath, const VtValue& value) const
{
    const SdfLayerHandle layer = keyPath.IsEmpty() ? SdfLayerHandle() : editedLayer(*_impl, key, "set");
    if (!layer) {
        return false;
    }
    layer->SetFieldDictValueByKey(root(), key, keyPath, value);
    return true;
}

bool UsdStage::ClearMetadataByDictKey(const TfToken& key, const TfToken& keyPath) const
{
    const SdfLayerHandle layer = keyPath.IsEmpty() ? SdfLayerHandle() : editedLayer(*_impl, key, "cleared");
    if (!layer) {
        return false;
    }
    layer->EraseFieldDictValueByKey(root(), key, keyPath);
    return true;
}

double UsdStage::GetStartTimeCode() const
{
    return getRangeEnd(*_impl, SdfFieldKeys->StartTimeCode, SdfFieldKeys->StartFrame);
}

void UsdStage::SetStartTimeCode(double startTime) { SetMetadata(SdfFieldKeys->StartTimeCode, startTime); }

double UsdStage::GetEndTimeCode() const
{
    return getRangeEnd(*_impl, SdfFieldKeys->EndTimeCode, SdfFieldKeys->EndFrame);
}

void UsdStage::SetEndTimeCode(double endTime) { SetMetadata(SdfFieldKeys->EndTimeCode, endTime); }

bool UsdStage::HasAuthoredTimeCodeRange() const
{
    double value = 0.0;
    for (const SdfLayerRefPtr& layer : {_impl->sessionLayer, _impl->rootLayer}) {
        if (layer && ((layer->HasStartTimeCode() && layer->HasEndTimeCode()) ||
                      (getOldField(layer, SdfFieldKeys->StartFrame, &value) &&
                       getOldField(layer, SdfFieldKeys->EndFrame, &value)))) {
            return true;
        }
    }
    return false;
}

double UsdStage::GetTimeCodesPerSecond() const { return _impl->layerStack->GetTimeCodesPerSecond(); }

void UsdStage::SetTimeCodesPerSecond(double timeCodesPerSecond) const
{
    SetMetadata(SdfFieldKeys->TimeCodesPerSecond, timeCodesPerSecond);
}

double UsdStage::GetFramesPerSecond() const
{
    double result = 0.0;
    GetMetadata(SdfFieldKeys->FramesPerSecond, &result);
    return result;
}

void UsdStage::SetFramesPerSecond(double framesPerSecond) const
{
    SetMetadata(SdfFieldKeys->FramesPerSecond, framesPerSecond);
}

void UsdStage::SetColorConfiguration(const SdfAssetPath& colorConfig) const
{
    SetMetadata(SdfFieldKeys->ColorConfiguration, colorConfig);
}

SdfAssetPath UsdStage::GetColorConfiguration() const
{
    SdfAssetPath result;
    GetMetadata(SdfFieldKeys->ColorConfiguration, &result);
    return result;
}

void UsdStage::SetColorManagementSystem(const TfToken& cms) const
{
    SetMetadata(SdfFieldKeys->ColorManagementSystem, cms);
}

TfToken UsdStage::GetColorManagementSystem() const
{
    TfToken result;
    GetMetadata(SdfFieldKeys->ColorManagementSystem, &result);
    return result;
}

PXR_NAMESPACE_CLOSE_SCOPE
