#include "frame_job.h"

#include "frame_setup.h"

#include <vesk/base/error_handling.h>

#include <algorithm>
#include <atomic>
#include <unordered_map>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

constexpr int kTileSize = 16;
constexpr int kLargestPass = 4;              // samples per pixel
constexpr std::int64_t kFastPixels = 60'000; // that a first image takes at most

// The width of the blocks of a first image: a power of two, so that tiles hold whole blocks.
int blockOf(const GfVec2i& size)
{
    const std::int64_t pixels = static_cast<std::int64_t>(size[0]) * size[1];
    int block = 1;
    while (block < kTileSize && pixels / (static_cast<std::int64_t>(block) * block) > kFastPixels)
        block *= 2;
    return block;
}

std::vector<Tile> tilesOf(const FrameSettings& settings)
{
    Tile area{0, 0, settings.size[0], settings.size[1]};
    const GfVec4i& w = settings.window;
    if (w[2] > 0 && w[3] > 0) {
        const auto end = [](int from, int length) {
            return static_cast<int>(
                std::min<std::int64_t>(static_cast<std::int64_t>(from) + length, 1 << 20));
        };
        area = {std::max(w[0], 0), std::max(w[1], 0), std::min(end(w[0], w[2]), area.x1),
                std::min(end(w[1], w[3]), area.y1)};
    }
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

bool showsMarks(const FrameSettings& s)
{
    return s.showSelection && !s.presentation && !(s.selection.empty() && s.highlighted.empty());
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

void FrameJob::start()
{
    _guarded([this] {
        m_copy = _settings();
        if (!m_copy.document) throw base::FutureError(base::FutureErrorCode::BrokenPromise);
        checkRenderSize(m_copy.settings.size);
        auto self = shared_from_this();
        RendererCore::pull(m_copy)
            .recover(base::defaultExecutor(base::Priority::Normal),
                     [self](const base::Future<PulledScene>& pulled) {
                         self->_guarded([&] { self->_prepare(pulled.get()); });
                     })
            .detach();
    });
}

void FrameJob::restart()
{
    m_samplesDone = 0;
    m_hasImage = false;
    m_restarting = true;
}

void FrameJob::_prepare(const PulledScene& pulled)
{
    if (m_core->isClosed()) return;
    m_view = makeFrameView(m_copy.settings, pulled, m_core->cameraOf(m_copy.settings, pulled));
    m_film = Film(m_copy.settings.size);
    m_tiles = tilesOf(m_copy.settings);
    if (_wantsGeometry(m_copy.settings) || showsMarks(m_copy.settings) ||
        m_copy.settings.debugMode != DebugMode::None) {
        m_film.addGeometry();
    }
    m_block = _mayBeginCoarse() ? blockOf(m_copy.settings.size) : 1;
    _postPass();
}

void FrameJob::_postPass()
{
    base::defaultExecutor(base::Priority::Low)->post(base::Work([self = shared_from_this()] {
        self->_guarded([&] { self->_runPass(); });
    }));
}

int FrameJob::_nextPassSamples() const
{
    const int wanted = std::max(m_samplesDone, 1);
    return std::min({wanted, kLargestPass, m_copy.settings.samples - m_samplesDone});
}

void FrameJob::_runPass()
{
    if (m_core->isClosed()) return;
    bool goesOn = true;
    if (m_block > 1) {
        _traceCoarse();
        goesOn = !m_core->isClosed() && _afterPass();
        m_film.clearColors();
    } else {
        const int last = m_samplesDone + _nextPassSamples();
        const bool isWhole = _trace(m_samplesDone, last, 1);
        if (m_core->isClosed()) return;
        if (isWhole) {
            m_samplesDone = last;
            m_film.samples = last;
        }
        goesOn = isWhole ? _afterPass() : _giveUpPass();
    }
    if (m_core->isClosed()) return;
    if (goesOn) {
        _postPass();
    } else if (m_restarting) {
        m_restarting = false;
        start();
    }
}

// One sample for each block of pixels: an image that comes fast and is replaced by the first whole one.
void FrameJob::_traceCoarse()
{
    _trace(0, 1, m_block);
    m_film.samples = 1;
    m_block = 1;
}

// Returns false where the pass was left because nobody wants it any more: the film is of no use then.
bool FrameJob::_trace(int first, int last, int block)
{
    std::atomic<bool> isLeft{false};
    const auto isOver = [&] {
        if (m_core->isClosed() || isLeft) return true;
        // Whoever moves a camera without rest sees at least one image of each frame.
        if (m_hasImage && _isOutdated()) isLeft = true;
        return isLeft.load();
    };
    base::parallelFor(m_tiles.size(), 4, [&](std::size_t from, std::size_t to) {
        for (std::size_t i = from; i < to && !isOver(); ++i) {
            traceColor(*m_view, m_film, m_tiles[i], first, last, block);
            if (first == 0 && m_film.hasGeometry()) traceGeometry(*m_view, m_film, m_tiles[i], block);
        }
    });
    return !isLeft;
}

// A pass was left: the frame begins again or ends as it would after an image.
bool FrameJob::_giveUpPass()
{
    if (_goesOn()) {
        // What made the pass useless is over already: it is traced once more from the beginning.
        m_samplesDone = 0;
        m_film.clearColors();
        return true;
    }
    if (m_restarting) return false;
    _finish(false);
    m_core->frameEnded(this);
    return false;
}

// Returns whether another pass follows.
bool FrameJob::_afterPass()
{
    const int wanted = m_copy.settings.samples;
    const bool converged = m_samplesDone >= wanted;
    const float fraction = static_cast<float>(m_samplesDone) / static_cast<float>(wanted);
    if (!m_core->callbacks.progress(m_samplesDone, fraction, converged)) m_cancelled = true;
    if (m_core->isClosed()) return false;
    m_hasImage = true;
    const bool goesOn = !m_cancelled && _onImage(converged);
    if (m_restarting || (goesOn && !converged)) return !m_restarting;
    if (m_cancelled) {
        throw base::error_handling::Exception(std::make_error_code(std::errc::operation_canceled),
                                              "the frame was cancelled by its progress callback");
    }
    _finish(converged);
    m_core->frameEnded(this);
    return false;
}

std::vector<std::uint8_t> FrameJob::_marks() const
{
    std::vector<std::uint8_t> marks(m_film.pixelCount(), 0);
    std::unordered_map<std::uint64_t, std::uint8_t> known; // of what the picture shows, not of all there is
    for (std::size_t i = 0; i < marks.size(); ++i) {
        const GeometryPixel& pixel = m_film.geometry(i);
        if (pixel.prim < 0) continue;
        const std::uint64_t key = std::uint64_t(pixel.placement) << 32 | pixel.item;
        const auto [at, isNew] = known.try_emplace(key, std::uint8_t(0));
        if (isNew) at->second = markOf(m_view->scene->namesOf(pixel.placement, pixel.item), m_copy.settings);
        marks[i] = at->second;
    }
    return marks;
}

Film FrameJob::finishedFilm() const
{
    Film film = m_film;
    if (m_copy.settings.debugMode != DebugMode::None) drawDebug(film, m_copy.settings);
    if (showsMarks(m_copy.settings)) drawOutlines(film, m_copy.settings, _marks());
    return film;
}

} // namespace vesk::renderers::embree
