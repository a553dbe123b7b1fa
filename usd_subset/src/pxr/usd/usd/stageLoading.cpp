#include "pxr/usd/usd/changeProcessor.h"
#include "pxr/usd/usd/primIndex.h"
#include "pxr/usd/usd/stageImpl.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/usd/primRange.h>
#include <pxr/usd/usd/stage.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

bool canLoad(const SdfPath& path, const char* verb)
{
    if (!path.IsAbsolutePath() || !path.IsAbsoluteRootOrPrimPath()) {
        TF_CODING_ERROR("Attempted to %s a path that is no absolute prim path <%s>", verb, path.GetText());
        return false;
    }
    if (UsdPrim::IsPathInPrototype(path)) {
        TF_CODING_ERROR("Attempted to %s a prim in a prototype <%s>", verb, path.GetText());
        return false;
    }
    return true;
}

// Loading a prim loads its ancestors: the highest of them that is not loaded is where composition begins.
SdfPath firstUnloaded(const Usd_StageImpl& stage, SdfPath path)
{
    while (!path.IsAbsoluteRootPath()) {
        const Usd_PrimData* const parent = stage.prims.Find(path.GetParentPath());
        if (parent && parent->IsLoaded()) {
            break;
        }
        path = path.GetParentPath();
    }
    return path;
}

} // namespace

UsdPrim UsdStage::Load(const SdfPath& path, UsdLoadPolicy policy)
{
    LoadAndUnload({path}, {}, policy);
    return GetPrimAtPath(path);
}

void UsdStage::Unload(const SdfPath& path) { LoadAndUnload({}, {path}); }

void UsdStage::LoadAndUnload(const SdfPathSet& loadSet, const SdfPathSet& unloadSet, UsdLoadPolicy policy)
{
    SdfPathSet loads;
    SdfPathSet unloads;
    SdfPathSet changed;
    for (const SdfPath& path : loadSet) {
        if (canLoad(path, "load")) {
            loads.insert(path);
            changed.insert(firstUnloaded(*_impl, path));
        }
    }
    for (const SdfPath& path : unloadSet) {
        if (canLoad(path, "unload")) {
            unloads.insert(path);
            changed.insert(path);
        }
    }
    const UsdStageLoadRules before = _impl->loadRules;
    _impl->loadRules.LoadAndUnload(loads, unloads, policy);
    if (_impl->loadRules != before) {
        Usd_ChangeProcessor(*_impl).ProcessPathChanges({changed.begin(), changed.end()});
    }
}

SdfPathSet UsdStage::GetLoadSet()
{
    SdfPathSet loaded;
    for (const SdfPath& path : FindLoadable()) {
        const Usd_PrimData* const prim = _impl->prims.Find(path);
        if (prim && prim->IsLoaded()) {
            loaded.insert(path);
        }
    }
    return loaded;
}

SdfPathSet UsdStage::FindLoadable(const SdfPath& rootPath)
{
    SdfPathSet loadable;
    _impl->prims.ForEach([&](const Usd_PrimData* prim) {
        if (prim->HasPayload() && !prim->IsInPrototype() && prim->GetPath().HasPrefix(rootPath)) {
            loadable.insert(prim->GetPath());
        }
    });
    return loadable;
}

const UsdStageLoadRules& UsdStage::GetLoadRules() const { return _impl->loadRules; }

void UsdStage::SetLoadRules(const UsdStageLoadRules& rules)
{
    if (rules != _impl->loadRules) {
        _impl->loadRules = rules;
        Usd_ChangeProcessor(*_impl).ProcessPathChanges({SdfPath::AbsoluteRootPath()});
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
