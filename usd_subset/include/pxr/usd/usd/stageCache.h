#pragma once

#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/usd/common.h>

#include <memory>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Keeps stages, so that those who ask for the same one share it.
///
/// Thread: any.
class VESK_USD_API UsdStageCache
{
public:
    /// Names a stage in a cache.
    class Id
    {
    public:
        Id() = default;
        static Id FromLongInt(long int val) { return Id(val); }
        long int ToLongInt() const { return _value; }
        bool IsValid() const { return _value != -1; }
        explicit operator bool() const { return IsValid(); }
        friend bool operator==(const Id& a, const Id& b) { return a._value == b._value; }
        friend bool operator!=(const Id& a, const Id& b) { return !(a == b); }
        friend bool operator<(const Id& a, const Id& b) { return a._value < b._value; }

    private:
        explicit Id(long int value) : _value(value) {}
        long int _value = -1;
    };

    UsdStageCache();
    UsdStageCache(const UsdStageCache& other);
    UsdStageCache& operator=(const UsdStageCache& other);
    ~UsdStageCache();

    std::vector<UsdStageRefPtr> GetAllStages() const;
    size_t Size() const;
    bool IsEmpty() const { return Size() == 0; }

    UsdStageRefPtr Find(Id id) const;
    UsdStageRefPtr FindOneMatching(const SdfLayerHandle& rootLayer) const;
    UsdStageRefPtr FindOneMatching(const SdfLayerHandle& rootLayer, const SdfLayerHandle& sessionLayer) const;
    std::vector<UsdStageRefPtr> FindAllMatching(const SdfLayerHandle& rootLayer) const;
    Id GetId(const UsdStageRefPtr& stage) const;
    bool Contains(const UsdStageRefPtr& stage) const { return GetId(stage).IsValid(); }
    bool Contains(Id id) const { return static_cast<bool>(Find(id)); }

    /// Adds a stage; one that is there keeps its id.
    Id Insert(const UsdStageRefPtr& stage);
    bool Erase(Id id);
    bool Erase(const UsdStageRefPtr& stage);
    void Clear();

private:
    struct _State;
    std::unique_ptr<_State> _state;
};

PXR_NAMESPACE_CLOSE_SCOPE
