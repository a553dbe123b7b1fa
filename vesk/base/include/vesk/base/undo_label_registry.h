#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <vesk/base/export.h>

namespace vesk::base {

/// The process's undo labels: for each key the text that a person reads in an undo menu. Libraries register
/// theirs while they are loaded and use what they get back as the label of their edits.
///
/// The registry is created by its first use and never destroyed, so that it serves initialisers and threads
/// at either end of the process. Thread: any.
class VESK_BASE_EXPORT UndoLabelRegistry
{
public:
    /// The one registry of the process.
    static UndoLabelRegistry& getInstance() noexcept;

    /// Registers a label and returns the text to use, which is the display text. Registering a key again
    /// changes nothing and returns the text of its first registration. When memory is short it returns an
    /// empty label; an initialiser never sees an exception.
    std::string registerUndoLabel(const std::string& key, const std::string& displayText) noexcept;

    /// The text of a key, nothing for an unknown one.
    std::optional<std::string> findDisplayText(const std::string& key) const;

    /// The key whose label has this text, the first registered where several do; nothing for an unknown one.
    std::optional<std::string> findKey(const std::string& displayText) const;

    /// All (key, display text) pairs in the order of their registration.
    std::vector<std::pair<std::string, std::string>> labels() const;

    UndoLabelRegistry(const UndoLabelRegistry&) = delete;
    UndoLabelRegistry& operator=(const UndoLabelRegistry&) = delete;

private:
    UndoLabelRegistry();
    ~UndoLabelRegistry() = delete;

    struct Store;
    Store* m_store;
};

} // namespace vesk::base
