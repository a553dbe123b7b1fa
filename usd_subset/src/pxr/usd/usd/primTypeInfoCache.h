#pragma once

#include <pxr/base/tf/token.h>
#include <pxr/pxr.h>
#include <pxr/usd/usd/primTypeInfo.h>

#include <map>
#include <memory>
#include <mutex>
#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

/// The type infos of all prims of the process.
///
/// Thread: any.
class Usd_PrimTypeInfoCache
{
public:
    static Usd_PrimTypeInfoCache& GetInstance();

    const UsdPrimTypeInfo& FindOrCreate(const TfToken& typeName, const TfTokenVector& appliedSchemas);

private:
    using _Key = std::pair<TfToken, TfTokenVector>;

    static std::unique_ptr<const UsdPrimTypeInfo> _Make(const TfToken& typeName,
                                                        const TfTokenVector& appliedSchemas);

    std::mutex _mutex;
    std::map<_Key, std::unique_ptr<const UsdPrimTypeInfo>> _infos;
};

PXR_NAMESPACE_CLOSE_SCOPE
