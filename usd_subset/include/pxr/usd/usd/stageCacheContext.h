#pragma once

#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/usd/stageCache.h>

#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// A cache that stages are taken from and not added to.
struct Usd_NonPopulatingStageCacheWrapper
{
    explicit Usd_NonPopulatingStageCacheWrapper(const UsdStageCache& stages) : cache(stages) {}
    const UsdStageCache& cache;
};

template <class StageCache>
Usd_NonPopulatingStageCacheWrapper UsdUseButDoNotPopulateCache(StageCache& cache)
{
    return Usd_NonPopulatingStageCacheWrapper(cache);
}

/// What a context that names no cache keeps from happening.
enum UsdStageCacheContextBlockType
{
    UsdBlockStageCaches,
    UsdBlockStageCachePopulation,
    Usd_NoBlock
};

/// Makes UsdStage::Open on this thread look into a cache, and add to it, for as long as the context lives.
class VESK_USD_API UsdStageCacheContext
{
public:
    explicit UsdStageCacheContext(UsdStageCache& cache);
    explicit UsdStageCacheContext(Usd_NonPopulatingStageCacheWrapper holder);
    explicit UsdStageCacheContext(UsdStageCacheContextBlockType blockType);
    ~UsdStageCacheContext();
    UsdStageCacheContext(const UsdStageCacheContext&) = delete;
    UsdStageCacheContext& operator=(const UsdStageCacheContext&) = delete;

private:
    friend class Usd_StageOpener;
    static std::vector<const UsdStageCache*> _GetReadableCaches();
    static std::vector<UsdStageCache*> _GetWritableCaches();

    const UsdStageCache* _readable = nullptr;
    UsdStageCache* _writable = nullptr;
    UsdStageCacheContextBlockType _blockType = Usd_NoBlock;
    UsdStageCacheContext* _outer = nullptr;
};

PXR_NAMESPACE_CLOSE_SCOPE
