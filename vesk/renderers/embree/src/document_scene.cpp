#include "document_scene.h"

#include <cstring>
#include <string_view>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {

using framework::usd_document::DocumentExecContext;
using framework::usd_document::StageChangesEvent;
using framework::usd_document::UsdDocument;

namespace {

bool sameTime(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

bool operator==(const ExtractionRequest& a, const ExtractionRequest& b)
{
    return sameTime(a.time, b.time) && a.proxyPurpose == b.proxyPurpose &&
           a.sceneMaterials == b.sceneMaterials;
}

// Places, visibility and purposes are read anew in every extraction; the others belong to a prim's shape.
bool shapesThePrim(const std::string& property)
{
    const std::string_view name(property);
    return name.rfind("xformOp", 0) != 0 && name != "visibility" && name != "purpose";
}

} // namespace

DocumentScene::DocumentScene(const std::shared_ptr<UsdDocument>& document, std::shared_ptr<BuiltScenes> built)
    : m_document(document), m_built(std::move(built))
{}

DocumentScene::~DocumentScene() = default;

void DocumentScene::connect()
{
    if (const auto document = m_document.lock()) {
        // The listener holds no reference that keeps this alive, and none that could dangle.
        m_listenerId =
            document->getEventBus()->subscribeListener([weak = weak_from_this()](const std::any& event) {
                if (const auto self = weak.lock()) self->_onEvent(event);
            });
    }
}

void DocumentScene::disconnect()
{
    const std::uint32_t id = std::exchange(m_listenerId, 0);
    if (const auto document = m_document.lock()) document->getEventBus()->unsubscribeListener(id);
}

void DocumentScene::_onEvent(const std::any& event)
{
    if (const auto* changes = std::any_cast<StageChangesEvent>(&event)) _note(*changes);
}

void DocumentScene::_note(const StageChangesEvent& event)
{
    const std::lock_guard lock(m_mutex);
    m_camerasChanged = true;
    for (const SdfPath& path : event.resyncedPrimPaths) {
        m_changes.subtrees.push_back(path);
    }
    const auto noteProperty = [this](const SdfPath& path) {
        const SdfPath prim = path.GetPrimPath();
        if (_isCamera(prim)) return;
        (shapesThePrim(path.GetName()) ? m_changes.shapes : m_changes.places).push_back(prim);
    };
    for (const SdfPath& path : event.changedPropertyPaths) {
        noteProperty(path);
    }
    for (const SdfPath& path : event.resyncedPropertyPaths) {
        noteProperty(path);
    }
    for (const SdfPath& path : event.infoChangedPrimPaths) {
        if (!_isCamera(path)) m_changes.places.push_back(path);
    }
}

bool DocumentScene::_isCamera(const SdfPath& prim) const
{
    return m_snapshot && m_snapshot->cameraPaths.count(prim) > 0;
}

std::optional<PulledScene> DocumentScene::_remembered(const ExtractionRequest& request,
                                                      const SdfPath& cameraPath)
{
    const std::lock_guard lock(m_mutex);
    const bool isNewest = m_traceScene && &m_traceScene->snapshot() == m_snapshot.get();
    if (!isNewest || !m_changes.empty() || !(m_snapshotRequest == request)) return std::nullopt;
    if (cameraPath.IsEmpty()) return PulledScene{m_traceScene, std::nullopt};
    if (m_camerasChanged || m_cameraPath != cameraPath || !sameTime(m_cameraTime, request.time))
        return std::nullopt;
    return PulledScene{m_traceScene, m_camera};
}

base::Future<PulledScene> DocumentScene::pull(const ExtractionRequest& request, const SdfPath& cameraPath)
{
    if (auto known = _remembered(request, cameraPath)) return base::makeReadyFuture(std::move(*known));
    const auto document = m_document.lock();
    if (!document) {
        PulledScene empty;
        empty.scene = _traced(std::make_shared<const SceneSnapshot>());
        return base::makeReadyFuture(std::move(empty));
    }
    auto self = shared_from_this();
    return document
        ->read("render scene",
               [self, request, cameraPath](const DocumentExecContext& context) {
                   return self->_take(context, request, cameraPath);
               })
        .then([self](const Pull& pull) {
            return PulledScene{self->_traced(pull.snapshot), pull.camera};
        });
}

DocumentScene::Pull DocumentScene::_take(const DocumentExecContext& context, const ExtractionRequest& request,
                                         const SdfPath& cameraPath)
{
    StageChanges changes;
    Pull pull;
    {
        const std::lock_guard lock(m_mutex);
        std::swap(changes, m_changes);
        m_camerasChanged = false;
        if (m_isRead && changes.empty() && m_snapshotRequest == request) pull.snapshot = m_snapshot;
    }
    const UsdStageRefPtr& stage = context.stage();
    if (!pull.snapshot) {
        pull.snapshot =
            stage ? m_mirror.update(stage, request, changes) : std::make_shared<const SceneSnapshot>();
    }
    if (stage && !cameraPath.IsEmpty()) pull.camera = extractCamera(stage, cameraPath, request.time);
    const std::lock_guard lock(m_mutex);
    m_isRead = true;
    m_snapshot = pull.snapshot;
    m_snapshotRequest = request;
    m_cameraPath = cameraPath;
    m_cameraTime = request.time;
    m_camera = pull.camera;
    return pull;
}

std::shared_ptr<const TraceScene> DocumentScene::_traced(const std::shared_ptr<const SceneSnapshot>& snapshot)
{
    std::shared_ptr<const TraceScene> former;
    {
        const std::lock_guard lock(m_mutex);
        if (m_traceScene && &m_traceScene->snapshot() == snapshot.get()) return m_traceScene;
        former = m_traceScene;
    }
    auto traced = std::make_shared<const TraceScene>(snapshot, *m_built, former.get());
    const std::lock_guard lock(m_mutex);
    if (m_snapshot == snapshot) m_traceScene = traced;
    return traced;
}

} // namespace vesk::renderers::embree
