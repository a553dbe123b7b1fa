#include <pxr/base/tf/enum.h>

#include "pxr/base/tf/demangle.h"

#include <pxr/base/tf/diagnosticLite.h>
#include <pxr/base/tf/registryManager.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/base/tf/type.h>

#include <atomic>
#include <map>
#include <mutex>
#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

struct Names
{
    std::mutex mutex;
    std::map<TfEnum, std::pair<std::string, std::string>> byValue; // name, display name

    /// Returns the names once all registry functions that waited have run. Later calls leave the registry's
    /// lock alone: names are asked for while diagnostics are delivered, and registry functions post diagnostics.
    static Names& Get()
    {
        static std::atomic<bool> subscribed{false};
        if (!subscribed.load(std::memory_order_acquire)) {
            TfRegistryManager::GetInstance().SubscribeTo<TfEnum>();
            subscribed.store(true, std::memory_order_release);
        }
        return Raw();
    }

    static Names& Raw()
    {
        static Names* const names = new Names;
        return *names;
    }

    std::pair<std::string, std::string> Find(TfEnum value)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        const auto found = byValue.find(value);
        return found == byValue.end() ? std::pair<std::string, std::string>() : found->second;
    }
};

} // namespace

void TfEnum::AddName(TfEnum value, const std::string& name, const std::string& displayName)
{
    Names& names = Names::Raw();
    const std::lock_guard<std::mutex> lock(names.mutex);
    // "Class::Name" is kept as "Name".
    const size_t colon = name.rfind(':');
    const std::string plain = colon == std::string::npos ? name : name.substr(colon + 1);
    names.byValue[value] = {plain, displayName.empty() ? plain : displayName};
}

std::string TfEnum::GetName(TfEnum value) { return Names::Get().Find(value).first; }
std::string TfEnum::GetDisplayName(TfEnum value) { return Names::Get().Find(value).second; }

std::string TfEnum::GetFullName(TfEnum value)
{
    const std::string name = GetName(value);
    return name.empty() ? name : Tf_Demangle(value.GetType()) + "::" + name;
}

std::vector<std::string> TfEnum::GetAllNames(const std::type_info& type)
{
    Names& names = Names::Get();
    const std::lock_guard<std::mutex> lock(names.mutex);
    std::vector<std::string> all;
    for (auto const& [value, text] : names.byValue) {
        if (value.IsA(type)) {
            all.push_back(text.first);
        }
    }
    return all;
}

TfEnum TfEnum::GetValueFromName(const std::type_info& type, const std::string& name, bool* found)
{
    Names& names = Names::Get();
    const std::lock_guard<std::mutex> lock(names.mutex);
    for (auto const& [value, text] : names.byValue) {
        if (value.IsA(type) && text.first == name) {
            if (found) {
                *found = true;
            }
            return value;
        }
    }
    if (found) {
        *found = false;
    }
    return TfEnum(type, -1);
}

void TfEnum::_FatalGetValueError(std::type_info const& queried) const
{
    TF_FATAL_ERROR("Attempted to get a '%s' from a TfEnum holding a '%s'.", Tf_Demangle(queried).c_str(),
                   Tf_Demangle(*_type).c_str());
}

std::ostream& operator<<(std::ostream& out, const TfEnum& e)
{
    const std::string name = TfEnum::GetFullName(e);
    return out << (name.empty()
                       ? TfStringPrintf("%s::%d", Tf_Demangle(e.GetType()).c_str(), e.GetValueAsInt())
                       : name);
}

TF_REGISTRY_FUNCTION(TfType) { TfType::Define<TfEnum>(); }

PXR_NAMESPACE_CLOSE_SCOPE
