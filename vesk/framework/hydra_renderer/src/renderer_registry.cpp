#include <vesk/framework/hydra_renderer/renderer_registry.h>

#include <vesk/base/error_handling.h>

#include "registry_storage.h"

#include <algorithm>
#include <mutex>

namespace vesk::framework::hydra_renderer {
namespace {

struct Entry
{
    std::string id;
    std::string displayName;
    RendererFactory factory;
};

struct Registry
{
    std::mutex mutex;
    std::vector<Entry> entries;
    std::string defaultId;

    Entry* find(const std::string& id)
    {
        const auto at =
            std::find_if(entries.begin(), entries.end(), [&](const Entry& e) { return e.id == id; });
        return at == entries.end() ? nullptr : &*at;
    }
};

// Never destroyed: renderers may still be made while the process ends.
Registry& registry()
{
    static auto* instance = new Registry;
    return *instance;
}

[[noreturn]] void throwInvalid(const std::string& text)
{
    throw vesk::base::error_handling::Exception(std::make_error_code(std::errc::invalid_argument),
                                                text.c_str());
}

[[noreturn]] void throwUnknown(const std::string& id, const std::vector<Entry>& entries)
{
    std::string known;
    for (const Entry& entry : entries) {
        known += (known.empty() ? "" : ", ") + entry.id;
    }
    throwInvalid("unknown renderer '" + id + "'; known renderers: " + (known.empty() ? "none" : known));
}

} // namespace

void registerRenderer(const std::string& id, const std::string& displayName, RendererFactory factory)
{
    if (id.empty() || !factory) {
        throwInvalid("a renderer needs an id and a factory");
    }
    Registry& r = registry();
    const std::lock_guard lock(r.mutex);
    if (Entry* entry = r.find(id)) {
        entry->displayName = displayName;
        entry->factory = std::move(factory);
        return;
    }
    r.entries.push_back({id, displayName, std::move(factory)});
    if (r.defaultId.empty()) {
        r.defaultId = id;
    }
}

std::vector<std::string> registeredRendererIds()
{
    Registry& r = registry();
    const std::lock_guard lock(r.mutex);
    std::vector<std::string> ids;
    ids.reserve(r.entries.size());
    for (const Entry& entry : r.entries) {
        ids.push_back(entry.id);
    }
    return ids;
}

std::string rendererDisplayName(const std::string& id)
{
    Registry& r = registry();
    const std::lock_guard lock(r.mutex);
    const Entry* entry = r.find(id);
    return entry ? entry->displayName : std::string();
}

std::string defaultRendererId()
{
    Registry& r = registry();
    const std::lock_guard lock(r.mutex);
    return r.defaultId;
}

void setDefaultRendererId(const std::string& id)
{
    Registry& r = registry();
    const std::lock_guard lock(r.mutex);
    if (!r.find(id)) {
        throwUnknown(id, r.entries);
    }
    r.defaultId = id;
}

std::string resolveRendererId(const std::string& id)
{
    Registry& r = registry();
    const std::lock_guard lock(r.mutex);
    const std::string& wanted = id.empty() ? r.defaultId : id;
    if (!r.find(wanted)) {
        throwUnknown(wanted, r.entries);
    }
    return wanted;
}

RendererFactory registeredFactory(const std::string& id)
{
    Registry& r = registry();
    const std::lock_guard lock(r.mutex);
    const Entry* entry = r.find(id);
    if (!entry) {
        throwUnknown(id, r.entries);
    }
    return entry->factory;
}

} // namespace vesk::framework::hydra_renderer
