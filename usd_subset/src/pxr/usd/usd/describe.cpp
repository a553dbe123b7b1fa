#include "pxr/usd/usd/stageImpl.h"

#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/common.h>
#include <pxr/usd/usd/object.h>
#include <pxr/usd/usd/relationship.h>
#include <pxr/usd/usd/stage.h>
#include <pxr/usd/usd/stageCache.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

std::string describePrim(const Usd_PrimData* prim, const SdfPath& proxyPath)
{
    if (!prim) {
        return "null prim";
    }
    const bool isDead = Usd_IsDead(prim);
    const std::string& type = prim->GetTypeName().GetString();
    const SdfPath& path = proxyPath.IsEmpty() ? prim->GetPath() : proxyPath;
    std::string text = isDead ? "expired " : prim->IsActive() ? "" : "inactive ";
    text += type.empty() ? "" : "'" + type + "' ";
    text += !proxyPath.IsEmpty() ? "instance proxy " : prim->IsInstance() ? "instance " : "";
    text += prim->IsInPrototype() ? "in prototype " : "";
    text += TfStringPrintf("prim <%s> ", path.GetText());
    if (!isDead) {
        text += "on " + UsdDescribe(prim->GetStage());
    }
    return text;
}

} // namespace

std::string UsdDescribe(const UsdObject& object)
{
    const std::string prim =
        describePrim(Usd_ObjectAccess::GetDataOrNull(object), Usd_ObjectAccess::GetProxyPath(object));
    if (object.Is<UsdPrim>()) {
        return prim;
    }
    const char* const kind = object.Is<UsdAttribute>()      ? "attribute"
                             : object.Is<UsdRelationship>() ? "relationship"
                                                            : "property";
    return TfStringPrintf("%s '%s' on %s", kind, Usd_ObjectAccess::GetPropertyName(object).GetText(),
                          prim.c_str());
}

std::string UsdDescribe(const UsdStage* stage)
{
    if (!stage) {
        return "null stage";
    }
    const SdfLayerHandle root = stage->GetRootLayer();
    const SdfLayerHandle session = stage->GetSessionLayer();
    return TfStringPrintf(
        "stage with rootLayer @%s@%s", root->GetIdentifier().c_str(),
        session ? TfStringPrintf(", sessionLayer @%s@", session->GetIdentifier().c_str()).c_str() : "");
}

std::string UsdDescribe(const UsdStage& stage) { return UsdDescribe(&stage); }

std::string UsdDescribe(const UsdStageRefPtr& stage) { return UsdDescribe(get_pointer(stage)); }

std::string UsdDescribe(const UsdStageWeakPtr& stage) { return UsdDescribe(get_pointer(stage)); }

std::string UsdDescribe(const UsdStageCache& cache)
{
    return TfStringPrintf("stage cache (size %zu)", cache.Size());
}

PXR_NAMESPACE_CLOSE_SCOPE
