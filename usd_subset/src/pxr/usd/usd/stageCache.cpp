#include <pxr/usd/usd/stageCache.h>

#include <pxr/usd/usd/stage.h>
#include <pxr/usd/usd/stageCacheContext.h>

#include <atomic>
#include <map>
#include <mutex>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// Ids are unique in the process, so that one of another cache is not mistaken for one of this.
std::atomic<long> s_lastId{9223000};

thread_local UsdStageCacheContext* t_innermost = nullptr;

} // namespace

struct UsdStageCache::_State
{
    mutable std::mutex mutex;
    std::map<long, UsdStageRefPtr> stages;
};

UsdStageCache::UsdStageCache() : _state(std::make_unique<_State>()) {}

UsdStageCache::UsdStageCache(const UsdStageCache& other) : UsdStageCache()
{
    const std::lock_guard<std::mutex> lock(other._state->mutex);
    _state->stages = other._state->stages;
}

UsdStageCache& UsdStageCache::operator=(const UsdStageCache& other)
{
    if (this != &other) {
        UsdStageCache copy(other);
        std::swap(_state, copy._state);
    }
    return *this;
}

UsdStageCache::~UsdStageCache() = default;

std::vector<UsdStageRefPtr> UsdStageCache::GetAllStages() const
{
    const std::lock_guard<std::mutex> lock(_state->mutex);
    std::vector<UsdStageRefPtr> stages;
    for (const auto& entry : _state->stages) {
        stages.push_back(entry.second);
    }
    return stages;
}

size_t UsdStageCache::Size() const
{
    const std::lock_guard<std::mutex> lock(_state->mutex);
    return _state->stages.size();
}

UsdStageRefPtr UsdStageCache::Find(Id id) const
{
    const std::lock_guard<std::mutex> lock(_state->mutex);
    const auto found = _state->stages.find(id.ToLongInt());
    return found == _state->stages.end() ? UsdStageRefPtr() : found->second;
}

UsdStageRefPtr UsdStageCache::FindOneMatching(const SdfLayerHandle& rootLayer) const
{
    const std::vector<UsdStageRefPtr> found = FindAllMatching(rootLayer);
    return found.empty() ? UsdStageRefPtr() : found.front();
}

UsdStageRefPtr UsdStageCache::FindOneMatching(const SdfLayerHandle& rootLayer,
                                              const SdfLayerHandle& sessionLayer) const
{
    for (const UsdStageRefPtr& stage : FindAllMatching(rootLayer)) {
        if (stage->GetSessionLayer() == sessionLayer) {
            return stage;
        }
    }
    return UsdStageRefPtr();
}

std::vector<UsdStageRefPtr> UsdStageCache::FindAllMatching(const SdfLayerHandle& rootLayer) const
{
    std::vector<UsdStageRefPtr> found;
    for (const UsdStageRefPtr& stage : GetAllStages()) {
        if (stage->GetRootLayer() == rootLayer) {
            found.push_back(stage);
        }
    }
    return found;
}

UsdStageCache::Id UsdStageCache::GetId(const UsdStageRefPtr& stage) const
{
    const std::lock_guard<std::mutex> lock(_state->mutex);
    for (const auto& entry : _state->stages) {
        if (entry.second == stage) {
            return Id::FromLongInt(entry.first);
        }
    }
    return Id();
}

UsdStageCache::Id UsdStageCache::Insert(const UsdStageRefPtr& stage)
{
    if (!stage) {
        return Id();
    }
    if (const Id known = GetId(stage)) {
        return known;
    }
    const std::lock_guard<std::mutex> lock(_state->mutex);
    const long id = ++s_lastId;
    _state->stages[id] = stage;
    return Id::FromLongInt(id);
}

bool UsdStageCache::Erase(Id id)
{
    UsdStageRefPtr erased; // outlives the lock: a stage that ends here does so without it
    const std::lock_guard<std::mutex> lock(_state->mutex);
    const auto found = _state->stages.find(id.ToLongInt());
    if (found == _state->stages.end()) {
        return false;
    }
    erased = found->second;
    _state->stages.erase(found);
    return true;
}

bool UsdStageCache::Erase(const UsdStageRefPtr& stage) { return Erase(GetId(stage)); }

void UsdStageCache::Clear()
{
    std::map<long, UsdStageRefPtr> erased;
    const std::lock_guard<std::mutex> lock(_state->mutex);
    erased.swap(_state->stages);
}

UsdStageCacheContext::UsdStageCacheContext(UsdStageCache& cache)
    : _readable(&cache), _writable(&cache), _outer(t_innermost)
{
    t_innermost = this;
}

UsdStageCacheContext::UsdStageCacheContext(Usd_NonPopulatingStageCacheWrapper holder)
    : _readable(&holder.cache), _outer(t_innermost)
{
    t_innermost = this;
}

UsdStageCacheContext::UsdStageCacheContext(UsdStageCacheContextBlockType blockType)
    : _blockType(blockType), _outer(t_innermost)
{
    t_innermost = this;
}

UsdStageCacheContext::~UsdStageCacheContext() { t_innermost = _outer; }

std::vector<const UsdStageCache*> UsdStageCacheContext::_GetReadableCaches()
{
    std::vector<const UsdStageCache*> caches;
    for (const UsdStageCacheContext* context = t_innermost; context; context = context->_outer) {
        if (context->_blockType == UsdBlockStageCaches) {
            break;
        }
        if (context->_readable) {
            caches.push_back(context->_readable);
        }
    }
    return caches;
}

std::vector<UsdStageCache*> UsdStageCacheContext::_GetWritableCaches()
{
    std::vector<UsdStageCache*> caches;
    for (const UsdStageCacheContext* context = t_innermost; context; context = context->_outer) {
        if (context->_blockType != Usd_NoBlock) {
            break;
        }
        if (context->_writable) {
            caches.push_back(context->_writable);
        }
    }
    return caches;
}

PXR_NAMESPACE_CLOSE_SCOPE
