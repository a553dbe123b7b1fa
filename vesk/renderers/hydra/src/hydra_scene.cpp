#include "hydra_scene.h"

#include "engine.h"
#include "gl_context.h"
#include "stage_turn.h"

#include <vesk/base/event_bus.h>
#include <vesk/framework/usd_document/stage_changes_event.h>

#include <pxr/usd/usd/stage.h>
#include <pxr/usd/usdGeom/bboxCache.h>
#include <pxr/usd/usdGeom/camera.h>
#include <pxr/usd/usdGeom/metrics.h>
#include <pxr/usd/usdGeom/tokens.h>

#include <cmath>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::hydra {

using framework::hydra_renderer::HWContext;
using framework::usd_document::StageChangesEvent;
using framework::usd_document::UsdDocument;

namespace {

bool sameTime(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

UsdTimeCode timeCode(double time) { return std::isnan(time) ? UsdTimeCode::Default() : UsdTimeCode(time); }

bool coversAll(const StageNeeds& read, const StageNeeds& wanted)
{
    return sameTime(read.time, wanted.time) && read.proxyPurpose == wanted.proxyPurpose &&
           read.materials == wanted.materials && read.lights == wanted.lights &&
           read.drawMode == wanted.drawMode && read.complexity == wanted.complexity &&
           (wanted.cameraPath.IsEmpty() || read.cameraPath == wanted.cameraPath) &&
           (read.bounds || !wanted.bounds);
}

} // namespace

/// What must be made, used and destroyed on the drawing thread.
struct HydraScene::Drawer
{
    Drawer() = default;
    Drawer(const Drawer&) = delete;
    Drawer& operator=(const Drawer&) = delete;

    std::shared_ptr<HWContext> context;
    std::unique_ptr<Engine> engine;

    // Left over where the process exits before the drawing thread got here: the device is given back with it.
    ~Drawer() { static_cast<void>(engine.release()); }

    void destroyEngine()
    {
        if (!engine) return;
        try {
            const CurrentContext current(context);
            engine.reset();
        } catch (const std::exception&) {
            // The host took its context away: what the device held is gone with it.
            engine.reset();
        }
        context.reset();
    }
};

StageNeeds StageNeeds::of(const picture::FrameSettings& settings, float complexity, bool bounds)
{
    StageNeeds needs;
    needs.time = settings.time;
    needs.proxyPurpose = settings.proxyPurpose;
    needs.materials = settings.sceneMaterials;
    needs.lights = settings.lighting.sceneLightsEnabled;
    needs.drawMode = settings.drawMode;
    needs.complexity = complexity;
    if (const auto* path = std::get_if<SdfPath>(&settings.camera)) needs.cameraPath = *path;
    needs.bounds = bounds;
    return needs;
}

HydraScene::HydraScene(const std::shared_ptr<UsdDocument>& document, EngineSetup setup)
    : m_document(document), m_setup(std::move(setup)), m_drawer(std::make_shared<Drawer>())
{}

// Whatever thread lets the last reference go: the engine ends on the drawing thread.
HydraScene::~HydraScene()
{
    drawThread(base::Priority::High)->post(base::Work([drawer = std::move(m_drawer)] {
        drawer->destroyEngine();
    }));
}

void HydraScene::connect()
{
    if (const auto document = m_document.lock()) {
        m_listenerId =
            document->getEventBus()->subscribeListener([weak = weak_from_this()](const std::any& event) {
                if (const auto self = weak.lock()) self->_onEvent(event);
            });
    }
}

// The engine listens to the stage too, so it is destroyed when nobody edits it.
void HydraScene::disconnect()
{
    m_retired = true;
    const std::uint32_t id = std::exchange(m_listenerId, 0);
    const auto document = m_document.lock();
    if (!document) return;
    document->getEventBus()->unsubscribeListener(id);
    if (!m_hasEngine) return;
    takeStageTurn(*document, "release scene", base::Priority::High, [drawer = m_drawer](StageTurn&) {
        drawer->destroyEngine();
    }).detach();
}

void HydraScene::_onEvent(const std::any& event)
{
    if (std::any_cast<StageChangesEvent>(&event)) ++m_changes;
}

std::optional<StageFacts> HydraScene::remembered(const StageNeeds& needs) const
{
    const std::lock_guard lock(m_mutex);
    if (m_readAt != m_changes || !coversAll(m_readNeeds, needs)) return std::nullopt;
    return m_facts;
}

StageFacts HydraScene::read(const StageNeeds& needs, const UsdStageRefPtr& stage) const
{
    StageFacts facts;
    if (stage) {
        facts.zUp = UsdGeomGetStageUpAxis(stage) == UsdGeomTokens->z;
        if (needs.bounds) facts.bounds = _boundsOf(needs, stage);
        if (!needs.cameraPath.IsEmpty()) {
            if (const UsdGeomCamera camera{stage->GetPrimAtPath(needs.cameraPath)})
                facts.camera = camera.GetCamera(timeCode(needs.time));
        }
    }
    return facts;
}

void HydraScene::remember(const StageNeeds& needs, const StageFacts& facts)
{
    const std::lock_guard lock(m_mutex);
    m_readAt = m_changes;
    m_readNeeds = needs;
    m_facts = facts;
}

GfRange3d HydraScene::_boundsOf(const StageNeeds& needs, const UsdStageRefPtr& stage) const
{
    UsdGeomBBoxCache cache(
        timeCode(needs.time),
        {UsdGeomTokens->default_, needs.proxyPurpose ? UsdGeomTokens->proxy : UsdGeomTokens->render});
    return cache.ComputeWorldBound(stage->GetPseudoRoot()).ComputeAlignedRange();
}

const std::shared_ptr<HWContext>& HydraScene::context()
{
    if (!m_drawer->context)
        m_drawer->context = m_setup.hostContext ? m_setup.hostContext : makeOffscreenContext();
    return m_drawer->context;
}

Engine& HydraScene::engine()
{
    if (m_retired) throw base::FutureError(base::FutureErrorCode::BrokenPromise);
    if (!m_drawer->engine) {
        m_hasEngine = true;
        m_drawer->engine = std::make_unique<Engine>(m_setup.rendererId, true);
        for (const auto& [name, value] : m_setup.settings)
            m_drawer->engine->SetRendererSetting(TfToken(name), value);
    }
    return *m_drawer->engine;
}

const HydraScene::Named* HydraScene::named(std::int32_t prim, std::int32_t instance) const
{
    if (m_namedAt != m_changes) return nullptr;
    const auto at = m_named.find({prim, instance});
    return at == m_named.end() ? nullptr : &at->second;
}

const HydraScene::Named& HydraScene::name(std::int32_t prim, std::int32_t instance,
                                          const UsdStageRefPtr& stage)
{
    if (m_namedAt != m_changes) {
        m_named.clear();
        m_namedAt = m_changes;
    }
    const auto [at, isNew] = m_named.try_emplace({prim, instance});
    if (isNew) {
        at->second.names = engine().namesOf(prim, instance, stage);
        const auto number = m_numbers.try_emplace(at->second.names.prim, static_cast<int>(m_numbers.size()));
        at->second.number = number.first->second;
    }
    return at->second;
}

} // namespace vesk::renderers::hydra
