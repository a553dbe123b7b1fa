#include <vesk/renderers/picture/outputs.h>

#include <vesk/renderers/picture/color.h>

#include <vesk/base/thread_pool.h>

#include <array>
#include <cstring>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::picture {
namespace {

using framework::hydra_renderer::AovBuffer;
using framework::hydra_renderer::AovFormat;

struct NamedOutput
{
    const char* name;
    Output output;
};

constexpr std::array<NamedOutput, 9> kOutputs = {{{"color", Output::Color},
                                                  {"depth", Output::Depth},
                                                  {"linearDepth", Output::LinearDepth},
                                                  {"cameraDepth", Output::LinearDepth},
                                                  {"normal", Output::Normal},
                                                  {"Neye", Output::EyeNormal},
                                                  {"primId", Output::PrimId},
                                                  {"instanceId", Output::InstanceId},
                                                  {"elementId", Output::ElementId}}};

constexpr std::size_t kPixelsOfOneThread = 100'000;

OutputPixel scalar(float v) { return {{v, 0.0f, 0.0f, 1.0f}}; }
OutputPixel vector(Vec3 v) { return {{v.x, v.y, v.z, 1.0f}}; }

// For display: not multiplied by the opacity.
void divideByOpacity(OutputPixel& pixel)
{
    const float alpha = pixel.channel[3];
    for (int c = 0; c < 3 && alpha > 0.0f; ++c)
        pixel.channel[c] /= alpha;
}

Vec3 idColor(int id)
{
    if (id < 0) return Vec3(0.0f);
    const auto part = [id](std::uint32_t shift) {
        const std::uint32_t mixed = (static_cast<std::uint32_t>(id) + 1u) * 2654435761u;
        return 0.15f + 0.8f * static_cast<float>(mixed >> shift & 0xff) / 255.0f;
    };
    return {part(24), part(16), part(8)};
}

} // namespace

std::optional<Output> outputOf(const TfToken& aov)
{
    for (const NamedOutput& named : kOutputs) {
        if (aov == named.name) return named.output;
    }
    return std::nullopt;
}

std::string knownOutputs()
{
    std::string names;
    for (const NamedOutput& named : kOutputs) {
        names += (names.empty() ? "" : ", ") + std::string(named.name);
    }
    return names;
}

int channelsOf(Output output)
{
    switch (output) {
    case Output::Color:
        return 4;
    case Output::Normal:
    case Output::EyeNormal:
        return 3;
    default:
        return 1;
    }
}

FilmParts partsFor(const std::vector<Output>& outputs, const FrameSettings& settings)
{
    FilmParts parts;
    parts.colors = outputs.empty();
    for (const Output output : outputs) {
        parts.colors |= output == Output::Color;
        parts.depths |= output == Output::Depth || output == Output::LinearDepth;
        parts.normals |= output == Output::Normal || output == Output::EyeNormal;
        parts.ids |= output == Output::PrimId || output == Output::InstanceId || output == Output::ElementId;
    }
    if (!parts.colors) return parts;
    const DebugMode debug = settings.debugMode;
    parts.depths |= debug == DebugMode::Depth;
    parts.normals |= debug == DebugMode::Normal;
    parts.ids |= showsMarks(settings) || (debug != DebugMode::None && debug != DebugMode::Cost);
    return parts;
}

bool showsMarks(const FrameSettings& s)
{
    return s.showSelection && !s.presentation && !(s.selection.empty() && s.highlighted.empty());
}

// Display colours are blended as working colours.
WorkingColors::WorkingColors(const Film& film, const FrameSettings& settings)
    : m_film(film),
      m_behind(settings.transparentBackground ? 0.0f : std::clamp(settings.clearColor[3], 0.0f, 1.0f))
{
    const GfVec4f& clear = settings.clearColor;
    m_background = displayToWorking(Vec3(clear[0], clear[1], clear[2]), settings.colorCorrection);
}

OutputPixel WorkingColors::at(std::size_t index) const
{
    const FilmPixel& sum = m_film.pixel(index);
    const float scale = sum.samples > 0.0f ? 1.0f / sum.samples : 0.0f;
    const float coverage = std::clamp(sum.alpha * scale, 0.0f, 1.0f);
    const Vec3 c = sum.color * scale + m_background * ((1.0f - coverage) * m_behind);
    return {{c.x, c.y, c.z, coverage + (1.0f - coverage) * m_behind}};
}

OutputPixel readPixel(const Film& film, const FrameSettings& settings, Output output, std::size_t index)
{
    switch (output) {
    case Output::Color: {
        OutputPixel pixel = WorkingColors(film, settings).at(index);
        divideByOpacity(pixel);
        for (int c = 0; c < 3 && settings.colorCorrection; ++c)
            pixel.channel[c] = linearToSrgb(pixel.channel[c]);
        return pixel;
    }
    case Output::Depth:
        return scalar(film.depths(index).windowDepth);
    case Output::LinearDepth:
        return scalar(film.depths(index).viewDistance);
    case Output::Normal:
        return vector(film.normals(index).world);
    case Output::EyeNormal:
        return vector(film.normals(index).eye);
    case Output::PrimId:
        return scalar(static_cast<float>(film.ids(index).prim));
    case Output::InstanceId:
        return scalar(static_cast<float>(film.ids(index).instance));
    default:
        return scalar(static_cast<float>(film.ids(index).element));
    }
}

namespace {

void readColors(const Film& film, const FrameSettings& settings, std::size_t from, std::size_t to,
                std::uint8_t* bytes)
{
    const WorkingColors colors(film, settings);
    const DisplayBytes& encoded = DisplayBytes::get();
    for (std::size_t i = from; i < to; ++i, bytes += 4) {
        OutputPixel pixel = colors.at(i);
        divideByOpacity(pixel);
        for (int c = 0; c < 3; ++c)
            bytes[c] = settings.colorCorrection ? encoded.of(pixel.channel[c]) : toByte(pixel.channel[c]);
        bytes[3] = toByte(pixel.channel[3]);
    }
}

// Ids are copied as they are: floats do not hold every large one.
void readIds(const Film& film, Output output, std::size_t from, std::size_t to, std::uint8_t* bytes)
{
    for (std::size_t i = from; i < to; ++i, bytes += sizeof(std::int32_t)) {
        const IdPixel& ids = film.ids(i);
        const std::int32_t id = output == Output::PrimId       ? ids.prim
                                : output == Output::InstanceId ? ids.instance
                                                               : ids.element;
        std::memcpy(bytes, &id, sizeof(id));
    }
}

void readFloats(const Film& film, const FrameSettings& settings, Output output, std::size_t from,
                std::size_t to, std::uint8_t* bytes)
{
    const std::size_t size = static_cast<std::size_t>(channelsOf(output)) * sizeof(float);
    for (std::size_t i = from; i < to; ++i, bytes += size) {
        const OutputPixel pixel = readPixel(film, settings, output, i);
        std::memcpy(bytes, pixel.channel, size);
    }
}

} // namespace

AovBuffer readBuffer(const Film& film, const FrameSettings& settings, Output output)
{
    const bool isId = output == Output::PrimId || output == Output::InstanceId || output == Output::ElementId;
    AovBuffer buffer;
    buffer.size = film.size();
    buffer.channels = channelsOf(output);
    buffer.format = output == Output::Color ? AovFormat::UNorm8
                    : isId                  ? AovFormat::Int32
                                            : AovFormat::Float32;
    const std::size_t pixelSize =
        static_cast<std::size_t>(buffer.channels) * (output == Output::Color ? 1u : 4u);
    auto bytes = std::make_shared<std::vector<std::uint8_t>>();
    bytes->resize(film.pixelCount() * pixelSize);
    base::parallelFor(film.pixelCount(), kPixelsOfOneThread, [&](std::size_t from, std::size_t to) {
        std::uint8_t* at = bytes->data() + from * pixelSize;
        if (output == Output::Color) {
            readColors(film, settings, from, to, at);
        } else if (isId) {
            readIds(film, output, from, to, at);
        } else {
            readFloats(film, settings, output, from, to, at);
        }
    });
    buffer.bytes = std::move(bytes);
    return buffer;
}

namespace {

std::uint8_t markAt(const Film& film, const std::vector<std::uint8_t>& marks, int x, int y)
{
    if (x < 0 || y < 0 || x >= film.width() || y >= film.height()) return 0;
    return marks[film.index(x, y)];
}

// Whether a marked pixel lies at the rim of what is marked at least as strongly.
bool isRim(const Film& film, const std::vector<std::uint8_t>& marks, int x, int y, std::uint8_t own)
{
    return markAt(film, marks, x - 1, y) < own || markAt(film, marks, x + 1, y) < own ||
           markAt(film, marks, x, y - 1) < own || markAt(film, marks, x, y + 1) < own;
}

// Gives each pixel that is not marked itself the strongest mark within the outline's width. The nearest pixel
// of a marked area lies at its rim, so that only rims have to be looked around.
std::vector<std::uint8_t> outlinesOf(const Film& film, const std::vector<std::uint8_t>& marks, int width)
{
    std::vector<std::uint8_t> outlines(marks.size(), 0);
    for (int y = 0; y < film.height(); ++y) {
        for (int x = 0; x < film.width(); ++x) {
            const std::uint8_t own = marks[film.index(x, y)];
            if (own == 0 || !isRim(film, marks, x, y, own)) continue;
            for (int v = std::max(y - width, 0); v <= std::min(y + width, film.height() - 1); ++v) {
                for (int u = std::max(x - width, 0); u <= std::min(x + width, film.width() - 1); ++u) {
                    std::uint8_t& outline = outlines[film.index(u, v)];
                    if ((u - x) * (u - x) + (v - y) * (v - y) <= width * width)
                        outline = std::max(outline, own);
                }
            }
        }
    }
    return outlines;
}

void blendOver(FilmPixel& pixel, Vec3 color, float alpha)
{
    const float samples = std::max(pixel.samples, 1.0f);
    pixel.samples = samples;
    pixel.color = pixel.color * (1.0f - alpha) + color * (alpha * samples);
    pixel.alpha = pixel.alpha * (1.0f - alpha) + alpha * samples;
}

} // namespace

void drawOutlines(Film& film, const FrameSettings& settings, const std::vector<std::uint8_t>& marks)
{
    const int width =
        std::clamp(static_cast<int>(std::lround(std::clamp(settings.outlineThickness, 0.0f, 32.0f))), 0, 32);
    const GfVec4f* colors[3] = {nullptr, &settings.selectionColor, &settings.highlightColor};
    const std::vector<std::uint8_t> outlines = outlinesOf(film, marks, width);
    for (std::size_t i = 0; i < marks.size(); ++i) {
        const std::uint8_t own = marks[i];
        const std::uint8_t mark = own ? own : outlines[i];
        if (!mark) continue;
        const GfVec4f& c = *colors[mark];
        const float strength = std::clamp(c[3], 0.0f, 1.0f) * (own ? 0.15f : 1.0f);
        blendOver(film.pixel(i), displayToWorking(Vec3(c[0], c[1], c[2]), settings.colorCorrection),
                  strength);
    }
}

namespace {

float mostRays(const Film& film)
{
    float most = 1.0f;
    for (std::size_t i = 0; i < film.pixelCount(); ++i)
        most = std::max(most, film.pixel(i).cost);
    return most;
}

// From black over blue, red and yellow to white.
Vec3 heatColor(float share)
{
    static const Vec3 colors[5] = {
        {0, 0, 0}, {0.1f, 0.1f, 0.8f}, {0.9f, 0.1f, 0.1f}, {1, 0.9f, 0.1f}, {1, 1, 1}};
    const float at = std::clamp(share, 0.0f, 1.0f) * 4.0f;
    const int i = std::min(static_cast<int>(at), 3);
    return lerp(colors[i], colors[i + 1], at - static_cast<float>(i));
}

} // namespace

void drawDebug(Film& film, const FrameSettings& settings)
{
    float nearest = std::numeric_limits<float>::infinity();
    float farthest = 0.0f;
    for (std::size_t i = 0; i < film.pixelCount() && settings.debugMode == DebugMode::Depth; ++i) {
        const float d = film.depths(i).viewDistance;
        if (!std::isfinite(d)) continue;
        nearest = std::min(nearest, d);
        farthest = std::max(farthest, d);
    }
    const float range = std::max(farthest - nearest, 1e-30f);
    const float dearest = mostRays(film);
    for (std::size_t i = 0; i < film.pixelCount(); ++i) {
        Vec3 c(0.0f);
        switch (settings.debugMode) {
        case DebugMode::Depth:
            if (film.ids(i).prim >= 0)
                c = Vec3(1.0f - 0.95f * (film.depths(i).viewDistance - nearest) / range);
            break;
        case DebugMode::Normal:
            if (film.ids(i).prim >= 0) c = film.normals(i).world * 0.5f + Vec3(0.5f);
            break;
        case DebugMode::ElementId:
            c = idColor(film.ids(i).element);
            break;
        case DebugMode::InstanceId:
            c = idColor(film.ids(i).instance);
            break;
        case DebugMode::Cost:
            c = heatColor(film.pixel(i).cost / dearest);
            break;
        default:
            c = idColor(film.ids(i).prim);
            break;
        }
        const Vec3 working = displayToWorking(c, settings.colorCorrection);
        film.pixel(i) = {working, 1.0f, film.pixel(i).cost, 1.0f};
    }
}

} // namespace vesk::renderers::picture
