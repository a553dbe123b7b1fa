#include "frame_job.h"

#include <vesk/base/thread_pool.h>
#include <vesk/renderers/picture/camera_rays.h>
#include <vesk/renderers/picture/color.h>
#include <vesk/renderers/picture/grid.h>

#include <algorithm>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::hydra {

using picture::Film;
using picture::FilmPixel;

namespace {

constexpr std::size_t kRowsAtOnce = 16;

bool anyPrefix(const std::vector<SdfPath>& prefixes, const SdfPath& path)
{
    return std::any_of(prefixes.begin(), prefixes.end(), [&](const SdfPath& p) { return path.HasPrefix(p); });
}

// A mark on an instancer or on a prim of a prototype marks all copies.
std::uint8_t markOf(const HitNames& names, const picture::FrameSettings& settings)
{
    const auto isMarked = [&names](const std::vector<SdfPath>& paths) {
        return anyPrefix(paths, names.prim) ||
               (!names.instance.IsEmpty() && anyPrefix(paths, names.instance));
    };
    return isMarked(settings.highlighted) ? 2 : isMarked(settings.selection) ? 1 : 0;
}

} // namespace

std::vector<std::uint8_t> FrameJob::_marks() const
{
    std::vector<std::uint8_t> markOfPlace;
    for (const HitNames& names : m_names)
        markOfPlace.push_back(markOf(names, m_copy.settings));
    std::vector<std::uint8_t> marks(m_film.pixelCount(), 0);
    for (std::size_t i = 0; i < marks.size(); ++i) {
        const picture::IdPixel& pixel = m_film.ids(i);
        if (pixel.prim >= 0) marks[i] = markOfPlace[pixel.placement];
    }
    return marks;
}

// Lines before a surface lie over it, others show through what is transparent.
void FrameJob::_drawGrid(Film& film) const
{
    const GfRange3d& bounds = m_facts.bounds;
    const GfVec3d origin = bounds.IsEmpty() ? GfVec3d(0.0) : bounds.GetMidpoint();
    const double half = bounds.IsEmpty() ? 1.0 : 0.5 * bounds.GetSize().GetLength();
    const auto radius = static_cast<float>(half > 0.0 ? half : 1.0);
    const auto rays =
        picture::CameraRays::make(m_camera, m_copy.settings.fitPolicy, m_copy.settings.size, origin, radius);
    if (!rays) return;
    const picture::Grid grid(m_copy.settings, m_facts.zUp, *rays, origin, radius);
    const auto width = static_cast<std::size_t>(film.width());
    base::parallelFor(
        static_cast<std::size_t>(film.height()), kRowsAtOnce, [&](std::size_t from, std::size_t to) {
            for (std::size_t i = from * width; i < to * width; ++i) {
                const picture::ViewRay ray =
                    rays->at(static_cast<float>(i % width) + 0.5f, static_cast<float>(i / width) + 0.5f);
                const picture::Grid::Crossing line = grid.cross(ray);
                if (!(line.alpha > 0.0f)) continue;
                FilmPixel& pixel = film.pixel(i);
                pixel.samples = std::max(pixel.samples, 1.0f);
                const float samples = pixel.samples;
                const float depth = i < m_depth.size() ? m_depth[i] : 1.0f;
                const bool lies = depth < 1.0f; // transparent surfaces leave no depth behind
                const bool isBefore = lies && ray.viewDistance(line.t) < m_request.view.viewDistance(depth);
                const float share = isBefore ? 1.0f : std::max(1.0f - pixel.alpha / samples, 0.0f);
                const float alpha = line.alpha * share;
                if (isBefore) {
                    pixel.color = pixel.color * (1.0f - alpha);
                    pixel.alpha *= 1.0f - alpha;
                }
                pixel.color += line.color * (alpha * samples);
                pixel.alpha += alpha * samples;
            }
        });
}

Film FrameJob::finishedFilm() const
{
    Film film = m_film;
    if (_showsGrid()) _drawGrid(film);
    const picture::DebugMode mode = m_copy.settings.debugMode;
    if (film.parts().colors && mode != picture::DebugMode::None && mode != picture::DebugMode::Cost)
        drawDebug(film, m_copy.settings);
    if (film.parts().colors && film.parts().ids && showsMarks(m_copy.settings))
        drawOutlines(film, m_copy.settings, _marks());
    return film;
}

} // namespace vesk::renderers::hydra
