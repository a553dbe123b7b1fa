#include <pxr/base/vt/array.h>
#include <pxr/base/vt/dictionary.h>
#include <pxr/base/vt/types.h>
#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/sdf/layerOffset.h>
#include <pxr/usd/sdf/listOp.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/payload.h>
#include <pxr/usd/sdf/reference.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/sdf/types.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

SdfAllowed isAboveZero(const VtValue& value)
{
    if (!value.IsHolding<double>()) {
        return SdfAllowed("Expected value of type double");
    }
    return SdfAllowed(value.UncheckedGet<double>() > 0.0, "Value must be greater than 0");
}

} // namespace

SdfSchemaBase::FieldDefinition& SdfSchemaBase::_Register(const TfToken& name, const VtValue& fallback,
                                                         _Validator validator)
{
    FieldDefinition& definition = _fields[name];
    definition = FieldDefinition(name, fallback);
    definition._validator = validator;
    return definition;
}

void SdfSchemaBase::_RegisterLayerFields()
{
    const auto& keys = *SdfFieldKeys;
    _Register(keys.ColorConfiguration, VtValue(SdfAssetPath()));
    _Register(keys.ColorManagementSystem, VtValue(TfToken()));
    _Register(keys.Comment, VtValue(std::string()));
    _Register(keys.CustomLayerData, VtValue(VtDictionary()));
    _Register(keys.DefaultPrim, VtValue(TfToken()));
    _Register(keys.Documentation, VtValue(std::string()));
    _Register(keys.EndFrame, VtValue(0.0));
    _Register(keys.EndTimeCode, VtValue(0.0));
    _Register(keys.ExpressionVariables, VtValue(VtDictionary()));
    _Register(keys.FramePrecision, VtValue(3));
    _Register(keys.FramesPerSecond, VtValue(24.0), &isAboveZero);
    _Register(keys.HasOwnedSubLayers, VtValue(false));
    _Register(keys.LayerRelocates, VtValue(SdfRelocates()));
    _Register(keys.Owner, VtValue(std::string()));
    _Register(keys.SessionOwner, VtValue(std::string()));
    _Register(keys.StartFrame, VtValue(0.0));
    _Register(keys.StartTimeCode, VtValue(0.0));
    _Register(keys.SubLayers, VtValue(std::vector<std::string>()));
    _Register(keys.SubLayerOffsets, VtValue(SdfLayerOffsetVector()));
    _Register(keys.TimeCodesPerSecond, VtValue(24.0));
}

void SdfSchemaBase::_RegisterPrimFields()
{
    const auto& keys = *SdfFieldKeys;
    _Register(keys.Active, VtValue(true));
    _Register(keys.AssetInfo, VtValue(VtDictionary()));
    _Register(keys.CustomData, VtValue(VtDictionary()));
    _Register(keys.DisplayGroupOrder, VtValue(VtStringArray()));
    _Register(keys.DisplayName, VtValue(std::string()));
    _Register(keys.Hidden, VtValue(false));
    _Register(keys.InheritPaths, VtValue(SdfPathListOp()));
    _Register(keys.Instanceable, VtValue(false));
    _Register(keys.Kind, VtValue(TfToken()));
    _Register(keys.Payload, VtValue(SdfPayloadListOp()));
    _Register(keys.Permission, VtValue(SdfPermissionPublic));
    _Register(keys.Prefix, VtValue(std::string()));
    _Register(keys.PrefixSubstitutions, VtValue(VtDictionary()));
    _Register(keys.PrimOrder, VtValue(std::vector<TfToken>()));
    _Register(keys.PropertyOrder, VtValue(std::vector<TfToken>()));
    _Register(keys.References, VtValue(SdfReferenceListOp()));
    _Register(keys.Relocates, VtValue(SdfRelocatesMap()));
    _Register(keys.Specializes, VtValue(SdfPathListOp()));
    _Register(keys.Specifier, VtValue(SdfSpecifierOver));
    _Register(keys.Suffix, VtValue(std::string()));
    _Register(keys.SuffixSubstitutions, VtValue(VtDictionary()));
    _Register(keys.SymmetricPeer, VtValue(std::string()));
    _Register(keys.SymmetryArguments, VtValue(VtDictionary()));
    _Register(keys.SymmetryFunction, VtValue(TfToken()));
    _Register(keys.TypeName, VtValue(TfToken()));
    _Register(keys.VariantSelection, VtValue(SdfVariantSelectionMap()));
    _Register(keys.VariantSetNames, VtValue(SdfStringListOp()));
}

void SdfSchemaBase::_RegisterPropertyFields()
{
    const auto& keys = *SdfFieldKeys;
    _Register(keys.AllowedTokens, VtValue(VtTokenArray()));
    _Register(keys.ColorSpace, VtValue(TfToken()));
    _Register(keys.ConnectionPaths, VtValue(SdfPathListOp()))._isReadOnly = true;
    _Register(keys.Custom, VtValue(false));
    _Register(keys.Default, VtValue());
    _Register(keys.DisplayGroup, VtValue(std::string()));
    _Register(keys.DisplayUnit, VtValue(TfToken()));
    _Register(keys.NoLoadHint, VtValue(false));
    _Register(keys.Spline, VtValue());
    _Register(keys.TargetPaths, VtValue(SdfPathListOp()))._isReadOnly = true;
    _Register(keys.TimeSamples, VtValue(SdfTimeSampleMap()));
    _Register(keys.Variability, VtValue(SdfVariabilityVarying));
}

void SdfSchemaBase::_RegisterChildrenFields()
{
    const auto& keys = *SdfChildrenKeys;
    for (const TfToken& names : {keys.PrimChildren, keys.PropertyChildren, keys.VariantChildren,
                                 keys.VariantSetChildren, keys.ExpressionChildren, keys.MapperArgChildren}) {
        _Register(names, VtValue(std::vector<TfToken>()))._holdsChildren = true;
    }
    for (const TfToken& paths :
         {keys.ConnectionChildren, keys.MapperChildren, keys.RelationshipTargetChildren}) {
        _Register(paths, VtValue(SdfPathVector()))._holdsChildren = true;
    }
}

void SdfSchemaBase::_Define(SdfSpecType type, const std::vector<TfToken>& required,
                            const std::vector<TfToken>& plain, const std::vector<TfToken>& metadata)
{
    _hasSpec[type] = true;
    SpecDefinition& spec = _specs[type];
    for (const TfToken& name : required) {
        spec._fields[name].required = true;
        spec._required.push_back(name);
    }
    for (const TfToken& name : plain) {
        spec._fields[name];
    }
    for (const TfToken& name : metadata) {
        const bool symmetry = name.GetString().compare(0, 5, "symme") == 0;
        spec._fields[name].metadata = true;
        spec._fields[name].displayGroup =
            type == SdfSpecTypePseudoRoot ? TfToken() : TfToken(symmetry ? "Symmetry" : "Core");
    }
}

void SdfSchemaBase::_DefineSpecs()
{
    const auto& keys = *SdfFieldKeys;
    const auto& children = *SdfChildrenKeys;
    _Define(SdfSpecTypePseudoRoot, {},
            {keys.Comment, children.PrimChildren, keys.LayerRelocates, keys.PrimOrder, keys.SubLayers,
             keys.SubLayerOffsets},
            {keys.ColorConfiguration, keys.ColorManagementSystem, keys.CustomLayerData, keys.DefaultPrim,
             keys.Documentation, keys.EndTimeCode, keys.ExpressionVariables, keys.FramesPerSecond,
             keys.FramePrecision, keys.HasOwnedSubLayers, keys.Owner, keys.SessionOwner, keys.StartTimeCode,
             keys.TimeCodesPerSecond, keys.EndFrame, keys.StartFrame});
    for (SdfSpecType type : {SdfSpecTypePrim, SdfSpecTypeVariant}) {
        _Define(type, {keys.Specifier},
                {keys.Comment, keys.InheritPaths, keys.Specializes, children.PrimChildren, keys.PrimOrder,
                 children.PropertyChildren, keys.PropertyOrder, keys.References, keys.Relocates,
                 keys.VariantSelection, children.VariantSetChildren, keys.VariantSetNames},
                {keys.Active, keys.AssetInfo, keys.CustomData, keys.DisplayGroupOrder, keys.DisplayName,
                 keys.Documentation, keys.Hidden, keys.Instanceable, keys.Kind, keys.Payload, keys.Permission,
                 keys.Prefix, keys.PrefixSubstitutions, keys.Suffix, keys.SuffixSubstitutions,
                 keys.SymmetricPeer, keys.SymmetryArguments, keys.SymmetryFunction, keys.TypeName});
    }
    const std::vector<TfToken> shared = {
        keys.AssetInfo,     keys.CustomData,    keys.DisplayGroup,      keys.DisplayName,
        keys.Documentation, keys.Hidden,        keys.Permission,        keys.Prefix,
        keys.Suffix,        keys.SymmetricPeer, keys.SymmetryArguments, keys.SymmetryFunction};
    _Define(SdfSpecTypeAttribute, {keys.Custom, keys.Variability, keys.TypeName},
            {keys.Comment, keys.Default, children.ConnectionChildren, keys.ConnectionPaths, keys.DisplayUnit,
             keys.Spline, keys.TimeSamples},
            shared);
    _Define(SdfSpecTypeAttribute, {}, {}, {keys.AllowedTokens, keys.ColorSpace});
    _Define(SdfSpecTypeRelationship, {keys.Custom, keys.Variability},
            {keys.Comment, keys.Default, children.RelationshipTargetChildren, keys.TargetPaths}, shared);
    _Define(SdfSpecTypeRelationship, {}, {}, {keys.NoLoadHint});
    _Define(SdfSpecTypeConnection, {}, {}, {});
    _Define(SdfSpecTypeRelationshipTarget, {}, {}, {});
    _Define(SdfSpecTypeVariantSet, {}, {children.VariantChildren}, {});
}

void SdfSchemaBase::_AddMetadata(const char* name, const VtValue& fallback,
                                 const std::vector<SdfSpecType>& specs, const char* displayGroup)
{
    const TfToken key(name);
    _Register(key, fallback)._isPlugin = true;
    for (SdfSpecType type : specs) {
        _specs[type]._fields[key].metadata = true;
        _specs[type]._fields[key].displayGroup = TfToken(displayGroup);
    }
}

// What OpenUSD's schema libraries declare beside the fixed fields.
void SdfSchemaBase::_RegisterSchemaMetadata()
{
    const std::vector<SdfSpecType> layers = {SdfSpecTypePseudoRoot};
    const std::vector<SdfSpecType> prims = {SdfSpecTypePrim, SdfSpecTypeVariant};
    const std::vector<SdfSpecType> attributes = {SdfSpecTypeAttribute};
    const std::vector<SdfSpecType> relationships = {SdfSpecTypeRelationship};
    const std::vector<SdfSpecType> properties = {SdfSpecTypeAttribute, SdfSpecTypeRelationship};
    const std::vector<SdfSpecType> primsAndAttributes = {SdfSpecTypePrim, SdfSpecTypeVariant,
                                                         SdfSpecTypeAttribute};

    _AddMetadata("fallbackPrimTypes", VtValue(VtDictionary()), layers);
    _AddMetadata("renderSettingsPrimPath", VtValue(std::string()), layers);
    _AddMetadata("kilogramsPerUnit", VtValue(1.0), layers, "Stage");
    _AddMetadata("metersPerUnit", VtValue(0.01), layers, "Stage");
    _AddMetadata("upAxis", VtValue(TfToken("Y")), layers, "Stage");
    _AddMetadata("apiSchemas", VtValue(SdfTokenListOp()), prims);
    _AddMetadata("clipSets", VtValue(SdfStringListOp()), prims);
    _AddMetadata("clips", VtValue(VtDictionary()), prims);
    _AddMetadata("inactiveIds", VtValue(SdfInt64ListOp()), prims);
    _AddMetadata("payloadAssetDependencies", VtValue(VtArray<SdfAssetPath>()), prims, "Pipeline");
    _AddMetadata("sdrMetadata", VtValue(VtDictionary()), primsAndAttributes, "Shading");
    _AddMetadata("bindMaterialAs", VtValue(TfToken()), relationships, "Shading");
    _AddMetadata("outputName", VtValue(TfToken()), relationships, "deprecated");
    _AddMetadata("renderType", VtValue(TfToken()), properties, "Rendering");
    _AddMetadata("connectability", VtValue(TfToken("full")), attributes, "Shading");
    _AddMetadata("constraintTargetIdentifier", VtValue(TfToken()), attributes);
    _AddMetadata("elementSize", VtValue(1), attributes, "Primvars");
    _AddMetadata("faceIndexPrimvar", VtValue(TfToken("ptexFaceIndex")), attributes);
    _AddMetadata("faceOffsetPrimvar", VtValue(TfToken("ptexFaceOffset")), attributes);
    _AddMetadata("interpolation", VtValue(TfToken("constant")), attributes, "Primvars");
    _AddMetadata("unauthoredValuesIndex", VtValue(-1), attributes, "Primvars");
    _AddMetadata("uvPrimvar", VtValue(TfToken()), attributes);
    _AddMetadata("weight", VtValue(0.0f), attributes, "BlendShape");
}

PXR_NAMESPACE_CLOSE_SCOPE
