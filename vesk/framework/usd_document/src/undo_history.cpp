#include "undo_history.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace vesk::framework::usd_document {

void UndoHistory::record(UndoEntry entry)
{
    if (entry.edits.isEmpty()) return;
    Entries forgotten;
    std::lock_guard lock(m_mutex);
    forgotten.swap(m_redo);
    if (entry.group != 0 && !m_undo.empty() && m_undo.back().group == entry.group)
        m_undo.back().edits.append(std::move(entry.edits));
    else
        m_undo.push_back(std::move(entry));
}

std::optional<UndoEntry> UndoHistory::takeUndo() { return _take(m_undo); }

std::optional<UndoEntry> UndoHistory::takeRedo() { return _take(m_redo); }

void UndoHistory::putUndo(UndoEntry entry)
{
    std::lock_guard lock(m_mutex);
    m_undo.push_back(std::move(entry));
}

void UndoHistory::putRedo(UndoEntry entry)
{
    std::lock_guard lock(m_mutex);
    m_redo.push_back(std::move(entry));
}

std::vector<std::string> UndoHistory::undoLabels() const { return _labels(m_undo); }

std::vector<std::string> UndoHistory::redoLabels() const { return _labels(m_redo); }

void UndoHistory::clear()
{
    Entries undo, redo;
    std::lock_guard lock(m_mutex);
    undo.swap(m_undo);
    redo.swap(m_redo);
}

std::optional<UndoEntry> UndoHistory::_take(Entries& entries)
{
    std::lock_guard lock(m_mutex);
    if (entries.empty()) return std::nullopt;
    std::optional<UndoEntry> entry = std::move(entries.back());
    entries.pop_back();
    // Later tasks of its group must not join it once it was taken back.
    entry->group = 0;
    return entry;
}

std::vector<std::string> UndoHistory::_labels(const Entries& entries) const
{
    std::lock_guard lock(m_mutex);
    std::vector<std::string> labels;
    labels.reserve(entries.size());
    std::transform(entries.rbegin(), entries.rend(), std::back_inserter(labels),
                   [](const UndoEntry& entry) { return entry.label; });
    return labels;
}

} // namespace vesk::framework::usd_document
