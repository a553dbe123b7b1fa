#include "picking.h"

#include "frame_setup.h"
#include "tile_pass.h"

#include <vesk/base/error_handling.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {

using framework::hydra_renderer::PickingResult;

namespace {

bool isInside(const GfVec2i& size, float x, float y)
{
    return x >= 0.0f && y >= 0.0f && x < static_cast<float>(size[0]) && y < static_cast<float>(size[1]);
}

/// A place to look at, by its distance from the position that was picked.
struct Probe
{
    float distance2;
    float x;
    float y;
};

// The pixels' centres whose distance from (x, y) lies in (inner, outer], nearest first, rows before columns.
std::vector<Probe> ringOfProbes(const GfVec2i& size, float x, float y, float inner, float outer)
{
    std::vector<Probe> probes;
    const int top = std::max(static_cast<int>(std::floor(y - outer)), 0);
    const int bottom = std::min(static_cast<int>(std::ceil(y + outer)), size[1] - 1);
    for (int row = top; row <= bottom; ++row) {
        const float dy = static_cast<float>(row) + 0.5f - y;
        const float reach = std::sqrt(std::max(outer * outer - dy * dy, 0.0f));
        const int left = std::max(static_cast<int>(std::floor(x - reach)), 0);
        const int right = std::min(static_cast<int>(std::ceil(x + reach)), size[0] - 1);
        for (int column = left; column <= right; ++column) {
            const float dx = static_cast<float>(column) + 0.5f - x;
            const float d2 = dx * dx + dy * dy;
            if (d2 <= outer * outer && (d2 > inner * inner || inner == 0.0f)) {
                probes.push_back({d2, static_cast<float>(column) + 0.5f, static_cast<float>(row) + 0.5f});
            }
        }
    }
    std::stable_sort(probes.begin(), probes.end(),
                     [](const Probe& a, const Probe& b) { return a.distance2 < b.distance2; });
    return probes;
}

PickingResult describe(const FrameView& view, const ViewRay& ray, const SurfaceHit& hit)
{
    const SurfacePoint s = placeAt(*view.scene, hit, ray.origin, ray.direction, false);
    const HitNames names = view.scene->namesOf(hit.placement, hit.item);
    PickingResult result;
    result.hit = true;
    result.primPath = names.prim.GetString();
    result.secondaryPath = names.instance.GetString();
    result.instanceIndex = names.instanceIndex;
    result.tertiaryPath = names.prototype.GetString();
    result.point = s.position.toGfd() + view.scene->origin();
    result.normal = s.normal.toGfd();
    result.depth = ray.viewDistance(hit.t);
    return result;
}

/// Of the probes that hit, the nearest to the position; of equally near ones the nearest to the viewer.
class NearestHit
{
public:
    explicit NearestHit(const FrameView& view) : m_view(view) {}

    bool found() const { return m_hit.has_value(); }
    PickingResult result() const { return m_hit ? describe(m_view, m_ray, *m_hit) : PickingResult(); }

    void look(float x, float y)
    {
        m_ray = m_view.camera.at(x, y);
        m_hit = m_view.scene->intersect(m_ray);
    }

    /// \param probes nearest first
    void look(const std::vector<Probe>& probes)
    {
        RayPacket packet;
        ViewRay rays[RayPacket::kSize];
        for (std::size_t first = 0; first < probes.size(); first += RayPacket::kSize) {
            if (m_hit && probes[first].distance2 > m_distance2) return;
            const std::size_t last = std::min(first + RayPacket::kSize, probes.size());
            packet.clear();
            for (std::size_t i = first; i < last; ++i) {
                rays[i - first] = m_view.camera.at(probes[i].x, probes[i].y);
                packet.add(rays[i - first]);
            }
            m_view.scene->intersect(packet);
            for (std::size_t i = first; i < last; ++i)
                _take(probes[i], rays[i - first], packet, static_cast<int>(i - first));
        }
    }

private:
    void _take(const Probe& probe, const ViewRay& ray, const RayPacket& packet, int lane)
    {
        if (!packet.isHit(lane)) return;
        const float depth = ray.viewDistance(packet.distance(lane));
        if (m_hit && (probe.distance2 > m_distance2 || depth >= m_depth)) return;
        m_hit = packet.hit(lane);
        m_ray = ray;
        m_distance2 = probe.distance2;
        m_depth = depth;
    }

    const FrameView& m_view;
    std::optional<SurfaceHit> m_hit;
    ViewRay m_ray;
    float m_distance2 = 0.0f;
    float m_depth = 0.0f;
};

} // namespace

PickingResult pickAt(const FrameView& view, float x, float y, float radius)
{
    const GfVec2i& size = view.settings.size;
    if (!isInside(size, x, y)) return {};
    NearestHit nearest(view);
    nearest.look(x, y);
    if (nearest.found() || !(radius > 0.0f)) return nearest.result();
    // Nothing lies farther away than the picture's far corner. Rings, so that a near hit ends the search.
    const float most = std::min(radius, std::hypot(static_cast<float>(size[0]), static_cast<float>(size[1])));
    float inner = 0.0f;
    for (float outer = std::min(4.0f, most); !nearest.found(); outer = std::min(2.0f * outer, most)) {
        nearest.look(ringOfProbes(size, x, y, inner, outer));
        if (outer >= most) break;
        inner = outer;
    }
    return nearest.result();
}

GfVec4f readOutputAt(const FrameView& view, Output output, float x, float y)
{
    const GfVec2i& size = view.settings.size;
    if (!isInside(size, x, y)) {
        throw base::error_handling::Exception(std::make_error_code(std::errc::invalid_argument),
                                              "cannot read a pixel outside the picture");
    }
    const auto column = static_cast<int>(x);
    const auto row = static_cast<int>(y);
    const Tile tile{column, row, column + 1, row + 1};
    FilmParts parts;
    if (output != Output::Color) parts = partsFor({output}, view.settings);
    Film film(GfVec2i(1, 1), parts, GfVec2i(column, row));
    if (output == Output::Color) {
        traceColor(view, film, tile, 0, view.settings.samples);
    } else {
        traceGeometry(view, film, tile);
    }
    const OutputPixel pixel = readPixel(film, view.settings, output, 0);
    return GfVec4f(pixel.channel[0], pixel.channel[1], pixel.channel[2], pixel.channel[3]);
}

namespace {

/// A question about one place of the picture: ends its future with what `answer` says of the view.
template <class T>
class ViewRequest final : public PendingRequest
{
public:
    base::Future<T> future() const { return m_promise.getFuture(); }
    void abandon() override { m_promise.setError(base::detail::brokenPromise()); }

    template <class Answer>
    void run(RendererCore& core, const RendererState::Copy& copy, const base::Future<PulledScene>& pulled,
             const Answer& answer)
    {
        try {
            const PulledScene& scene = pulled.get();
            const auto view = makeFrameView(copy.settings, scene, core.cameraOf(copy.settings, scene));
            m_promise.setValue(answer(*view));
        } catch (...) {
            m_promise.setError(std::current_exception());
        }
    }

private:
    base::Promise<T> m_promise;
};

template <class T, class Answer>
base::Future<T> startRequest(const std::shared_ptr<RendererCore>& core, Answer answer)
{
    auto request = std::make_shared<ViewRequest<T>>();
    base::Future<T> future = request->future();
    const RendererState::Copy copy = core->state.copy();
    try {
        checkRenderSize(copy.settings.size);
    } catch (...) {
        return base::makeFailedFuture<T>(std::current_exception());
    }
    core->addRequest(request);
    RendererCore::pull(copy)
        .recover(urgentExecutor(),
                 [core, request, copy, answer](const base::Future<PulledScene>& pulled) {
                     request->run(*core, copy, pulled, answer);
                     core->requestEnded(request);
                 })
        .detach();
    return future;
}

} // namespace

base::Future<PickingResult> startPick(const std::shared_ptr<RendererCore>& core, float x, float y,
                                      float radius)
{
    return startRequest<PickingResult>(
        core, [x, y, radius](const FrameView& view) { return pickAt(view, x, y, radius); });
}

base::Future<GfVec4f> startColorPick(const std::shared_ptr<RendererCore>& core, float x, float y,
                                     const TfToken& aov)
{
    const std::optional<Output> output = outputOf(aov);
    if (!output) {
        const std::string text =
            "unknown render output '" + aov.GetString() + "'; known outputs: " + knownOutputs();
        return base::makeFailedFuture<GfVec4f>(std::make_exception_ptr(base::error_handling::Exception(
            std::make_error_code(std::errc::invalid_argument), text.c_str())));
    }
    return startRequest<GfVec4f>(
        core, [x, y, output = *output](const FrameView& view) { return readOutputAt(view, output, x, y); });
}

} // namespace vesk::renderers::embree
