#pragma once

#include <apps/support/shot_arguments.h>

#include <pxr/base/gf/camera.h>
#include <pxr/base/gf/range3f.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/usd/stage.h>

#include <vesk/framework/usd_document/usd_document.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace vesk::apps {

/// One scene that a program has opened: its document, and what several verbs ask of it.
///
/// All stage access runs as tasks of the document; every operation here waits for its task.
/// Thread: the program's main thread.
class SceneSession
{
public:
    /// Opens a scene.
    /// Throws: `JobError` that says which file could not be opened, why, and where the fault is.
    explicit SceneSession(const std::filesystem::path& scene);

    const std::shared_ptr<vesk::framework::usd_document::UsdDocument>& document() const { return m_document; }

    /// The start time code where the stage authors one, else 0.
    double startTime() const { return m_startTime; }

    /// The authored range of time codes; twice startTime() where there is none.
    std::pair<double, double> timeRange();

    /// How many prims a traversal of the stage visits, instance proxies included.
    std::size_t primCount();

    /// Runs a piece of work that reads the stage, and returns what it found.
    /// Throws: what the work throws.
    template <class R>
    R read(const std::string& label, std::function<R(const PXR_NS::UsdStagePtr&)> work)
    {
        return m_document
            ->read(label, [work = std::move(work)](
                              const auto& context) { return work(PXR_NS::UsdStagePtr(context.stage())); })
            .get();
    }

    /// World bounds of prims, or of the whole scene for no paths, at a time code.
    /// \param proxy counts proxy geometry in place of render geometry
    PXR_NS::GfRange3f bounds(double time, const std::vector<PXR_NS::SdfPath>& paths, bool proxy);

    /// Turns texts into the paths of prims that the stage has.
    /// Throws: `JobError` for a malformed text or a path that names nothing.
    std::vector<PXR_NS::SdfPath> requirePrims(const std::vector<std::string>& texts);

    /// Turns a text into the path of a camera of the stage.
    /// Throws: `JobError` for a malformed text, a path that names nothing, or a prim that is no camera.
    PXR_NS::SdfPath requireCamera(const std::string& text);

    /// The paths of all cameras of the stage, in traversal order.
    std::vector<std::string> cameraPaths();

private:
    PXR_NS::SdfPath _requirePath(const std::string& text, const char* what, const char* hint) const;

    std::string m_scene;
    std::shared_ptr<vesk::framework::usd_document::UsdDocument> m_document;
    double m_startTime = 0;
};

/// "(x, y, z) to (x, y, z)", or "empty".
std::string boundsText(const PXR_NS::GfRange3f& bounds);

} // namespace vesk::apps
