#include <vesk/base/undo_label_registry.h>

#include <mutex>
#include <unordered_map>

namespace vesk::base {

struct UndoLabelRegistry::Store
{
    mutable std::mutex mutex;
    std::vector<std::pair<std::string, std::string>> labels;
    std::unordered_map<std::string, std::size_t> indexOfKey;
    std::unordered_map<std::string, std::size_t> indexOfText;

    std::string add(const std::string& key, const std::string& displayText)
    {
        std::lock_guard lock(mutex);
        const auto known = indexOfKey.find(key);
        if (known != indexOfKey.end()) return labels[known->second].second;
        std::string result = displayText;
        const std::size_t index = labels.size();
        labels.emplace_back(key, displayText);
        indexOfKey.emplace(key, index);
        indexOfText.emplace(displayText, index);
        return result;
    }
};

UndoLabelRegistry::UndoLabelRegistry() : m_store(new Store) {}

UndoLabelRegistry& UndoLabelRegistry::getInstance() noexcept
{
    static UndoLabelRegistry& instance = *new UndoLabelRegistry;
    return instance;
}

std::string UndoLabelRegistry::registerUndoLabel(const std::string& key,
                                                 const std::string& displayText) noexcept
{
    try {
        return m_store->add(key, displayText);
    } catch (...) {
        return {};
    }
}

std::optional<std::string> UndoLabelRegistry::findDisplayText(const std::string& key) const
{
    std::lock_guard lock(m_store->mutex);
    const auto found = m_store->indexOfKey.find(key);
    if (found == m_store->indexOfKey.end()) return std::nullopt;
    return m_store->labels[found->second].second;
}

std::optional<std::string> UndoLabelRegistry::findKey(const std::string& displayText) const
{
    std::lock_guard lock(m_store->mutex);
    const auto found = m_store->indexOfText.find(displayText);
    if (found == m_store->indexOfText.end()) return std::nullopt;
    return m_store->labels[found->second].first;
}

std::vector<std::pair<std::string, std::string>> UndoLabelRegistry::labels() const
{
    std::lock_guard lock(m_store->mutex);
    return m_store->labels;
}

} // namespace vesk::base
