#pragma once

#include <set>
#include <vector>

#include <pxr/pxr.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/usd/stage.h>

namespace vesk::framework::usd_document {

/// Where the stage's cameras are, kept up to date by looking only at what was recomposed, so that a camera
/// beneath a prim that moves is found without walking the stage. Thread: one at a time.
class CameraIndex
{
public:
    explicit CameraIndex(PXR_NS::UsdStageWeakPtr stage) : m_stage(std::move(stage)) {}

    /// Cameras strictly beneath the prim.
    std::vector<PXR_NS::SdfPath> camerasBeneath(const PXR_NS::SdfPath& prim);

    /// Looks at the prims and all beneath them again; returns the cameras strictly beneath them, those that
    /// vanished included.
    std::vector<PXR_NS::SdfPath> recompose(const std::vector<PXR_NS::SdfPath>& prims);

    /// Forgets everything; the next question walks the stage.
    void forget() { m_known = false; }

private:
    void _ensureKnown();
    void _addFrom(const PXR_NS::SdfPath& prim);

    const PXR_NS::UsdStageWeakPtr m_stage;
    std::set<PXR_NS::SdfPath> m_cameras;
    bool m_known = false;
};

} // namespace vesk::framework::usd_document
