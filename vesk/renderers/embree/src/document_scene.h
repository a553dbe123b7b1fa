#pragma once

#include "scene_snapshot.h"
#include "stage_mirror.h"
#include "trace_scene.h"

#include <vesk/base/future.h>
#include <vesk/framework/usd_document/stage_changes_event.h>
#include <vesk/framework/usd_document/usd_document.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <unordered_set>

namespace vesk::renderers::embree {

/// What a frame, a pick or a capture needs of the scene.
struct PulledScene
{
    std::shared_ptr<const TraceScene> scene;
    std::optional<PXR_NS::GfCamera> camera; ///< of the path that was asked for, nothing where it names none
};

/// One document as one renderer sees it: takes snapshots on the document's task thread, remembers them until
/// the stage changes, and builds what is traced on the default pool. It holds the document weakly and locks
/// it only for posting. Thread: any.
class DocumentScene : public std::enable_shared_from_this<DocumentScene>
{
public:
    DocumentScene(const std::shared_ptr<framework::usd_document::UsdDocument>& document,
                  std::shared_ptr<BuiltScenes> built);
    ~DocumentScene();

    /// Starts to listen to the document's changes.
    void connect();

    /// Stops to listen; pulls that are under way end as "broken promise" or with their value.
    void disconnect();

    /// Takes the scene, from the memory where nothing changed, else in a task of the document.
    base::Future<PulledScene> pull(const ExtractionRequest& request, const PXR_NS::SdfPath& cameraPath);

    std::shared_ptr<framework::usd_document::UsdDocument> document() const { return m_document.lock(); }

private:
    struct Pull
    {
        std::shared_ptr<const SceneSnapshot> snapshot;
        std::optional<PXR_NS::GfCamera> camera;
    };

    void _onEvent(const std::any& event);
    void _note(const framework::usd_document::StageChangesEvent& event);
    bool _isCamera(const PXR_NS::SdfPath& prim) const;
    std::optional<PulledScene> _remembered(const ExtractionRequest& request,
                                           const PXR_NS::SdfPath& cameraPath);
    Pull _take(const framework::usd_document::DocumentExecContext& context, const ExtractionRequest& request,
               const PXR_NS::SdfPath& cameraPath);
    std::shared_ptr<const TraceScene> _traced(const std::shared_ptr<const SceneSnapshot>& snapshot);

    std::weak_ptr<framework::usd_document::UsdDocument> m_document;
    std::shared_ptr<BuiltScenes> m_built;
    std::uint32_t m_listenerId = 0;

    StageMirror m_mirror; // on the task thread alone

    mutable std::mutex m_mutex; // guards what follows; nothing is called while it is held
    StageChanges m_changes;     // of all but cameras
    bool m_isRead = false;
    bool m_camerasChanged = true;
    std::shared_ptr<const SceneSnapshot> m_snapshot;
    ExtractionRequest m_snapshotRequest;
    std::shared_ptr<const TraceScene> m_traceScene;
    PXR_NS::SdfPath m_cameraPath;
    double m_cameraTime = 0.0;
    std::optional<PXR_NS::GfCamera> m_camera;
};

} // namespace vesk::renderers::embree
