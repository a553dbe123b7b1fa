#include "picking.h"

#include "engine.h"
#include "frame_job.h"
#include "gl_context.h"
#include "stage_turn.h"

#include <vesk/base/error_handling.h>
#include <vesk/renderers/picture/outputs.h>

#include <algorithm>
#include <cmath>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::hydra {

using framework::hydra_renderer::PickingResult;

namespace {

bool isInside(const GfVec2i& size, float x, float y)
{
    return x >= 0.0f && y >= 0.0f && x < static_cast<float>(size[0]) && y < static_cast<float>(size[1]);
}

[[noreturn]] void failInvalid(const std::string& text)
{
    throw base::error_handling::Exception(std::make_error_code(std::errc::invalid_argument), text.c_str());
}

// Of the hits within a distance of a point, the nearest to it; of equally near ones the nearest to the
// viewer.
const RawHit* nearestOf(const std::vector<RawHit>& hits, const GfVec2d& point, double radius)
{
    const RawHit* best = nullptr;
    double bestDistance2 = radius * radius;
    for (const RawHit& hit : hits) {
        const double distance2 = (hit.pixel - point).GetLengthSq();
        if (distance2 > bestDistance2) continue;
        if (best && distance2 == bestDistance2 && hit.depth >= best->depth) continue;
        best = &hit;
        bestDistance2 = distance2;
    }
    return best;
}

/// The nearest hit around a place of the picture, looked for in squares of pixels that grow.
std::optional<RawHit> search(Engine& engine, const DrawRequest& request, const GfVec2d& point, double radius)
{
    const auto at = engine.pick(request, point - GfVec2d(0.5), GfVec2i(1), 1.0);
    if (!at.empty()) return at.front();
    if (!(radius > 0.0)) return {};
    const GfVec2i& size = request.settings.size;
    const double most = std::min(radius, std::hypot(size[0], size[1]));
    for (double reach = std::min(8.0, most);; reach = std::min(4.0 * reach, most)) {
        const GfVec2i from(std::max(static_cast<int>(std::floor(point[0] - reach)), 0),
                           std::max(static_cast<int>(std::floor(point[1] - reach)), 0));
        const GfVec2i to(std::min(static_cast<int>(std::ceil(point[0] + reach)), size[0]),
                         std::min(static_cast<int>(std::ceil(point[1] + reach)), size[1]));
        const auto hits = engine.pick(request, GfVec2d(from), to - from, 1.0);
        if (const RawHit* best = nearestOf(hits, point, reach)) return *best;
        if (reach >= most) return {};
    }
}

PickingResult describe(HydraScene& scene, const DrawRequest& request, const RawHit& hit,
                       const UsdStageRefPtr& stage)
{
    const HitNames names = scene.name(hit.prim, hit.instance, stage).names;
    const GfVec2i& size = request.settings.size;
    const GfVec3d ndc(hit.pixel[0] / size[0] * 2.0 - 1.0, 1.0 - hit.pixel[1] / size[1] * 2.0,
                      hit.depth * 2.0 - 1.0);
    const GfVec3d eye = request.view.projection.GetInverse().Transform(ndc);
    const GfMatrix4d toWorld = request.view.view.GetInverse();
    PickingResult result;
    result.hit = true;
    result.primPath = names.prim.GetString();
    result.secondaryPath = names.instance.GetString();
    result.instanceIndex = names.instanceIndex;
    result.tertiaryPath = names.prototype.GetString();
    result.point = toWorld.Transform(eye);
    result.depth = -eye[2];
    GfVec3d normal = GfVec3d(hit.normal).GetNormalized();
    const GfVec3d toViewer =
        request.view.perspective ? toWorld.ExtractTranslation() - result.point : toWorld.GetRow3(2);
    result.normal = GfDot(normal, toViewer) < 0.0 ? -normal : normal;
    return result;
}

/// A pick on its way; it ends its future in every case.
class PickRequest final : public PendingRequest, public std::enable_shared_from_this<PickRequest>
{
public:
    PickRequest(std::shared_ptr<RendererCore> core, const GfVec2d& point, double radius)
        : m_core(std::move(core)), m_copy(m_core->copy()), m_point(point), m_radius(radius)
    {}

    base::Future<PickingResult> future() const { return m_promise.getFuture(); }
    void abandon() override { m_promise.setError(base::detail::brokenPromise()); }

    void start()
    {
        if (!m_copy.scene) {
            abandon();
            return;
        }
        const auto document = m_copy.scene->document();
        auto self = shared_from_this();
        if (!document) {
            base::defaultExecutor()->post(base::Work([self] { self->_endWith(StageFacts()); }));
            return;
        }
        takeStageTurn(*document, "render scene", base::Priority::High,
                      [self](StageTurn& turn) { self->_run(turn.stage()); })
            .recover(base::inlineExecutor(),
                     [self](const base::Future<void>& turn) {
                         if (turn.error()) self->m_promise.setError(turn.error());
                         self->m_core->requestEnded(self);
                     })
            .detach();
    }

private:
    DrawRequest _request(const StageFacts& facts) const
    {
        DrawRequest request;
        request.settings = m_copy.settings;
        request.complexity = m_copy.complexity;
        request.zUp = facts.zUp;
        const auto view = HydraView::make(m_core->cameraOf(m_copy.settings, facts), m_copy.settings.fitPolicy,
                                          m_copy.settings.size);
        if (!view) {
            failInvalid("the camera has no usable view; its transform and apertures must be finite and its "
                        "near plane must lie before its far plane");
        }
        request.view = *view;
        return request;
    }

    // A document that is not there shows nothing.
    void _endWith(const StageFacts& facts)
    {
        try {
            _request(facts);
            m_promise.setValue();
        } catch (...) {
            m_promise.setError(std::current_exception());
        }
        m_core->requestEnded(shared_from_this());
    }

    void _run(const UsdStageRefPtr& stage)
    {
        try {
            if (m_core->isClosed()) return;
            HydraScene& scene = *m_copy.scene;
            const StageNeeds needs = StageNeeds::of(m_copy.settings, m_copy.complexity, false);
            const auto known = scene.remembered(needs);
            const DrawRequest request = _request(known ? *known : scene.read(needs, stage));
            PickingResult result;
            if (stage && isInside(m_copy.settings.size, static_cast<float>(m_point[0]),
                                  static_cast<float>(m_point[1]))) {
                if (const auto hit = _search(request, stage)) result = describe(scene, request, *hit, stage);
            }
            m_promise.setValue(std::move(result));
        } catch (...) {
            m_promise.setError(std::current_exception());
        }
    }

    std::optional<RawHit> _search(const DrawRequest& request, const UsdStageRefPtr& stage) const
    {
        const CurrentContext current(m_copy.scene->context());
        Engine& engine = m_copy.scene->engine();
        engine.readStage(request, stage->GetPseudoRoot());
        return search(engine, request, m_point, m_radius);
    }

    std::shared_ptr<RendererCore> m_core;
    SettingsCopy m_copy;
    GfVec2d m_point;
    double m_radius;
    base::Promise<PickingResult> m_promise;
};

} // namespace

base::Future<PickingResult> startPick(const std::shared_ptr<RendererCore>& core, float x, float y,
                                      float radius)
{
    auto request = std::make_shared<PickRequest>(core, GfVec2d(x, y), radius);
    try {
        picture::checkRenderSize(core->copy().settings.size);
    } catch (...) {
        return base::makeFailedFuture<PickingResult>(std::current_exception());
    }
    core->addRequest(request);
    request->start();
    return request->future();
}

base::Future<GfVec4f> startColorPick(const std::shared_ptr<RendererCore>& core, float x, float y,
                                     const TfToken& aov)
{
    try {
        const auto output = picture::outputOf(aov);
        if (!output) {
            failInvalid("unknown render output '" + aov.GetString() +
                        "'; known outputs: " + picture::knownOutputs());
        }
        SettingsCopy copy = core->copy();
        picture::checkRenderSize(copy.settings.size);
        if (!isInside(copy.settings.size, x, y)) failInvalid("cannot read a pixel outside the picture");
        auto frame = std::make_shared<PixelFrame>(core, std::move(copy),
                                                  GfVec2i(static_cast<int>(x), static_cast<int>(y)), *output);
        core->addRequest(frame);
        frame->start();
        return frame->future();
    } catch (...) {
        return base::makeFailedFuture<GfVec4f>(std::current_exception());
    }
}

} // namespace vesk::renderers::hydra
