#pragma once

#include <pxr/base/tf/staticData.h>
#include <pxr/base/tf/token.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Names that the core schemas use.
struct UsdTokensType
{
    VESK_USD_API UsdTokensType();

    const TfToken apiSchemas;
    const TfToken clips;
    const TfToken clipSets;
    const TfToken collection;
    const TfToken collection_MultipleApplyTemplate_;
    const TfToken collection_MultipleApplyTemplate_Excludes;
    const TfToken collection_MultipleApplyTemplate_ExpansionRule;
    const TfToken collection_MultipleApplyTemplate_IncludeRoot;
    const TfToken collection_MultipleApplyTemplate_Includes;
    const TfToken collection_MultipleApplyTemplate_MembershipExpression;
    const TfToken exclude;
    const TfToken expandPrims;
    const TfToken expandPrimsAndProperties;
    const TfToken explicitOnly;
    const TfToken fallbackPrimTypes;
    const TfToken APISchemaBase;
    const TfToken ClipsAPI;
    const TfToken CollectionAPI;
    const TfToken ModelAPI;
    const TfToken Typed;
    const std::vector<TfToken> allTokens;
};

extern VESK_USD_API TfStaticData<UsdTokensType> UsdTokens;

PXR_NAMESPACE_CLOSE_SCOPE
