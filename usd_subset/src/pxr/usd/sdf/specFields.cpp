#include "pxr/usd/sdf/specInfo.h"

#include <pxr/usd/sdf/attributeSpec.h>
#include <pxr/usd/sdf/primSpec.h>
#include <pxr/usd/sdf/propertySpec.h>

PXR_NAMESPACE_OPEN_SCOPE

SDF_SPEC_INFO(SdfPrimSpec, TfToken, const std::string&, TypeName)
SDF_SPEC_INFO(SdfPrimSpec, std::string, const std::string&, Comment)
SDF_SPEC_INFO(SdfPrimSpec, std::string, const std::string&, Documentation)
SDF_SPEC_OPTIONAL_INFO(SdfPrimSpec, bool, bool, Active)
SDF_SPEC_INFO(SdfPrimSpec, bool, bool, Hidden)
SDF_SPEC_OPTIONAL_INFO(SdfPrimSpec, TfToken, const TfToken&, Kind)
SDF_SPEC_INFO(SdfPrimSpec, TfToken, const TfToken&, SymmetryFunction)
SDF_SPEC_DICTIONARY(SdfPrimSpec, SymmetryArguments, SetSymmetryArgument)
SDF_SPEC_INFO(SdfPrimSpec, std::string, const std::string&, SymmetricPeer)
SDF_SPEC_INFO(SdfPrimSpec, std::string, const std::string&, Prefix)
SDF_SPEC_INFO(SdfPrimSpec, std::string, const std::string&, Suffix)
SDF_SPEC_DICTIONARY(SdfPrimSpec, CustomData, SetCustomData)
SDF_SPEC_DICTIONARY(SdfPrimSpec, AssetInfo, SetAssetInfo)
SDF_SPEC_INFO(SdfPrimSpec, SdfSpecifier, SdfSpecifier, Specifier)
SDF_SPEC_INFO(SdfPrimSpec, SdfPermission, SdfPermission, Permission)
SDF_SPEC_INFO(SdfPrimSpec, VtDictionary, const VtDictionary&, PrefixSubstitutions)
SDF_SPEC_INFO(SdfPrimSpec, VtDictionary, const VtDictionary&, SuffixSubstitutions)
SDF_SPEC_OPTIONAL_INFO(SdfPrimSpec, bool, bool, Instanceable)

SDF_SPEC_DICTIONARY(SdfPropertySpec, CustomData, SetCustomData)
SDF_SPEC_DICTIONARY(SdfPropertySpec, AssetInfo, SetAssetInfo)
SDF_SPEC_INFO(SdfPropertySpec, std::string, const std::string&, DisplayGroup)
SDF_SPEC_INFO(SdfPropertySpec, std::string, const std::string&, DisplayName)
SDF_SPEC_INFO(SdfPropertySpec, std::string, const std::string&, Documentation)
SDF_SPEC_INFO(SdfPropertySpec, bool, bool, Hidden)
SDF_SPEC_INFO(SdfPropertySpec, SdfPermission, SdfPermission, Permission)
SDF_SPEC_INFO(SdfPropertySpec, std::string, const std::string&, Prefix)
SDF_SPEC_INFO(SdfPropertySpec, std::string, const std::string&, Suffix)
SDF_SPEC_INFO(SdfPropertySpec, std::string, const std::string&, SymmetricPeer)
SDF_SPEC_DICTIONARY(SdfPropertySpec, SymmetryArguments, SetSymmetryArgument)
SDF_SPEC_INFO(SdfPropertySpec, TfToken, const TfToken&, SymmetryFunction)
SDF_SPEC_INFO(SdfPropertySpec, std::string, const std::string&, Comment)

SDF_SPEC_OPTIONAL_INFO(SdfAttributeSpec, VtTokenArray, const VtTokenArray&, AllowedTokens)
SDF_SPEC_OPTIONAL_INFO(SdfAttributeSpec, TfToken, const TfToken&, ColorSpace)

PXR_NAMESPACE_CLOSE_SCOPE
