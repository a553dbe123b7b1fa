#pragma once

#include <utility>

#include <pxr/pxr.h>
#include <pxr/usd/usd/stage.h>

#include <vesk/framework/usd_document/bbox_cache_guard.h>

namespace vesk::framework::usd_document {

/// What a running task receives from its document. It keeps stage and cache alive; copies are cheap.
class DocumentExecContext
{
public:
    /// An empty context: no stage, a cache of its own.
    DocumentExecContext() = default;
    /// The context of a stage and its bounds cache.
    DocumentExecContext(PXR_NS::UsdStageRefPtr stage, UsdGeomBBoxCacheGuardWrapper bboxCacheGuard)
        : m_stage(std::move(stage)), m_bboxCacheGuard(std::move(bboxCacheGuard))
    {}

    /// The stage, null in an empty context.
    const PXR_NS::UsdStageRefPtr& stage() const { return m_stage; }
    /// The document's bounds cache, to be locked with a UsdGeomBBoxCacheLockGuard.
    const UsdGeomBBoxCacheGuardWrapper& bboxCacheGuard() const { return m_bboxCacheGuard; }

private:
    PXR_NS::UsdStageRefPtr m_stage;
    UsdGeomBBoxCacheGuardWrapper m_bboxCacheGuard;
};

} // namespace vesk::framework::usd_document
