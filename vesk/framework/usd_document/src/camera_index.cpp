#include "camera_index.h"

#include <pxr/usd/usd/primRange.h>
#include <pxr/usd/usdGeom/camera.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::framework::usd_document {

std::vector<SdfPath> CameraIndex::camerasBeneath(const SdfPath& prim)
{
    _ensureKnown();
    std::vector<SdfPath> beneath;
    // Paths sort with a prim directly before everything beneath it.
    for (auto camera = m_cameras.lower_bound(prim); camera != m_cameras.end() && camera->HasPrefix(prim);
         ++camera)
        if (*camera != prim) beneath.push_back(*camera);
    return beneath;
}

std::vector<SdfPath> CameraIndex::recompose(const std::vector<SdfPath>& prims)
{
    const bool wasKnown = m_known;
    std::vector<SdfPath> touched;
    _ensureKnown();
    for (const SdfPath& prim : prims) {
        const std::vector<SdfPath> before = camerasBeneath(prim);
        touched.insert(touched.end(), before.begin(), before.end());
        if (!wasKnown) continue;
        auto first = m_cameras.lower_bound(prim);
        auto last = first;
        while (last != m_cameras.end() && last->HasPrefix(prim))
            ++last;
        m_cameras.erase(first, last);
        _addFrom(prim);
        const std::vector<SdfPath> after = camerasBeneath(prim);
        touched.insert(touched.end(), after.begin(), after.end());
    }
    return touched;
}

void CameraIndex::_ensureKnown()
{
    if (m_known) return;
    m_cameras.clear();
    m_known = true;
    _addFrom(SdfPath::AbsoluteRootPath());
}

void CameraIndex::_addFrom(const SdfPath& prim)
{
    if (!m_stage) return;
    const UsdPrim root = m_stage->GetPrimAtPath(prim);
    if (!root) return;
    for (const UsdPrim& candidate : UsdPrimRange(root))
        if (candidate.IsA<UsdGeomCamera>()) m_cameras.insert(candidate.GetPath());
}

} // namespace vesk::framework::usd_document
