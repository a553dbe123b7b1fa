#pragma once

#include "pxr/usd/usd/primIndex.h"

#include <pxr/pxr.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/specTable.h>
#include <pxr/usd/usd/primData.h>

PXR_NAMESPACE_OPEN_SCOPE

/// The composed prims of a stage by path. The table counts each of them once.
class Usd_PrimTable
{
public:
    Usd_PrimTable() = default;
    ~Usd_PrimTable();
    Usd_PrimTable(const Usd_PrimTable&) = delete;
    Usd_PrimTable& operator=(const Usd_PrimTable&) = delete;

    Usd_PrimDataPtr Find(const SdfPath& path) const
    {
        const _Entry* const found = _prims.Find(path);
        return found ? found->prim : nullptr;
    }
    Usd_PrimDataPtr GetPseudoRoot() const { return _pseudoRoot; }
    size_t GetSize() const { return _prims.GetSize(); }

    /// Adds an uncomposed prim.
    Usd_PrimDataPtr Add(UsdStage* stage, const SdfPath& path);
    /// Removes a prim and all below it; handles on them turn false.
    void RemoveSubtree(Usd_PrimDataPtr prim);
    void Clear();

    template <class Function>
    void ForEach(const Function& function) const
    {
        _prims.ForEach([&function](const _Entry& entry) {
            function(entry.prim);
            return true;
        });
    }

private:
    struct _Entry
    {
        SdfPath path;
        Usd_PrimDataPtr prim = nullptr;
    };

    void _Remove(Usd_PrimDataPtr prim);

    Sdf_SpecTableOf<_Entry> _prims;
    Usd_PrimDataPtr _pseudoRoot = nullptr;
};

PXR_NAMESPACE_CLOSE_SCOPE
