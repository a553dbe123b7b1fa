#include "pxr/usd/usd/primComposer.h"

#include "pxr/usd/usd/primFields.h"
#include "pxr/usd/usd/primTypeInfoCache.h"
#include "pxr/usd/usd/stageImpl.h"

#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/kind/registry.h>
#include <pxr/usd/sdf/schema.h>

#include <algorithm>
#include <set>
#include <unordered_map>

PXR_NAMESPACE_OPEN_SCOPE

std::atomic<size_t>& Usd_MostPlaces()
{
    static std::atomic<size_t> most{8000000}; // about 5 GiB
    return most;
}

Usd_PrimComposer::Usd_PrimComposer(Usd_StageImpl& stage) : _stage(stage), _indexer(stage) {}

void Usd_PrimComposer::ComposeAll()
{
    Usd_PrimDataPtr root = _stage.prims.GetPseudoRoot();
    if (!root) {
        root = _stage.prims.Add(_stage.stage, SdfPath::AbsoluteRootPath());
    }
    _stage.ReadFallbackTypes();
    _ComposeSubtree(root);
    _ComposePrototypes();
}

void Usd_PrimComposer::Recompose(const SdfPathVector& paths)
{
    if (!paths.empty() && paths.front().IsAbsoluteRootPath()) {
        ComposeAll();
        return;
    }
    _RecomposeSubtrees(paths);
    _ComposePrototypes();
}

void Usd_PrimComposer::_RecomposeSubtrees(const SdfPathVector& paths)
{
    std::set<Usd_PrimDataPtr> parents;
    for (const SdfPath& path : paths) {
        const Usd_PrimDataPtr parent = _stage.prims.Find(path.GetParentPath());
        if (!parent) {
            continue; // below an inactive prim nothing is composed
        }
        std::vector<Usd_PrimDataPtr> added;
        if (parents.insert(parent).second) {
            _ComposeChildren(parent, &added);
        }
        for (const Usd_PrimDataPtr prim : added) {
            _ComposeSubtree(prim);
        }
        const Usd_PrimDataPtr prim = _stage.prims.Find(path);
        if (prim && std::find(added.begin(), added.end(), prim) == added.end()) {
            _ComposeSubtree(prim);
        }
    }
}

void Usd_PrimComposer::RecomposeSpecs(const SdfPath& path)
{
    const Usd_PrimDataPtr prim = _stage.prims.Find(path);
    if (prim) {
        _ComposePrim(prim);
    }
}

void Usd_PrimComposer::RecomposeType(const SdfPath& path)
{
    if (const Usd_PrimDataPtr prim = _stage.prims.Find(path)) {
        _ComposeType(prim);
    }
}

void Usd_PrimComposer::_ComposeSubtree(Usd_PrimDataPtr top)
{
    _Forget(top);
    std::vector<Usd_PrimDataPtr> todo{top};
    while (!todo.empty()) {
        const Usd_PrimDataPtr prim = todo.back();
        todo.pop_back();
        _ComposePrim(prim);
        _ComposeChildren(prim, nullptr);
        const auto firstChild = static_cast<std::ptrdiff_t>(todo.size());
        for (Usd_PrimDataPtr child = prim->_firstChild; child; child = child->_nextSibling) {
            todo.push_back(child);
        }
        std::reverse(todo.begin() + firstChild, todo.end()); // the first child is the next to be composed
    }
}

void Usd_PrimComposer::_ComposePrim(Usd_PrimDataPtr prim)
{
    prim->_index = prim->_parent ? _indexer.ComputeChild(*prim->_parent->_index, prim->GetName())
                                 : _indexer.ComputePseudoRoot();
    _ComposeType(prim);
    _ComposeFlags(prim);
    _ComposeClips(prim);
    if (prim->IsInstance()) {
        _stage.prototypes.Register(prim->_path, *prim->_index);
    }
}

// Prototypes are composed after all that may use them; those inside of others come up on the way.
void Usd_PrimComposer::_ComposePrototypes()
{
    while (const Usd_Prototype* const prototype = _stage.prototypes.TakeStale()) {
        const Usd_PrimDataPtr source = _stage.prims.Find(prototype->source);
        Usd_PrimDataPtr prim = _stage.prims.Find(prototype->path);
        if (!prim) {
            prim = _stage.prims.Add(_stage.stage, prototype->path);
            prim->_parent = _stage.prims.GetPseudoRoot();
        }
        prim->_index = Usd_Prototypes::MakeSharedIndex(*source->_index);
        Usd_PrimFlagBits flags;
        for (const Usd_PrimFlags flag :
             {Usd_PrimActiveFlag, Usd_PrimLoadedFlag, Usd_PrimModelFlag, Usd_PrimGroupFlag,
              Usd_PrimDefinedFlag, Usd_PrimHasDefiningSpecifierFlag, Usd_PrimPrototypeFlag}) {
            flags.set(flag);
        }
        prim->_flags = flags;
        _ComposeChildren(prim, nullptr);
        for (Usd_PrimDataPtr child = prim->_firstChild; child; child = child->_nextSibling) {
            _ComposeSubtree(child);
        }
    }
    for (const SdfPath& path : _stage.prototypes.TakeUnused()) {
        if (const Usd_PrimDataPtr prim = _stage.prims.Find(path)) {
            _stage.prototypes.UnregisterBelow(path);
            _stage.clips.InvalidateBelow(path);
            _stage.prims.RemoveSubtree(prim);
        }
    }
    _stage.clips.DropRetired();
}

void Usd_PrimComposer::_ComposeType(Usd_PrimDataPtr prim)
{
    if (!prim->_parent) {
        prim->_typeInfo = &UsdPrimTypeInfo::GetEmptyPrimType();
        return;
    }
    const TfToken type = Usd_PrimFields::GetTypeName(*prim->_index);
    prim->_typeInfo = &Usd_PrimTypeInfoCache::GetInstance().FindOrCreate(
        type, _stage.FindFallbackType(type), Usd_PrimFields::GetAppliedSchemas(*prim->_index));
}

void Usd_PrimComposer::_ComposeFlags(Usd_PrimDataPtr prim)
{
    Usd_PrimFlagBits flags;
    const Usd_PrimData* const parent = prim->_parent;
    if (!parent) {
        for (const Usd_PrimFlags flag :
             {Usd_PrimActiveFlag, Usd_PrimLoadedFlag, Usd_PrimModelFlag, Usd_PrimGroupFlag,
              Usd_PrimDefinedFlag, Usd_PrimHasDefiningSpecifierFlag, Usd_PrimPseudoRootFlag}) {
            flags.set(flag);
        }
        prim->_flags = flags;
        return;
    }
    const Usd_PrimIndex& index = *prim->_index;
    const bool active = Usd_PrimFields::IsActive(index);
    flags[Usd_PrimActiveFlag] = active;
    flags[Usd_PrimHasPayloadFlag] = index.HasPayloads();
    flags[Usd_PrimLoadedFlag] =
        active && (index.HasPayloads() ? _stage.loadRules.IsLoaded(index.GetPath()) : parent->IsLoaded());
    const TfToken kind = parent->IsGroup() ? Usd_PrimFields::GetKind(index) : TfToken();
    if (!kind.IsEmpty()) {
        flags[Usd_PrimGroupFlag] = KindRegistry::IsGroup(kind);
        flags[Usd_PrimComponentFlag] = KindRegistry::IsComponent(kind);
        flags[Usd_PrimModelFlag] =
            flags[Usd_PrimGroupFlag] || flags[Usd_PrimComponentFlag] || KindRegistry::IsModel(kind);
    }
    const SdfSpecifier specifier = Usd_PrimFields::GetSpecifier(index);
    flags[Usd_PrimAbstractFlag] = parent->IsAbstract() || specifier == SdfSpecifierClass;
    flags[Usd_PrimHasDefiningSpecifierFlag] = SdfIsDefiningSpecifier(specifier);
    flags[Usd_PrimDefinedFlag] = SdfIsDefiningSpecifier(specifier) && parent->IsDefined();
    flags[Usd_PrimInstanceFlag] = active && index.IsInstanceable();
    flags[Usd_PrimPrototypeFlag] = parent->IsInPrototype();
    prim->_flags = flags;
}

void Usd_PrimComposer::_ComposeClips(Usd_PrimDataPtr prim)
{
    if (prim->_parent) {
        prim->_flags[Usd_PrimClipsFlag] =
            _stage.clips.Populate(prim->_path, *prim->_index) || prim->_parent->MayHaveOpinionsInClips();
    }
}

void Usd_PrimComposer::_Forget(Usd_PrimDataPtr prim)
{
    _stage.dependencies.RemoveBelow(prim->_index ? prim->_index->GetPath() : prim->_path);
    _stage.prototypes.UnregisterBelow(prim->_path);
    _stage.clips.InvalidateBelow(prim->_path);
}

void Usd_PrimComposer::_ComposeChildren(Usd_PrimDataPtr prim, std::vector<Usd_PrimDataPtr>* added)
{
    std::unordered_map<TfToken, Usd_PrimDataPtr, TfToken::HashFunctor> before;
    for (Usd_PrimDataPtr child = prim->_firstChild; child; child = child->_nextSibling) {
        before[child->GetName()] = child;
    }
    Usd_PrimDataPtr* link = &prim->_firstChild;
    if (prim->IsActive() && !prim->IsInstance()) {
        for (const TfToken& name : prim->_index->ComputeChildNames()) {
            const auto known = before.find(name);
            if (known != before.end()) {
                *link = known->second;
                before.erase(known);
            } else if (_stage.prims.GetSize() + *_stage.placeCount >= Usd_MostPlaces()) {
                _stage.WarnOnceOf(
                    "places",
                    TfStringPrintf("The stage has %zu prims, which get their opinions from %zu places; what "
                                   "else there is below <%s>, and below others, was left out. Use instances.",
                                   _stage.prims.GetSize(), _stage.placeCount->load(), prim->_path.GetText()));
                continue;
            } else {
                *link = _stage.prims.Add(_stage.stage, prim->_path.AppendChild(name));
                (*link)->_parent = prim;
                if (added) {
                    added->push_back(*link);
                }
            }
            link = &(*link)->_nextSibling;
        }
    }
    *link = nullptr;
    for (const auto& gone : before) {
        _Forget(gone.second);
        _stage.prims.RemoveSubtree(gone.second);
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
