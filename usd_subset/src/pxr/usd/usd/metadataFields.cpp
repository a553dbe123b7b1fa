#include "pxr/usd/usd/metadataFields.h"

#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/usd/tokens.h>

#include <unordered_set>

PXR_NAMESPACE_OPEN_SCOPE

bool Usd_IsPrivateField(const TfToken& field)
{
    static const std::unordered_set<TfToken, TfToken::HashFunctor> hidden{
        SdfFieldKeys->InheritPaths,    SdfFieldKeys->LayerRelocates,   SdfFieldKeys->Payload,
        SdfFieldKeys->References,      SdfFieldKeys->Specializes,      SdfFieldKeys->SubLayers,
        SdfFieldKeys->SubLayerOffsets, SdfFieldKeys->VariantSelection, SdfFieldKeys->VariantSetNames,
        SdfFieldKeys->Default,         SdfFieldKeys->TimeSamples,      UsdTokens->clips,
        UsdTokens->clipSets,
    };
    if (hidden.count(field)) {
        return true;
    }
    const SdfSchema::FieldDefinition* const definition = SdfSchema::GetInstance().GetFieldDefinition(field);
    return definition && (definition->IsReadOnly() || definition->HoldsChildren());
}

void Usd_AddRequiredFields(SdfSpecType type, TfTokenVector* fields)
{
    if (const SdfSchema::SpecDefinition* const definition =
            SdfSchema::GetInstance().GetSpecDefinition(type)) {
        const TfTokenVector required = definition->GetRequiredFields();
        fields->insert(fields->end(), required.begin(), required.end());
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
