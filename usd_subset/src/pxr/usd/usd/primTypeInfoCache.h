#pragma once

#include <pxr/base/tf/token.h>
#include <pxr/pxr.h>
#include <pxr/usd/usd/primTypeInfo.h>

#include <map>
#include <memory>
#include <mutex>
#include <tuple>

PXR_NAMESPACE_OPEN_SCOPE

/// The type infos of all prims of the process.
///
/// Thread: any.
class Usd_PrimTypeInfoCache
{
public:
    static Usd_PrimTypeInfoCache& GetInstance();

    /// @param fallbackType the type that stands in for one that the schema registry does not know; may be
    /// empty
    const UsdPrimTypeInfo& FindOrCreate(const TfToken& typeName, const TfToken& fallbackType,
                                        const TfTokenVector& appliedSchemas);

private:
    using _Key = std::tuple<TfToken, TfToken, TfTokenVector>;

    static std::unique_ptr<const UsdPrimTypeInfo> _Make(const _Key& key);

    std::mutex _mutex;
    std::map<_Key, std::unique_ptr<const UsdPrimTypeInfo>> _infos;
};

PXR_NAMESPACE_CLOSE_SCOPE
