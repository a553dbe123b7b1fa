#include "frame_job.h"

#include "enlarging.h"
#include "frame_setup.h"
#include "tile_pass.h"

#include <vesk/base/error_handling.h>

#include <algorithm>
#include <atomic>
#include <unordered_map>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

using Clock = std::chrono::steady_clock;
using framework::hydra_renderer::AovBuffer;

constexpr int kTileSize = 16;
constexpr int kLargestPass = 4; // samples per pixel

GfVec2i coarseSize(const GfVec2i& size, int block)
{
    return {(size[0] + block - 1) / block, (size[1] + block - 1) / block};
}

// The part of the picture that is drawn.
Tile areaOf(const FrameSettings& settings)
{
    const GfVec4i& w = settings.window;
    const GfVec2i& size = settings.size;
    if (w[2] <= 0 || w[3] <= 0) return {0, 0, size[0], size[1]};
    const auto end = [](int from, int length) {
        return static_cast<int>(std::min<std::int64_t>(static_cast<std::int64_t>(from) + length, 1 << 20));
    };
    return {std::max(w[0], 0), std::max(w[1], 0), std::min(end(w[0], w[2]), size[0]),
            std::min(end(w[1], w[3]), size[1])};
}

// The tiles of a film whose pixels are squares of `block` of the picture's.
std::vector<Tile> tilesOf(const FrameSettings& settings, int block)
{
    Tile area = areaOf(settings);
    if (area.x1 <= area.x0 || area.y1 <= area.y0) return {};
    area = {area.x0 / block, area.y0 / block, (area.x1 + block - 1) / block, (area.y1 + block - 1) / block};
    std::vector<Tile> tiles;
    for (int y = area.y0; y < area.y1; y += kTileSize) {
        for (int x = area.x0; x < area.x1; x += kTileSize) {
            tiles.push_back({x, y, std::min(x + kTileSize, area.x1), std::min(y + kTileSize, area.y1)});
        }
    }
    return tiles;
}

bool anyPrefix(const std::vector<SdfPath>& prefixes, const SdfPath& path)
{
    return std::any_of(prefixes.begin(), prefixes.end(), [&](const SdfPath& p) { return path.HasPrefix(p); });
}

// A mark on an instancer or on a prim of a prototype marks all copies.
std::uint8_t markOf(const HitNames& names, const FrameSettings& settings)
{
    const auto isMarked = [&names](const std::vector<SdfPath>& paths) {
        return anyPrefix(paths, names.prim) ||
               (!names.instance.IsEmpty() && anyPrefix(paths, names.instance));
    };
    return isMarked(settings.highlighted) ? 2 : isMarked(settings.selection) ? 1 : 0;
}

} // namespace

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
    _end(error);
}

void FrameJob::_end(std::exception_ptr error)
{
    _fail(std::move(error));
    m_core->frameEnded(this);
}

void FrameJob::_endWith(bool converged)
{
    _finish(converged);
    m_core->frameEnded(this);
}

void FrameJob::start()
{
    const auto& executor = _isUrgent() ? urgentExecutor() : base::defaultExecutor(base::Priority::Normal);
    executor->post(base::Work([self = shared_from_this()] { self->_guarded([&] { self->_pull(); }); }));
}

void FrameJob::restart() { m_restarting = true; }

void FrameJob::_pull()
{
    if (m_core->isClosed()) return;
    m_restarting = false;
    if (m_now.hasImage) m_former = std::move(m_now);
    m_now = Drawing();
    m_now.copy = _settings();
    if (!m_now.copy.document) throw base::FutureError(base::FutureErrorCode::BrokenPromise);
    checkRenderSize(m_now.copy.settings.size);
    const base::Future<PulledScene> pulled = RendererCore::pull(m_now.copy);
    if (pulled.isReady()) {
        _prepare(pulled.get());
        return;
    }
    auto self = shared_from_this();
    pulled
        .recover(base::defaultExecutor(base::Priority::Normal),
                 [self](const base::Future<PulledScene>& known) {
                     self->_guarded([&] { self->_prepare(known.get()); });
                 })
        .detach();
}

void FrameJob::_prepare(const PulledScene& pulled)
{
    if (m_core->isClosed() || _endsInFavourOfNext()) return;
    const FrameSettings& settings = m_now.copy.settings;
    m_now.view = makeFrameView(settings, pulled, m_core->cameraOf(settings, pulled));
    m_now.parts = _wantedParts(settings);
    _beginPass();
}

// A frame that was about to begin again need not where the next one has come: it ends with what it had.
bool FrameJob::_endsInFavourOfNext()
{
    if (!m_former || !_isOutdated() || !m_core->frameIsWaiting()) return false;
    m_now = std::move(*m_former);
    m_former.reset();
    _endWith(false);
    return true;
}

void FrameJob::_beginPass()
{
    _planPass();
    TilePass::Steps steps;
    auto self = shared_from_this();
    steps.trace = [self](std::size_t tile) { self->_traceTile(tile); };
    steps.isOver = [self] { return self->_isOver(); };
    steps.whenDone = [self](std::exception_ptr error) {
        self->_guarded([&] { self->_endPass(std::move(error)); });
    };
    TilePass::run(m_pass.tiles.size(), _isUrgent() && !m_now.hasImage, std::move(steps));
}

void FrameJob::_planPass()
{
    const FrameSettings& settings = m_now.copy.settings;
    m_isLeft = false;
    m_passSamples = 0;
    m_pass = Pass();
    m_pass.begin = Clock::now();
    if (!m_now.hasImage && _mayBeginCoarse())
        m_pass.block = m_core->sampleRate(m_now.parts.colors).blockFor(settings.size);
    if (m_pass.block > 1) {
        m_now.film = Film(coarseSize(settings.size, m_pass.block), m_now.parts);
        m_now.block = m_pass.block;
        m_pass.film = &m_now.film;
    } else if (m_now.samples == 0) {
        m_next = Film(settings.size, m_now.parts);
        m_pass.film = &m_next;
        // What lies at the pixels' centres is whole after one look.
        if (!m_now.parts.colors) m_pass.last = settings.samples;
    } else {
        m_pass.film = &m_now.film;
        m_pass.first = m_now.samples;
        m_pass.last = m_pass.first + std::min({m_pass.first, kLargestPass, settings.samples - m_pass.first});
    }
    m_pass.tiles = tilesOf(settings, m_pass.block);
}

void FrameJob::_traceTile(std::size_t number)
{
    const Tile& tile = m_pass.tiles[number];
    const bool colors = m_now.parts.colors;
    if (colors) traceColor(*m_now.view, *m_pass.film, tile, m_pass.first, m_pass.last, m_pass.block);
    if (m_pass.first == 0 && m_now.parts.anyGeometry())
        traceGeometry(*m_now.view, *m_pass.film, tile, m_pass.block);
    const std::int64_t pixels = static_cast<std::int64_t>(tile.x1 - tile.x0) * (tile.y1 - tile.y0);
    m_passSamples += pixels * (colors ? m_pass.last - m_pass.first : 1);
}

// Whoever moves a camera without rest sees at least one image of each frame.
bool FrameJob::_isOver()
{
    if (m_core->isClosed() || m_isLeft) return true;
    const bool canEnd = m_now.hasImage || (m_former && m_core->frameIsWaiting());
    if (canEnd && _isOutdated()) m_isLeft = true;
    return m_isLeft;
}

void FrameJob::_endPass(std::exception_ptr error)
{
    if (m_core->isClosed()) return;
    if (error) std::rethrow_exception(error);
    if (m_isLeft) {
        _giveUpPass();
    } else {
        _takeImage();
        if (_afterPass()) {
            _beginPass(); // from here on the next pass owns this object's state
            return;
        }
    }
    if (m_restarting) start();
}

void FrameJob::_takeImage()
{
    // Samples of whole images are close together and far faster than those of coarse ones.
    const double seconds = std::chrono::duration<double>(Clock::now() - m_pass.begin).count();
    if (m_pass.block > 1) m_core->sampleRate(m_now.parts.colors).note(seconds, m_passSamples);
    if (m_pass.film == &m_next) {
        m_now.film = std::move(m_next);
        m_next = Film();
        m_now.block = 1;
    }
    m_now.samples = m_pass.block > 1 ? 0 : m_pass.last;
}

// A pass was left: the frame begins again or ends with the last image.
void FrameJob::_giveUpPass()
{
    m_next = Film();
    if (!m_now.hasImage) {
        if (!_endsInFavourOfNext()) restart();
        return;
    }
    if (_goesOn()) restart();
    if (!m_restarting) _endWith(false);
}

// Returns whether another pass follows.
bool FrameJob::_afterPass()
{
    const int wanted = frameSettings().samples;
    const bool converged = m_now.samples >= wanted;
    const float fraction = static_cast<float>(m_now.samples) / static_cast<float>(wanted);
    if (!m_core->callbacks.progress(m_now.samples, fraction, converged)) m_cancelled = true;
    if (m_core->isClosed()) return false;
    m_now.hasImage = true;
    m_former.reset();
    const bool goesOn = !m_cancelled && _onImage(converged);
    if (m_core->isClosed() || m_restarting) return false;
    if (goesOn && !converged) return true;
    if (m_cancelled) {
        throw base::error_handling::Exception(std::make_error_code(std::errc::operation_canceled),
                                              "the frame was cancelled by its progress callback");
    }
    _endWith(converged);
    return false;
}

std::vector<std::uint8_t> FrameJob::_marks(const Film& film) const
{
    std::vector<std::uint8_t> marks(film.pixelCount(), 0);
    std::unordered_map<std::uint64_t, std::uint8_t> known; // of what the picture shows, not of all there is
    for (std::size_t i = 0; i < marks.size(); ++i) {
        const IdPixel& pixel = film.ids(i);
        if (pixel.prim < 0) continue;
        const std::uint64_t key = std::uint64_t(pixel.placement) << 32 | pixel.item;
        const auto [at, isNew] = known.try_emplace(key, std::uint8_t(0));
        if (isNew)
            at->second = markOf(m_now.view->scene->namesOf(pixel.placement, pixel.item), frameSettings());
        marks[i] = at->second;
    }
    return marks;
}

std::shared_ptr<const Film> FrameJob::_debuggedFilm() const
{
    if (!m_now.parts.colors || frameSettings().debugMode == DebugMode::None)
        return {shared_from_this(), &m_now.film};
    auto film = std::make_shared<Film>(m_now.film);
    drawDebug(*film, frameSettings());
    return film;
}

std::shared_ptr<const Film> FrameJob::finishedFilm() const
{
    const FrameSettings& settings = frameSettings();
    const bool isMarked = m_now.parts.colors && showsMarks(settings);
    std::shared_ptr<const Film> film = _debuggedFilm();
    if (m_now.block > 1)
        film = std::make_shared<Film>(enlarged(*film, settings.size, areaOf(settings), m_now.block));
    if (!isMarked) return film;
    auto marked = std::make_shared<Film>(*film);
    drawOutlines(*marked, settings, _marks(*marked));
    return marked;
}

AovBuffer FrameJob::readOutput(Output output) const
{
    const FrameSettings& settings = frameSettings();
    const bool isPlain = !(m_now.parts.colors && showsMarks(settings)) && settings.window[2] <= 0;
    if (m_now.block == 1 || !isPlain) return readBuffer(*finishedFilm(), settings, output);
    return enlarged(readBuffer(*_debuggedFilm(), settings, output), settings.size, m_now.block);
}

} // namespace vesk::renderers::embree
