#include <pxr/base/tf/registryManager.h>

#include <map>
#include <mutex>
#include <set>
#include <typeindex>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

struct Registry
{
    // Recursive: a registry function may subscribe to another registry, or to its own again.
    std::recursive_mutex mutex;
    std::map<std::type_index, std::vector<TfRegistryManager::Function>> waiting;
    std::set<std::type_index> subscribed;

    static Registry& Get()
    {
        static Registry* const registry = new Registry;
        return *registry;
    }
};

} // namespace

TfRegistryManager& TfRegistryManager::GetInstance()
{
    static TfRegistryManager* const manager = new TfRegistryManager;
    return *manager;
}

void TfRegistryManager::_Add(std::type_info const& key, Function function)
{
    Registry& registry = Registry::Get();
    const std::lock_guard<std::recursive_mutex> lock(registry.mutex);
    if (registry.subscribed.count(key)) {
        function();
    } else {
        registry.waiting[key].push_back(function);
    }
}

void TfRegistryManager::_Subscribe(std::type_info const& key)
{
    Registry& registry = Registry::Get();
    const std::lock_guard<std::recursive_mutex> lock(registry.mutex);
    if (!registry.subscribed.insert(key).second) {
        return;
    }
    const std::vector<Function> functions = std::move(registry.waiting[key]);
    registry.waiting.erase(key);
    for (Function function : functions) {
        function();
    }
}

void TfRegistryManager::_Unsubscribe(std::type_info const& key)
{
    Registry& registry = Registry::Get();
    const std::lock_guard<std::recursive_mutex> lock(registry.mutex);
    registry.subscribed.erase(key);
}

PXR_NAMESPACE_CLOSE_SCOPE
