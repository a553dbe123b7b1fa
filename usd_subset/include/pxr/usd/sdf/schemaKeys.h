#pragma once

/// The names of the fields of specs. Included by schema.h.

#include <pxr/base/tf/staticTokens.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

// clang-format off
#define SDF_FIELD_KEYS \
    ((Active, "active")) ((AllowedTokens, "allowedTokens")) ((AssetInfo, "assetInfo")) \
    ((ColorConfiguration, "colorConfiguration")) ((ColorManagementSystem, "colorManagementSystem")) \
    ((ColorSpace, "colorSpace")) ((Comment, "comment")) ((ConnectionPaths, "connectionPaths")) \
    ((Custom, "custom")) ((CustomData, "customData")) ((CustomLayerData, "customLayerData")) \
    ((Default, "default")) ((DefaultPrim, "defaultPrim")) ((DisplayGroup, "displayGroup")) \
    ((DisplayGroupOrder, "displayGroupOrder")) ((DisplayName, "displayName")) \
    ((DisplayUnit, "displayUnit")) ((Documentation, "documentation")) ((EndTimeCode, "endTimeCode")) \
    ((ExpressionVariables, "expressionVariables")) ((FramePrecision, "framePrecision")) \
    ((FramesPerSecond, "framesPerSecond")) ((Hidden, "hidden")) \
    ((HasOwnedSubLayers, "hasOwnedSubLayers")) ((InheritPaths, "inheritPaths")) \
    ((Instanceable, "instanceable")) ((Kind, "kind")) ((LayerRelocates, "layerRelocates")) \
    ((PrimOrder, "primOrder")) ((NoLoadHint, "noLoadHint")) ((Owner, "owner")) ((Payload, "payload")) \
    ((Permission, "permission")) ((Prefix, "prefix")) ((PrefixSubstitutions, "prefixSubstitutions")) \
    ((PropertyOrder, "propertyOrder")) ((References, "references")) ((Relocates, "relocates")) \
    ((SessionOwner, "sessionOwner")) ((Specializes, "specializes")) ((Specifier, "specifier")) \
    ((Spline, "spline")) ((StartTimeCode, "startTimeCode")) ((SubLayers, "subLayers")) \
    ((SubLayerOffsets, "subLayerOffsets")) ((Suffix, "suffix")) \
    ((SuffixSubstitutions, "suffixSubstitutions")) ((SymmetricPeer, "symmetricPeer")) \
    ((SymmetryArgs, "symmetryArgs")) ((SymmetryArguments, "symmetryArguments")) \
    ((SymmetryFunction, "symmetryFunction")) ((TargetPaths, "targetPaths")) \
    ((TimeSamples, "timeSamples")) ((TimeCodesPerSecond, "timeCodesPerSecond")) ((TypeName, "typeName")) \
    ((VariantSelection, "variantSelection")) ((Variability, "variability")) \
    ((VariantSetNames, "variantSetNames")) ((EndFrame, "endFrame")) ((StartFrame, "startFrame"))

#define SDF_CHILDREN_KEYS \
    ((ConnectionChildren, "connectionChildren")) ((ExpressionChildren, "expressionChildren")) \
    ((MapperArgChildren, "mapperArgChildren")) ((MapperChildren, "mapperChildren")) \
    ((PrimChildren, "primChildren")) ((PropertyChildren, "properties")) \
    ((RelationshipTargetChildren, "targetChildren")) ((VariantChildren, "variantChildren")) \
    ((VariantSetChildren, "variantSetChildren"))
// clang-format on

TF_DECLARE_PUBLIC_TOKENS(SdfFieldKeys, VESK_USD_API, SDF_FIELD_KEYS);
TF_DECLARE_PUBLIC_TOKENS(SdfChildrenKeys, VESK_USD_API, SDF_CHILDREN_KEYS);

PXR_NAMESPACE_CLOSE_SCOPE
