#pragma once

#include <pxr/base/tf/anyWeakPtr.h>
#include <pxr/base/tf/declarePtrs.h>
#include <pxr/base/tf/diagnosticMgr.h>
#include <pxr/base/tf/error.h>
#include <pxr/base/tf/errorMark.h>
#include <pxr/base/tf/notice.h>
#include <pxr/base/tf/smallVector.h>
#include <pxr/base/tf/staticTokens.h>
#include <pxr/base/tf/status.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/base/tf/token.h>
#include <pxr/base/tf/warning.h>
#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/layerOffset.h>
#include <pxr/usd/usd/api.h>
#include <pxr/usd/usd/primDataHandle.h>
#include <pxr/usd/usd/timeCode.h>

#include <map>
#include <string>

PXR_NAMESPACE_OPEN_SCOPE

class UsdStage;
class UsdObject;
class UsdPrim;
class UsdProperty;
class UsdAttribute;
class UsdRelationship;
class UsdStageCache;
class VtValue;

TF_DECLARE_WEAK_AND_REF_PTRS(UsdStage);
typedef UsdStagePtr UsdStageWeakPtr;

/// Describes a stage or an object in words, for messages.
VESK_USD_API std::string UsdDescribe(const UsdObject& object);
VESK_USD_API std::string UsdDescribe(const UsdStageRefPtr& stage);
VESK_USD_API std::string UsdDescribe(const UsdStageWeakPtr& stage);
VESK_USD_API std::string UsdDescribe(const UsdStage* stage);
VESK_USD_API std::string UsdDescribe(const UsdStage& stage);
VESK_USD_API std::string UsdDescribe(const UsdStageCache& cache);

/// Metadata by key, in dictionary order.
typedef std::map<TfToken, VtValue, TfDictionaryLessThan> UsdMetadataValueMap;

/// Where a list edit puts a new item.
enum UsdListPosition
{
    UsdListPositionFrontOfPrependList,
    UsdListPositionBackOfPrependList,
    UsdListPositionFrontOfAppendList,
    UsdListPositionBackOfAppendList,
};

/// Whether loading a prim loads the payloads below it too.
enum UsdLoadPolicy
{
    UsdLoadWithDescendants,
    UsdLoadWithoutDescendants
};

/// The kinds of schemas.
enum class UsdSchemaKind
{
    Invalid,
    AbstractBase,
    AbstractTyped,
    ConcreteTyped,
    NonAppliedAPI,
    SingleApplyAPI,
    MultipleApplyAPI
};

PXR_NAMESPACE_CLOSE_SCOPE
