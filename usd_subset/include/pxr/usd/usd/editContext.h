#pragma once

#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/usd/common.h>
#include <pxr/usd/usd/editTarget.h>

#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

/// Sets a stage's edit target for as long as the context lives.
class VESK_USD_API UsdEditContext
{
public:
    /// Keeps the current target and restores it at the end.
    explicit UsdEditContext(const UsdStagePtr& stage);
    UsdEditContext(const UsdStagePtr& stage, const UsdEditTarget& editTarget);
    UsdEditContext(const std::pair<UsdStagePtr, UsdEditTarget>& stageTarget);
    ~UsdEditContext();
    UsdEditContext(const UsdEditContext&) = delete;
    UsdEditContext& operator=(const UsdEditContext&) = delete;

private:
    UsdStagePtr _stage;
    UsdEditTarget _originalEditTarget;
};

PXR_NAMESPACE_CLOSE_SCOPE
