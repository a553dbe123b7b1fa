#include "frame_job.h"

#include "engine.h"
#include "gl_context.h"
#include "jitter.h"

#include <vesk/base/error_handling.h>
#include <vesk/renderers/picture/camera_rays.h>

#include <algorithm>
#include <cmath>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::hydra {

using picture::Film;
using picture::FilmParts;

FrameJob::FrameJob(std::shared_ptr<RendererCore> core) : m_core(std::move(core)) {}
FrameJob::~FrameJob() = default;

// Whatever goes wrong in a step ends the frame's future, never the thread.
template <class F>
void FrameJob::_guarded(F&& step)
{
    std::exception_ptr error;
    try {
        step();
        return;
    } catch (...) {
        error = std::current_exception();
    }
    _end(std::move(error));
}

void FrameJob::_end(std::exception_ptr error)
{
    _fail(std::move(error));
    _ended();
}

void FrameJob::_ended() { m_core->frameEnded(this); }

// Where the document drops the task, nobody runs the work: the frame ends as broken.
template <class F>
void FrameJob::_inTurn(const char* label, F work)
{
    const auto document = m_copy.scene->document();
    if (!document) {
        _drawNothing();
        return;
    }
    auto self = shared_from_this();
    takeStageTurn(*document, label, _priority(),
                  [self, work](StageTurn& turn) { self->_guarded([&] { work(*self, turn); }); })
        .recover(base::inlineExecutor(),
                 [self](const base::Future<void>& turn) {
                     if (turn.error()) self->_end(turn.error());
                 })
        .detach();
}

void FrameJob::start()
{
    _guarded([this] { _begin(); });
}

void FrameJob::_begin()
{
    m_copy = _settings();
    if (!m_copy.scene) throw base::FutureError(base::FutureErrorCode::BrokenPromise);
    picture::checkRenderSize(m_copy.settings.size);
    m_samplesDone = 0;
    m_restarting = false;
    const std::vector<picture::Output> outputs = _outputs();
    m_isRead = !outputs.empty();
    m_rect = _rect();
    m_film =
        m_isRead ? Film(m_rect.size, picture::partsFor(outputs, m_copy.settings), m_rect.origin) : Film();
    const StageNeeds needs = StageNeeds::of(m_copy.settings, m_copy.complexity, _showsGrid());
    if (const auto facts = m_copy.scene->remembered(needs)) {
        _prepare(*facts);
        _postPass();
        return;
    }
    _inTurn("render scene", [needs](FrameJob& self, StageTurn& turn) {
        const UsdStageRefPtr stage = turn.stage();
        const StageFacts facts = self.m_copy.scene->read(needs, stage);
        self._prepare(facts);
        self._draw(stage, &turn, [&] { self.m_copy.scene->remember(needs, facts); });
    });
}

void FrameJob::_prepare(const StageFacts& facts)
{
    m_facts = facts;
    m_camera = m_core->cameraOf(m_copy.settings, facts);
    m_request.settings = m_copy.settings;
    m_request.complexity = m_copy.complexity;
    m_request.zUp = facts.zUp;
    m_request.shift = GfVec2d(0.0);
    const auto view = HydraView::make(m_camera, m_copy.settings.fitPolicy, m_copy.settings.size);
    if (!view) {
        throw base::error_handling::Exception(
            std::make_error_code(std::errc::invalid_argument),
            "the camera has no usable view; its transform and apertures must be finite and its near plane "
            "must lie before its far plane");
    }
    m_request.view = *view;
    m_toWorld = view->view.GetInverse();
}

void FrameJob::_postPass()
{
    drawThread(_priority())->post(base::Work([self = shared_from_this()] {
        self->_guarded([&] { self->_draw({}, nullptr, {}); });
    }));
}

// With a stage it is read first; the document's turn ends as soon as nothing more is read.
void FrameJob::_draw(const UsdStageRefPtr& stage, StageTurn* turn, const std::function<void()>& onRead)
{
    if (m_core->isClosed()) return;
    _drawWithEngine(stage, turn, onRead);
    _nameOrPass(turn);
}

void FrameJob::_drawWithEngine(const UsdStageRefPtr& stage, StageTurn* turn,
                               const std::function<void()>& onRead)
{
    const CurrentContext current(m_copy.scene->context());
    Engine& engine = m_copy.scene->engine();
    if (m_samplesDone > 0 && !m_progressing)
        m_request.shift = jitterOf(m_samplesDone, m_copy.settings.samples);
    const bool namesFollow = m_film.parts().anyGeometry() && m_samplesDone == 0;
    engine.drawColor(m_request, stage ? stage->GetPseudoRoot() : UsdPrim(), [&] {
        onRead();
        if (!namesFollow) turn->end();
    });
    m_progressing = engine.isProgressing();
    _drawPixels(engine);
}

void FrameJob::_drawPixels(Engine& engine)
{
    if (!m_isRead) return;
    const bool isFirst = m_samplesDone == 0;
    if (m_film.parts().colors) {
        // A delegate that refines its picture by itself holds all its samples in the newest one.
        if (m_progressing) {
            for (std::size_t i = 0; i < m_film.pixelCount(); ++i)
                m_film.pixel(i) = {};
        }
        engine.addColorTo(m_film, m_rect);
    }
    if (!isFirst) return;
    if (_showsGrid()) m_depth = engine.depthOfColor(m_rect);
    if (m_film.parts().anyGeometry()) m_raw = engine.drawGeometry(m_request, m_rect);
}

// Names that are not known yet are read from the stage: at once while it is ours, else in a turn of their
// own.
void FrameJob::_nameOrPass(StageTurn* turn)
{
    HydraScene& scene = *m_copy.scene;
    const UsdStageRefPtr stage = turn ? turn->stage() : UsdStageRefPtr();
    bool isNamed = true;
    for (std::size_t i = 0; i < m_raw.prim.size(); ++i) {
        if (m_raw.prim[i] < 0 ||
            (i > 0 && m_raw.prim[i] == m_raw.prim[i - 1] && m_raw.instance[i] == m_raw.instance[i - 1]) ||
            scene.named(m_raw.prim[i], m_raw.instance[i])) {
            continue;
        }
        isNamed = isNamed && stage;
        if (!isNamed) break;
        scene.name(m_raw.prim[i], m_raw.instance[i], stage);
    }
    if (isNamed) {
        _fillGeometry();
        base::defaultExecutor(base::Priority::Low)->post(base::Work([self = shared_from_this()] {
            self->_guarded([&] { self->_afterPass(); });
        }));
        return;
    }
    _inTurn("render names", [](FrameJob& self, StageTurn& own) {
        if (!self.m_core->isClosed()) self._nameOrPass(&own);
    });
}

void FrameJob::_fillGeometry()
{
    if (m_raw.prim.size() != m_film.pixelCount() || m_raw.depth.size() != m_film.pixelCount()) return;
    m_names.clear();
    std::map<std::pair<std::int32_t, std::int32_t>, std::uint32_t> places;
    for (std::size_t i = 0; i < m_film.pixelCount(); ++i) {
        if (m_raw.prim[i] < 0) continue;
        _fillDepthAndNormal(i);
        if (!m_film.parts().ids) continue;
        const std::int32_t instance = i < m_raw.instance.size() ? m_raw.instance[i] : -1;
        const auto* named = m_copy.scene->named(m_raw.prim[i], instance);
        if (!named) continue;
        picture::IdPixel& pixel = m_film.ids(i);
        const auto [at, isNew] =
            places.try_emplace({m_raw.prim[i], instance}, static_cast<std::uint32_t>(m_names.size()));
        if (isNew) m_names.push_back(named->names);
        pixel.placement = at->second;
        pixel.prim = named->number;
        pixel.instance = named->names.instanceIndex;
        pixel.element = i < m_raw.element.size() ? m_raw.element[i] : -1;
    }
    m_raw = RawPixels();
}

void FrameJob::_fillDepthAndNormal(std::size_t i)
{
    if (m_film.parts().depths) {
        m_film.depths(i) = {static_cast<float>(m_request.view.viewDistance(m_raw.depth[i])), m_raw.depth[i]};
    }
    if (m_film.parts().normals && i < m_raw.eyeNormal.size()) {
        const GfVec3f eye = m_raw.eyeNormal[i].GetNormalized();
        m_film.normals(i) = {picture::Vec3(GfVec3f(m_toWorld.TransformDir(eye))), picture::Vec3(eye)};
    }
}

// Nothing is there to be drawn: the picture is its background.
void FrameJob::_drawNothing()
{
    _prepare(StageFacts());
    m_samplesDone = std::max(m_copy.settings.samples - 1, 0);
    m_progressing = false;
    base::defaultExecutor(base::Priority::Low)->post(base::Work([self = shared_from_this()] {
        self->_guarded([&] { self->_afterPass(); });
    }));
}

void FrameJob::_afterPass()
{
    if (m_core->isClosed()) return;
    ++m_samplesDone;
    const int wanted = std::max(m_copy.settings.samples, 1);
    const bool converged = !m_progressing && m_samplesDone >= wanted;
    const float fraction =
        converged ? 1.0f : std::min(static_cast<float>(m_samplesDone) / static_cast<float>(wanted), 0.99f);
    const bool isCancelled = !m_core->callbacks.progress(m_samplesDone, fraction, converged);
    if (m_core->isClosed()) return;
    if (isCancelled) {
        throw base::error_handling::Exception(std::make_error_code(std::errc::operation_canceled),
                                              "the frame was cancelled by its progress callback");
    }
    const bool goesOn = _onImage(converged);
    if (m_restarting) {
        _begin();
    } else if (goesOn && !converged) {
        _postPass();
    } else {
        _finish(converged);
        _ended();
    }
}

bool FrameJob::_showsGrid() const
{
    const picture::FrameSettings& s = m_copy.settings;
    return m_film.parts().colors && m_isRead && s.gridEnabled && !s.presentation &&
           !s.transparentBackground && s.gridThickness > 0.0f;
}

} // namespace vesk::renderers::hydra
