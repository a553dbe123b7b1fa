#pragma once

#include <map>
#include <memory>

#include <pxr/pxr.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/usd/stage.h>

#include "edit_list.h"

namespace vesk::framework::usd_document {

/// Watches layers through their state delegates and notes how to take back what is authored while it records.
/// Thread: one at a time; edits that other threads make meanwhile are not recorded.
class EditRecorder
{
public:
    EditRecorder();

    /// Gives the layers back to delegates of OpenUSD's own.
    ~EditRecorder();

    EditRecorder(const EditRecorder&) = delete;
    EditRecorder& operator=(const EditRecorder&) = delete;

    /// Watches the layers of the stage's layer stack, and one more where it is given. Cheap when they are
    /// watched already; two documents on one layer take it from each other.
    void watch(const PXR_NS::UsdStageRefPtr& stage, const PXR_NS::SdfLayerHandle& layer);

    /// Records from begin() to end() on this thread.
    void begin();
    EditList end();

private:
    class Delegate;
    struct Recording;

    void _watch(const PXR_NS::SdfLayerHandle& layer);

    std::shared_ptr<Recording> m_recording;
    std::map<PXR_NS::SdfLayerHandle, PXR_NS::TfRefPtr<Delegate>> m_delegates;
};

} // namespace vesk::framework::usd_document
