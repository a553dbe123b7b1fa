#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "edit_list.h"

namespace vesk::framework::usd_document {

/// One thing that a person can undo or redo.
struct UndoEntry
{
    std::string label;
    std::uint64_t group = 0; ///< Tasks of one undo group share it; 0 for none.
    EditList edits;
};

/// What can be undone and redone. Thread: any.
class UndoHistory
{
public:
    /// Adds edits as the newest entry, or to the newest one when that is of the same group, and forgets what
    /// could be redone. Does nothing without edits.
    void record(UndoEntry entry);

    std::optional<UndoEntry> takeUndo();
    std::optional<UndoEntry> takeRedo();

    /// Puts an entry back after it was redone (undone): the other list stays as it is.
    void putUndo(UndoEntry entry);
    void putRedo(UndoEntry entry);

    std::vector<std::string> undoLabels() const;
    std::vector<std::string> redoLabels() const;
    void clear();

private:
    using Entries = std::vector<UndoEntry>;

    std::optional<UndoEntry> _take(Entries& entries);
    std::vector<std::string> _labels(const Entries& entries) const;

    mutable std::mutex m_mutex;
    Entries m_undo; ///< Newest last.
    Entries m_redo; ///< Next one last.
};

} // namespace vesk::framework::usd_document
