#include "pxr/usd/usd/primTable.h"

#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

Usd_PrimTable::~Usd_PrimTable() { Clear(); }

Usd_PrimDataPtr Usd_PrimTable::Add(UsdStage* stage, const SdfPath& path)
{
    const Usd_PrimDataPtr prim = new Usd_PrimData(stage, path);
    Usd_RetainPrimData(prim);
    _prims.FindOrAdd(path).prim = prim;
    if (path.IsAbsoluteRootPath()) {
        _pseudoRoot = prim;
    }
    return prim;
}

void Usd_PrimTable::RemoveSubtree(Usd_PrimDataPtr top)
{
    std::vector<Usd_PrimDataPtr> doomed{top};
    for (size_t i = 0; i != doomed.size(); ++i) {
        for (Usd_PrimDataPtr child = doomed[i]->_firstChild; child; child = child->_nextSibling) {
            doomed.push_back(child);
        }
    }
    for (const Usd_PrimDataPtr prim : doomed) {
        _prims.Erase(prim->_path);
        _Remove(prim);
    }
}

void Usd_PrimTable::Clear()
{
    ForEach([this](Usd_PrimDataPtr prim) { _Remove(prim); });
    _prims = Sdf_SpecTableOf<_Entry>();
    _pseudoRoot = nullptr;
}

void Usd_PrimTable::_Remove(Usd_PrimDataPtr prim)
{
    prim->isDead = true;
    prim->_stage = nullptr;
    prim->_index.reset();
    prim->_parent = prim->_firstChild = prim->_nextSibling = nullptr;
    Usd_ReleasePrimData(prim);
}

PXR_NAMESPACE_CLOSE_SCOPE
