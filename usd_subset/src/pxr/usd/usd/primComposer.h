#pragma once

#include "pxr/usd/usd/primIndexer.h"

#include <pxr/pxr.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/usd/api.h>
#include <pxr/usd/usd/primData.h>

#include <atomic>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// How many prims, and places that they get their opinions from, a stage may have. References below
/// references multiply them: a few lines can ask for more than any memory holds. Thread: any.
VESK_USD_API std::atomic<size_t>& Usd_MostPlaces();

/// Makes and remakes the tree of composed prims. Prims that are there before and after stay the same objects,
/// so that handles on them stay good.
class Usd_PrimComposer
{
public:
    explicit Usd_PrimComposer(Usd_StageImpl& stage);

    /// Composes the whole stage.
    void ComposeAll();
    /// Composes the prims at the paths, and all below them, anew.
    /// @param paths sorted, none below another
    void Recompose(const SdfPathVector& paths);
    /// Updates one prim after specs without opinions of their own came or went.
    void RecomposeSpecs(const SdfPath& path);
    /// Updates the type of one prim.
    void RecomposeType(const SdfPath& path);

private:
    void _RecomposeSubtrees(const SdfPathVector& paths);
    void _ComposePrototypes();
    void _ComposeSubtree(Usd_PrimDataPtr top);
    void _ComposePrim(Usd_PrimDataPtr prim);
    void _ComposeType(Usd_PrimDataPtr prim);
    void _ComposeFlags(Usd_PrimDataPtr prim);
    void _ComposeClips(Usd_PrimDataPtr prim);
    /// Forgets what the stage keeps of a prim and all below it.
    void _Forget(Usd_PrimDataPtr prim);
    void _ComposeChildren(Usd_PrimDataPtr prim, std::vector<Usd_PrimDataPtr>* added);

    Usd_StageImpl& _stage;
    Usd_PrimIndexer _indexer;
};

PXR_NAMESPACE_CLOSE_SCOPE
