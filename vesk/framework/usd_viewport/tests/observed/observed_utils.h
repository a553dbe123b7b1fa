#pragma once

#include <pxr/base/gf/camera.h>
#include <pxr/base/gf/range3f.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/usd/stage.h>
#include <pxr/usd/usdGeom/bboxCache.h>
#include <vesk/usd/utils/projection_type.h>

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace vesk::framework::usd_viewport::tests {

PXR_NAMESPACE_USING_DIRECTIVE
using vesk::usd::utils::ProjectionType;

/// One call of a camera or bounds utility, with what it was given; the camera as it was on entry.
struct UtilityCall
{
    explicit UtilityCall(std::string calledName) : name(std::move(calledName)) {}

    std::string name;
    GfCamera camera;
    GfRange3f bounds;
    bool zUp = false;
    float distanceToCenter = 0.0f;
    float distance = 0.0f;
    UsdStagePtr stage;
    SdfPath path;
    double time = 0.0;
    bool proxyGeometry = false;
    std::vector<SdfPath> paths;
    const UsdGeomBBoxCache* cache = nullptr;
    bool holdsCache = false; ///< whether the calling thread has the document's bounds cache to itself
    GfVec3d direction{0.0};
    ProjectionType projection = ProjectionType::Perspective;
    float fieldOfView = 0.0f;
    float factor = 0.0f;
    std::thread::id thread = std::this_thread::get_id();
};

/// What the utilities of this program were asked, and what they answer.
///
/// This program has utilities of its own in place of the library's (see observed_utils.cpp): they compute
/// nothing, write down what they are given and leave a camera as it is unless a test says otherwise. So a
/// test sees every argument that the model passes and when it does, which the real ones hide in their
/// results.
struct ObservedUtils
{
    /// Runs inside every call that gets a camera, after it has been written down; may change the camera, and
    /// what it throws leaves the call.
    std::function<void(const UtilityCall&, GfCamera&)> onCall;
    /// Runs on entry of every call, before it is written down.
    std::function<void(UtilityCall&)> onEntry;
    GfRange3f sceneBounds;               ///< what the bounds of the scene are said to be
    std::optional<GfCamera> sceneCamera; ///< what is said to stand at every camera path; none is an error
    float distanceToCenter = 0.0f;       ///< what the distance to the pivot is said to be
    std::optional<std::error_code> boundsError;
    GfRange3f partBounds;        ///< what the bounds of some prims are said to be
    float framedDistance = 0.0f; ///< what the distance for a framed box is said to be
    GfCamera framedCamera;       ///< what is said to frame every box
    bool stageZUp = false;
    std::optional<std::error_code> upAxisError;
    std::optional<std::error_code> materialError;
    std::optional<std::error_code> lightsError;
    std::vector<std::string>* timeline = nullptr;

    std::vector<UtilityCall> take();
    void record(UtilityCall call);

private:
    std::mutex m_mutex;
    std::vector<UtilityCall> m_calls;
};

ObservedUtils& observedUtils();

/// The (key, display text) pairs that were registered when the library was loaded. Every registered label is
/// the display text in angle brackets here, so that it can be told from a literal.
std::vector<std::pair<std::string, std::string>>& registeredLabels();

} // namespace vesk::framework::usd_viewport::tests
