#include "pxr/usd/usd/stageImpl.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/sdf/payload.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/usd/inherits.h>
#include <pxr/usd/usd/payloads.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/references.h>
#include <pxr/usd/usd/specializes.h>
#include <pxr/usd/usd/stage.h>
#include <pxr/usd/usd/variantSets.h>

PXR_NAMESPACE_OPEN_SCOPE

UsdVariantSets UsdPrim::GetVariantSets() const { return UsdVariantSets(*this); }

UsdVariantSet UsdPrim::GetVariantSet(const std::string& variantSetName) const
{
    return UsdVariantSet(*this, variantSetName);
}

bool UsdPrim::HasVariantSets() const { return HasMetadata(SdfFieldKeys->VariantSetNames); }

UsdPayloads UsdPrim::GetPayloads() const { return UsdPayloads(*this); }

bool UsdPrim::HasPayload() const { return HasAuthoredPayloads(); }

bool UsdPrim::HasAuthoredPayloads() const { return _Prim()->HasPayload(); }

bool UsdPrim::SetPayload(const SdfPayload& payload) const
{
    UsdPayloads payloads(*this);
    return payloads.ClearPayloads() && payloads.AddPayload(payload);
}

bool UsdPrim::SetPayload(const std::string& assetPath, const SdfPath& primPath) const
{
    return SetPayload(SdfPayload(assetPath, primPath));
}

bool UsdPrim::SetPayload(const SdfLayerHandle& layer, const SdfPath& primPath) const
{
    return SetPayload(SdfPayload(layer->GetIdentifier(), primPath));
}

bool UsdPrim::ClearPayload() const { return UsdPayloads(*this).ClearPayloads(); }

void UsdPrim::Load(UsdLoadPolicy policy) const
{
    if (IsInPrototype()) {
        TF_CODING_ERROR("Attempted to load a prim in a prototype <%s>", GetPath().GetText());
        return;
    }
    _GetStage()->Load(GetPath(), policy);
}

void UsdPrim::Unload() const
{
    if (IsInPrototype()) {
        TF_CODING_ERROR("Attempted to unload a prim in a prototype <%s>", GetPath().GetText());
        return;
    }
    _GetStage()->Unload(GetPath());
}

UsdReferences UsdPrim::GetReferences() const { return UsdReferences(*this); }

bool UsdPrim::HasAuthoredReferences() const { return HasAuthoredMetadata(SdfFieldKeys->References); }

UsdInherits UsdPrim::GetInherits() const { return UsdInherits(*this); }

bool UsdPrim::HasAuthoredInherits() const { return HasAuthoredMetadata(SdfFieldKeys->InheritPaths); }

UsdSpecializes UsdPrim::GetSpecializes() const { return UsdSpecializes(*this); }

bool UsdPrim::HasAuthoredSpecializes() const { return HasAuthoredMetadata(SdfFieldKeys->Specializes); }

PXR_NAMESPACE_CLOSE_SCOPE
