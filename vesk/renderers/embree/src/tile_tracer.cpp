#include "tile_tracer.h"

#include "drawing.h"
#include "sampling.h"
#include "shading.h"

#include <limits>

namespace vesk::renderers::embree {
namespace {

constexpr int kMaxLayers = 8; // of transparent surfaces behind each other
constexpr float kOpaque = 0.998f;
constexpr float kGridBefore = 0.2f;

/// One sample on its way through the scene.
struct Path
{
    std::size_t pixel = 0;
    std::uint32_t seed = 0;
    ViewRay ray;
    Grid::Crossing grid;
    Vec3 color;              ///< gathered so far
    float throughput = 1.0f; ///< what still passes
    float rays = 0.0f;       ///< that were traced for it
};

// Blends a layer behind those that were gathered.
void addLayer(Path& path, Vec3 color, float alpha)
{
    path.color += color * (path.throughput * alpha);
    path.throughput *= 1.0f - alpha;
}

void addGridBefore(Path& path, float t)
{
    if (path.grid.alpha <= 0.0f || path.grid.t >= t * (1.0f - 1e-4f)) return;
    // In front of the scene the lines are only hinted at: they must not cross out what they pass.
    const bool behindAll = t == std::numeric_limits<float>::max();
    addLayer(path, path.grid.color, path.grid.alpha * (behindAll ? 1.0f : kGridBefore));
    path.grid.alpha = 0.0f;
}

/// Calls `f(x, y)` for each pixel of a tile, square by square, so that rays of one packet are alike.
template <class F>
void forEachPixel(const Tile& tile, const F& f)
{
    constexpr int side = RayPacket::kSide;
    for (int top = tile.y0; top < tile.y1; top += side) {
        for (int left = tile.x0; left < tile.x1; left += side) {
            for (int y = top; y < std::min(top + side, tile.y1); ++y) {
                for (int x = left; x < std::min(left + side, tile.x1); ++x)
                    f(x, y);
            }
        }
    }
}

class SampleWave
{
public:
    SampleWave(const FrameView& view, const Tile& tile, int sample, const Film& film, int block)
        : m_view(view), m_shader(view, sample)
    {
        const Sample2 offset = pixelSample(static_cast<std::uint32_t>(sample));
        const auto width = static_cast<float>(block);
        const auto count =
            static_cast<std::size_t>(tile.x1 - tile.x0) * static_cast<std::size_t>(tile.y1 - tile.y0);
        m_paths.reserve(count);
        m_hitPaths.reserve(count);
        m_points.reserve(count);
        forEachPixel(tile, [&](int x, int y) {
            Path path;
            path.pixel = film.index(x, y);
            path.seed = hash(static_cast<std::uint32_t>(y * view.settings.size[0] + x));
            path.ray = view.camera.at((static_cast<float>(x) + offset.x) * width,
                                      (static_cast<float>(y) + offset.y) * width);
            path.grid = view.grid.cross(path.ray);
            m_paths.push_back(path);
        });
    }

    void run(Film& film)
    {
        for (int layer = 0; layer < kMaxLayers && !m_paths.empty(); ++layer) {
            _traceLayer(film);
        }
        for (Path& path : m_paths) {
            _finish(film, path);
        }
    }

private:
    void _traceLayer(Film& film)
    {
        m_points.clear();
        m_hitPaths.clear();
        for (std::size_t first = 0; first < m_paths.size(); first += RayPacket::kSize) {
            const std::size_t last = std::min(first + RayPacket::kSize, m_paths.size());
            m_packet.clear();
            for (std::size_t i = first; i < last; ++i)
                m_packet.add(m_paths[i].ray);
            m_view.scene->intersect(m_packet);
            for (std::size_t i = first; i < last; ++i)
                _takeHit(film, m_paths[i], static_cast<int>(i - first));
        }
        m_shader.shade(m_points);
        m_paths.clear();
        for (std::size_t i = 0; i < m_hitPaths.size(); ++i) {
            _goOn(film, m_hitPaths[i], m_points[i]);
        }
    }

    void _takeHit(Film& film, Path& path, int lane)
    {
        path.rays += 1.0f;
        if (!m_packet.isHit(lane)) {
            _finish(film, path);
            return;
        }
        m_hitPaths.push_back(path);
        m_points.push_back(m_shader.prepare(m_packet.hit(lane), path.ray, path.seed));
    }

    void _goOn(Film& film, Path& path, const ShadedPoint& point)
    {
        path.rays += point.rays;
        addGridBefore(path, point.hit.t);
        addLayer(path, point.color, point.alpha);
        if (point.alpha >= kOpaque || path.throughput < 1.0f - kOpaque) {
            path.grid.alpha = 0.0f;
            _finish(film, path);
            return;
        }
        path.ray.tNear = point.hit.t + m_shader.offsetAt(point.hit.t);
        if (path.ray.tNear < path.ray.tFar) {
            m_paths.push_back(path);
        } else {
            _finish(film, path);
        }
    }

    void _finish(Film& film, Path& path)
    {
        addGridBefore(path, std::numeric_limits<float>::max());
        FilmPixel& pixel = film.pixel(path.pixel);
        pixel.color += path.color;
        pixel.alpha += 1.0f - path.throughput;
        pixel.cost += path.rays;
        pixel.samples += 1.0f;
    }

    const FrameView& m_view;
    Shader m_shader;
    std::vector<Path> m_paths;
    std::vector<Path> m_hitPaths;
    RayPacket m_packet;
    std::vector<ShadedPoint> m_points;
};

/// Writes what one ray of a packet shows to the parts of a film that it has.
class GeometryWriter
{
public:
    GeometryWriter(const FrameView& view, Film& film) : m_view(view), m_film(film) {}

    void write(std::size_t pixel, const ViewRay& ray, const RayPacket& packet, int lane)
    {
        const bool isHit = packet.isHit(lane);
        const FilmParts& parts = m_film.parts();
        if (parts.ids) m_film.ids(pixel) = isHit ? _ids(packet, lane) : IdPixel();
        if (parts.depths) m_film.depths(pixel) = isHit ? _depths(ray, packet.distance(lane)) : DepthPixel();
        if (parts.normals) m_film.normals(pixel) = isHit ? _normals(ray, packet.hit(lane)) : NormalPixel();
    }

private:
    IdPixel _ids(const RayPacket& packet, int lane)
    {
        // Neighbours mostly show the same prim: its numbers are looked up once.
        if (packet.placement(lane) != m_last.placement || packet.item(lane) != m_last.item || !m_geometry) {
            m_last.placement = packet.placement(lane);
            m_last.item = packet.item(lane);
            m_last.prim = m_view.scene->primIdOf(m_last.placement, m_last.item);
            m_last.instance = m_view.scene->instanceIndexOf(m_last.placement);
            m_geometry = m_view.scene->itemOf(m_last.placement, m_last.item).geometry.get();
        }
        IdPixel ids = m_last;
        ids.element = static_cast<int>(elementOf(*m_geometry, packet.primitive(lane)));
        return ids;
    }

    DepthPixel _depths(const ViewRay& ray, float distance) const
    {
        const float depth = ray.viewDistance(distance);
        return {depth, m_view.camera.windowDepth(depth)};
    }

    NormalPixel _normals(const ViewRay& ray, const SurfaceHit& hit) const
    {
        const Vec3 n = placeAt(*m_view.scene, hit, ray.origin, ray.direction, false).normal;
        const CameraRays& camera = m_view.camera;
        return {n, {dot(n, camera.right()), dot(n, camera.up()), dot(n, camera.backward())}};
    }

    const FrameView& m_view;
    Film& m_film;
    IdPixel m_last;
    const Geometry* m_geometry = nullptr;
};

// The classic model's shininess as a roughness: its highlight has the same width.
Material toMaterial(const PXR_NS::GlfSimpleMaterial& simple)
{
    const auto rgb = [](const PXR_NS::GfVec4f& c) { return Vec3(c[0], c[1], c[2]); };
    Material material;
    material.diffuse = MaterialInput::of(rgb(simple.GetDiffuse()));
    material.emission = MaterialInput::of(rgb(simple.GetEmission()));
    material.specular = MaterialInput::of(rgb(simple.GetSpecular()));
    material.specularWorkflow = true;
    material.mirrors = false;
    const double exponent = std::max(simple.GetShininess(), 1.0);
    material.roughness = MaterialInput::of(static_cast<float>(std::pow(2.0 / (exponent + 1.0), 0.25)));
    return material;
}

} // namespace

FrameView::FrameView(std::shared_ptr<const TraceScene> tracedScene, const FrameSettings& frameSettings,
                     const CameraRays& cameraRays)
    : scene(std::move(tracedScene)),
      settings(frameSettings),
      camera(cameraRays),
      lights(FrameLights::gather(settings.lighting, scene->snapshot(), camera, scene->origin())),
      grid(settings, scene->snapshot().zUp, camera, scene->origin(), scene->radius()),
      defaultMaterial(toMaterial(settings.lighting.material))
{}

SurfaceLooks FrameView::looks() const
{
    const DrawMode mode = settings.drawMode;
    SurfaceLooks looks;
    looks.defaultMaterial = &defaultMaterial;
    looks.flat = mode == DrawMode::ShadedFlat || mode == DrawMode::GeomFlat;
    looks.materials =
        mode != DrawMode::GeomOnly && mode != DrawMode::GeomFlat && mode != DrawMode::GeomSmooth;
    looks.displayColors = mode != DrawMode::GeomOnly;
    return looks;
}

void traceColor(const FrameView& view, Film& film, const Tile& tile, int first, int last, int block)
{
    for (int sample = first; sample < last; ++sample)
        SampleWave(view, tile, sample, film, block).run(film);
}

void traceGeometry(const FrameView& view, Film& film, const Tile& tile, int block)
{
    GeometryWriter writer(view, film);
    RayPacket packet;
    ViewRay rays[RayPacket::kSize];
    std::size_t pixels[RayPacket::kSize];
    const auto flush = [&] {
        if (packet.count() == 0) return;
        view.scene->intersect(packet);
        for (int i = 0; i < packet.count(); ++i)
            writer.write(pixels[i], rays[i], packet, i);
        packet.clear();
    };
    const auto width = static_cast<float>(block);
    forEachPixel(tile, [&](int x, int y) {
        const int lane = packet.count();
        rays[lane] =
            view.camera.at((static_cast<float>(x) + 0.5f) * width, (static_cast<float>(y) + 0.5f) * width);
        pixels[lane] = film.index(x, y);
        packet.add(rays[lane]);
        if (packet.isFull()) flush();
    });
    flush();
}

} // namespace vesk::renderers::embree
