#include "pxr/usd/usd/primTable.h"

#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

Usd_PrimTable::~Usd_PrimTable() { Clear(); }

Usd_PrimDataPtr Usd_PrimTable::Add(UsdStage* stage, const SdfPath& path)
{
    const Usd_PrimDataPtr prim = new Usd_PrimData(stage, path);
    Usd_RetainPrimData(prim);
    _prims[path] = prim;
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
        _prims.erase(prim->_path);
        _Remove(prim);
    }
}

void Usd_PrimTable::Clear()
{
    for (const auto& entry : _prims) {
        _Remove(entry.second);
    }
    _prims.clear();
    _pseudoRoot = nullptr;
}

void Usd_PrimTable::_Remove(Usd_PrimDataPtr prim)
{
    prim->_flags[Usd_PrimDeadFlag] = true;
    prim->_stage = nullptr;
    prim->_index.reset();
    prim->_parent = prim->_firstChild = prim->_nextSibling = nullptr;
    Usd_ReleasePrimData(prim);
}

PXR_NAMESPACE_CLOSE_SCOPE
