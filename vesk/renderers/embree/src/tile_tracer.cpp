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

class SampleWave
{
public:
    SampleWave(const FrameView& view, const Tile& tile, int sample, const Film& film, int block)
        : m_view(view), m_shader(view, sample)
    {
        const Sample2 offset = pixelSample(static_cast<std::uint32_t>(sample));
        const auto width = static_cast<float>(block);
        for (int y = tile.y0; y < tile.y1; y += block) {
            for (int x = tile.x0; x < tile.x1; x += block) {
                Path path;
                path.pixel = film.index(x, y);
                path.seed = hash(static_cast<std::uint32_t>(path.pixel));
                path.ray = view.camera.at(static_cast<float>(x) + offset.x * width,
                                          static_cast<float>(y) + offset.y * width);
                path.grid = view.grid.cross(path.ray);
                m_paths.push_back(path);
            }
        }
    }

    void run(Film& film)
    {
        for (int layer = 0; layer < kMaxLayers && !m_paths.empty(); ++layer) {
            _traceLayer(film, layer);
        }
        for (Path& path : m_paths) {
            _finish(film, path);
        }
    }

private:
    void _traceLayer(Film& film, int layer)
    {
        m_rays.clear();
        for (const Path& path : m_paths) {
            m_rays.push_back(toRay(path.ray));
        }
        m_view.scene->intersect(m_rays.data(), static_cast<unsigned>(m_rays.size()), layer == 0);
        m_points.clear();
        m_hitPaths.clear();
        for (std::size_t i = 0; i < m_paths.size(); ++i) {
            m_paths[i].rays += 1.0f;
            SurfaceHit hit;
            if (!toHit(m_rays[i], hit)) {
                _finish(film, m_paths[i]);
                continue;
            }
            m_hitPaths.push_back(m_paths[i]);
            m_points.push_back(m_shader.prepare(hit, m_paths[i].ray, m_paths[i].seed));
        }
        m_shader.shade(m_points);
        m_paths.clear();
        for (std::size_t i = 0; i < m_hitPaths.size(); ++i) {
            _goOn(film, m_hitPaths[i], m_points[i]);
        }
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
    }

    const FrameView& m_view;
    Shader m_shader;
    std::vector<Path> m_paths;
    std::vector<Path> m_hitPaths;
    std::vector<RTCRayHit> m_rays;
    std::vector<ShadedPoint> m_points;
};

GeometryPixel geometryAt(const FrameView& view, const ViewRay& ray, const SurfaceHit& hit)
{
    const SurfacePoint s = placeAt(*view.scene, hit, ray.origin, ray.direction, false);
    GeometryPixel pixel;
    pixel.viewDistance = ray.viewDistance(hit.t);
    pixel.windowDepth = view.camera.windowDepth(pixel.viewDistance);
    pixel.normal = s.normal;
    pixel.eyeNormal = {dot(s.normal, view.camera.right()), dot(s.normal, view.camera.up()),
                       dot(s.normal, view.camera.backward())};
    pixel.prim = view.scene->primIdOf(hit);
    pixel.placement = hit.placement;
    pixel.item = hit.item;
    pixel.element = static_cast<int>(s.face);
    pixel.instance = view.scene->instanceIndexOf(hit);
    return pixel;
}

// The classic model's shininess as a roughness: its highlight has the same width.
Material toMaterial(const PXR_NS::GlfSimpleMaterial& simple)
{
    const auto rgb = [](const PXR_NS::GfVec4f& c) { return Vec3(c[0], c[1], c[2]); };
    Material material;
    material.diffuse = MaterialInput::of(rgb(simple.GetDiffuse()));
    material.emission = MaterialInput::of(rgb(simple.GetEmission()));
    material.specular = MaterialInput::of(rgb(simple.GetSpecular()));
    material.specularWorkflow = true;
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

bool toHit(const RTCRayHit& ray, SurfaceHit& hit)
{
    if (ray.hit.geomID == RTC_INVALID_GEOMETRY_ID) return false;
    hit.placement = ray.hit.instID[0];
    hit.item = ray.hit.geomID;
    hit.primitive = ray.hit.primID;
    hit.u = ray.hit.u;
    hit.v = ray.hit.v;
    hit.t = ray.ray.tfar;
    hit.geometricNormal = {ray.hit.Ng_x, ray.hit.Ng_y, ray.hit.Ng_z};
    return true;
}

RTCRayHit toRay(const ViewRay& ray)
{
    RTCRayHit r{};
    r.ray.org_x = ray.origin.x;
    r.ray.org_y = ray.origin.y;
    r.ray.org_z = ray.origin.z;
    r.ray.dir_x = ray.direction.x;
    r.ray.dir_y = ray.direction.y;
    r.ray.dir_z = ray.direction.z;
    r.ray.tnear = ray.tNear;
    r.ray.tfar = ray.tFar;
    r.ray.mask = 0xffffffffu;
    r.hit.geomID = RTC_INVALID_GEOMETRY_ID;
    r.hit.instID[0] = RTC_INVALID_GEOMETRY_ID;
    return r;
}

namespace {

// Gives all pixels of each block what its first one has.
template <class Get>
void spreadBlocks(const Film& film, const Tile& tile, int block, const Get& get)
{
    for (int y = tile.y0; y < tile.y1; ++y) {
        const int top = tile.y0 + (y - tile.y0) / block * block;
        for (int x = tile.x0; x < tile.x1; ++x) {
            const int left = tile.x0 + (x - tile.x0) / block * block;
            if (left != x || top != y) get(film.index(x, y)) = get(film.index(left, top));
        }
    }
}

} // namespace

void traceColor(const FrameView& view, Film& film, const Tile& tile, int first, int last, int block)
{
    for (int sample = first; sample < last; ++sample) {
        SampleWave(view, tile, sample, film, block).run(film);
    }
    if (block > 1)
        spreadBlocks(film, tile, block, [&film](std::size_t i) -> FilmPixel& { return film.pixel(i); });
}

void traceGeometry(const FrameView& view, Film& film, const Tile& tile, int block)
{
    std::vector<ViewRay> views;
    std::vector<RTCRayHit> rays;
    const float middle = 0.5f * static_cast<float>(block);
    for (int y = tile.y0; y < tile.y1; y += block) {
        for (int x = tile.x0; x < tile.x1; x += block) {
            views.push_back(view.camera.at(static_cast<float>(x) + middle, static_cast<float>(y) + middle));
            rays.push_back(toRay(views.back()));
        }
    }
    view.scene->intersect(rays.data(), static_cast<unsigned>(rays.size()), true);
    std::size_t i = 0;
    for (int y = tile.y0; y < tile.y1; y += block) {
        for (int x = tile.x0; x < tile.x1; x += block, ++i) {
            SurfaceHit hit;
            GeometryPixel& pixel = film.geometry(film.index(x, y));
            pixel = toHit(rays[i], hit) ? geometryAt(view, views[i], hit) : GeometryPixel();
        }
    }
    if (block > 1)
        spreadBlocks(film, tile, block,
                     [&film](std::size_t k) -> GeometryPixel& { return film.geometry(k); });
}

} // namespace vesk::renderers::embree
