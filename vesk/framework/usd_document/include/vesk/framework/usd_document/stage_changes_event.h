#pragma once

#include <unordered_set>
#include <vector>

#include <pxr/pxr.h>
#include <pxr/usd/sdf/path.h>

#include <vesk/framework/usd_document/export.h>

namespace vesk::framework::usd_document {

/// What one task (or one undo, redo, reload) changed on the stage, sent once on the document's bus after the
/// task, with no lock held. A change names the topmost object that it concerns, with one exception: a camera
/// whose ancestor was recomposed or moved is named too, so that whoever follows a camera notices.
struct VESK_FRAMEWORK_USD_DOCUMENT_EXPORT StageChangesEvent
{
    /// Paths in no order.
    using PathSet = std::unordered_set<PXR_NS::SdfPath, PXR_NS::SdfPath::Hash>;
    /// Paths in the order of their first change.
    using PathList = std::vector<PXR_NS::SdfPath>;

    /// Prims that appeared, vanished or were recomposed, with all that lies beneath them.
    PathSet resyncedPrimPaths;

    /// Properties whose value or metadata changed, in the order of their first change.
    PathList changedPropertyPaths;

    /// Prims whose own metadata changed, and cameras beneath a prim whose transform changed.
    PathSet infoChangedPrimPaths;

    /// Properties that appeared or vanished, in the order of their first change.
    PathList resyncedPropertyPaths;

    StageChangesEvent();
    StageChangesEvent(const StageChangesEvent&);
    StageChangesEvent(StageChangesEvent&&) noexcept;
    StageChangesEvent& operator=(const StageChangesEvent&);
    StageChangesEvent& operator=(StageChangesEvent&&) noexcept;
    ~StageChangesEvent();

    /// True when nothing changed.
    bool isEmpty() const
    {
        return resyncedPrimPaths.empty() && changedPropertyPaths.empty() && infoChangedPrimPaths.empty() &&
               resyncedPropertyPaths.empty();
    }
};

} // namespace vesk::framework::usd_document
