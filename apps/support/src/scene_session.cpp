#include <apps/support/scene_session.h>

#include <apps/support/errors.h>

#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/primRange.h>
#include <pxr/usd/usdGeom/camera.h>

#include <vesk/framework/usd_document/bbox_cache_guard.h>
#include <vesk/usd/utils/bounds_utils.h>

#include <sstream>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::apps {

using framework::usd_document::UsdDocument;
using framework::usd_document::UsdGeomBBoxCacheLockGuard;

namespace {

UsdPrimRange allPrims(const UsdStagePtr& stage)
{
    return UsdPrimRange(stage->GetPseudoRoot(), UsdTraverseInstanceProxies(UsdPrimDefaultPredicate));
}

GfRange3f computeBounds(const UsdDocument::ExecContext& context, double time,
                        const std::vector<SdfPath>& paths, bool proxy)
{
    const UsdStagePtr stage(context.stage());
    UsdGeomBBoxCacheLockGuard guard(context.bboxCacheGuard());
    UsdGeomBBoxCache& cache = guard.getBboxCache();
    cache.SetTime(UsdTimeCode(time));
    if (!paths.empty()) return usd::utils::getSubSceneBounds(stage, paths, proxy, &cache);
    return base::result::checkResult(usd::utils::computeAlignedGeometryBounds(
        stage, SdfPath::AbsoluteRootPath(), UsdTimeCode(time), proxy, &cache));
}

} // namespace

SceneSession::SceneSession(const std::filesystem::path& scene) : m_scene(scene.string())
{
    try {
        m_document = UsdDocument::open(m_scene);
    } catch (const framework::usd_document::DocumentException& error) {
        throw JobError(oneLine(error.what()));
    }
    m_startTime = timeRange().first;
}

std::pair<double, double> SceneSession::timeRange()
{
    return read<std::pair<double, double>>("time range", [](const UsdStagePtr& stage) {
        if (!stage->HasAuthoredTimeCodeRange()) return std::make_pair(0.0, 0.0);
        return std::make_pair(stage->GetStartTimeCode(), stage->GetEndTimeCode());
    });
}

std::size_t SceneSession::primCount()
{
    return read<std::size_t>("count prims", [](const UsdStagePtr& stage) {
        std::size_t count = 0;
        for (const UsdPrim& prim : allPrims(stage))
            count += prim.IsPseudoRoot() ? 0 : 1;
        return count;
    });
}

GfRange3f SceneSession::bounds(double time, const std::vector<SdfPath>& paths, bool proxy)
{
    return m_document
        ->read("bounds",
               [&](const UsdDocument::ExecContext& c) { return computeBounds(c, time, paths, proxy); })
        .get();
}

SdfPath SceneSession::_requirePath(const std::string& text, const char* what, const char* hint) const
{
    if (SdfPath::IsValidPathString(text)) {
        const SdfPath path(text);
        if (path.IsAbsoluteRootOrPrimPath() && path.IsAbsolutePath()) return path;
    }
    throw JobError(std::string(what) + " '" + text +
                   "' is not a well-formed prim path; write it as /Name/Name" + hint);
}

std::vector<SdfPath> SceneSession::requirePrims(const std::vector<std::string>& texts)
{
    std::vector<SdfPath> paths;
    for (const std::string& text : texts) {
        const SdfPath path = _requirePath(text, "the path", "");
        const bool exists = read<bool>("find prim", [&path](const UsdStagePtr& stage) {
            return static_cast<bool>(stage->GetPrimAtPath(path));
        });
        if (!exists) throw JobError("'" + m_scene + "' has no prim '" + text + "'");
        paths.push_back(path);
    }
    return paths;
}

SdfPath SceneSession::requireCamera(const std::string& text)
{
    _requirePath(text, "the camera", ", vesk info lists the cameras");
    const SdfPath path = requirePrims({text}).front();
    const bool camera = read<bool>("find camera", [&path](const UsdStagePtr& stage) {
        return stage->GetPrimAtPath(path).IsA<UsdGeomCamera>();
    });
    if (!camera)
        throw JobError("'" + text + "' is not a camera of '" + m_scene + "'; vesk info lists its cameras");
    return path;
}

std::vector<std::string> SceneSession::cameraPaths()
{
    return read<std::vector<std::string>>("list cameras", [](const UsdStagePtr& stage) {
        std::vector<std::string> paths;
        for (const UsdPrim& prim : allPrims(stage)) {
            if (prim.IsA<UsdGeomCamera>()) paths.push_back(prim.GetPath().GetString());
        }
        return paths;
    });
}

std::string boundsText(const GfRange3f& bounds)
{
    if (bounds.IsEmpty()) return "empty";
    std::ostringstream text;
    text << bounds.GetMin() << " to " << bounds.GetMax();
    return text.str();
}

} // namespace vesk::apps
