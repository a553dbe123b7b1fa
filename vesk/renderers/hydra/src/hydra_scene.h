#pragma once

#include "draw_request.h"

#include <pxr/base/gf/range3d.h>
#include <vesk/framework/hydra_renderer/hw_context.h>
#include <vesk/framework/usd_document/usd_document.h>
#include <vesk/usd/utils/param.h>

#include <any>
#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <optional>

namespace vesk::renderers::hydra {

class Engine;

/// With what a scene is drawn.
struct EngineSetup
{
    std::string rendererId;
    std::shared_ptr<framework::hydra_renderer::HWContext> hostContext; ///< null: an offscreen one of its own
    std::map<std::string, PXR_NS::VtValue> settings;                   ///< of the render delegate
};

/// What a drawing needs of the stage beside its prims.
struct StageFacts
{
    bool zUp = false;
    PXR_NS::GfRange3d bounds;               ///< empty where they were not asked for
    std::optional<PXR_NS::GfCamera> camera; ///< of the path that was asked for, nothing where it names none
};

/// What must be read of the stage before a drawing.
struct StageNeeds
{
    double time = 0.0;
    bool proxyPurpose = false;
    bool materials = true;
    bool lights = true;
    picture::DrawMode drawMode = picture::DrawMode::ShadedSmooth;
    float complexity = 1.0f;
    PXR_NS::SdfPath cameraPath; ///< empty for none
    bool bounds = false;

    static StageNeeds of(const picture::FrameSettings& settings, float complexity, bool bounds);
};

/// One document as one renderer draws it: Hydra's engine for it, and what was read from it. Thread: any,
/// unless it says otherwise.
class HydraScene : public std::enable_shared_from_this<HydraScene>
{
public:
    HydraScene(const std::shared_ptr<framework::usd_document::UsdDocument>& document, EngineSetup setup);
    ~HydraScene();

    /// Starts to listen to the document's changes.
    void connect();

    /// Stops to listen and gives the engine back, in the document's next turn where there is one.
    void disconnect();

    std::shared_ptr<framework::usd_document::UsdDocument> document() const { return m_document.lock(); }

    /// What was read before, or nothing where the stage must be read first.
    std::optional<StageFacts> remembered(const StageNeeds& needs) const;

    /// Reads the facts of the stage. Thread: the drawing thread, in its turn.
    StageFacts read(const StageNeeds& needs, const PXR_NS::UsdStageRefPtr& stage) const;

    /// Remembers the newest facts, once all that was needed for a drawing has been read.
    /// Thread: the drawing thread, in its turn.
    void remember(const StageNeeds& needs, const StageFacts& facts);

    /// The engine, made by the first call, and its context. Throws: `Exception` with one sentence; as the
    /// same each time where no engine can be made. Thread: the drawing thread.
    const std::shared_ptr<framework::hydra_renderer::HWContext>& context();
    /// Needs the context to be current. Throws: "broken promise" once another document or delegate is shown.
    Engine& engine();

    /// The names behind Hydra's numbers, as far as they are known.
    struct Named
    {
        HitNames names;
        int number = -1; ///< one for each prim of the stage
    };
    const Named* named(std::int32_t prim, std::int32_t instance) const;
    /// Thread: the drawing thread, in its turn.
    const Named& name(std::int32_t prim, std::int32_t instance, const PXR_NS::UsdStageRefPtr& stage);

private:
    struct Drawer;

    void _onEvent(const std::any& event);
    PXR_NS::GfRange3d _boundsOf(const StageNeeds& needs, const PXR_NS::UsdStageRefPtr& stage) const;

    std::weak_ptr<framework::usd_document::UsdDocument> m_document;
    const EngineSetup m_setup;
    std::uint32_t m_listenerId = 0;
    std::shared_ptr<Drawer> m_drawer; ///< its insides belong to the drawing thread
    std::atomic<std::uint64_t> m_changes{1};
    std::atomic<bool> m_hasEngine{false};
    std::atomic<bool> m_retired{false};

    // For the drawing thread alone.
    std::map<std::pair<std::int32_t, std::int32_t>, Named> m_named;
    std::map<PXR_NS::SdfPath, int> m_numbers;
    std::uint64_t m_namedAt = 0;

    mutable std::mutex m_mutex; // guards what follows; nothing is called while it is held
    std::uint64_t m_readAt = 0;
    StageNeeds m_readNeeds;
    StageFacts m_facts;
};

} // namespace vesk::renderers::hydra
