#include <vesk/renderers/picture/outputs.h>

#include <vesk/renderers/picture/color.h>

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

OutputPixel scalar(float v) { return {{v, 0.0f, 0.0f, 1.0f}}; }
OutputPixel vector(Vec3 v) { return {{v.x, v.y, v.z, 1.0f}}; }

OutputPixel colorPixel(const Film& film, const FrameSettings& settings, std::size_t index)
{
    OutputPixel pixel = readWorkingColor(film, settings, index);
    const float alpha = pixel.channel[3];
    for (int c = 0; c < 3; ++c) {
        float& value = pixel.channel[c];
        if (alpha > 0.0f) value /= alpha;
        if (settings.colorCorrection) value = linearToSrgb(value);
    }
    return pixel;
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

// The background lies behind the samples; display colours are blended as working colours.
OutputPixel readWorkingColor(const Film& film, const FrameSettings& settings, std::size_t index)
{
    const float scale = film.samples > 0 ? 1.0f / static_cast<float>(film.samples) : 0.0f;
    const FilmPixel& sum = film.pixel(index);
    const GfVec4f& clear = settings.clearColor;
    const float behind = settings.transparentBackground ? 0.0f : std::clamp(clear[3], 0.0f, 1.0f);
    const float coverage = std::clamp(sum.alpha * scale, 0.0f, 1.0f);
    const Vec3 background = displayToWorking(Vec3(clear[0], clear[1], clear[2]), settings.colorCorrection);
    const Vec3 c = sum.color * scale + background * ((1.0f - coverage) * behind);
    return {{c.x, c.y, c.z, coverage + (1.0f - coverage) * behind}};
}

OutputPixel readPixel(const Film& film, const FrameSettings& settings, Output output, std::size_t index)
{
    if (output == Output::Color) return colorPixel(film, settings, index);
    const GeometryPixel& g = film.geometry(index);
    switch (output) {
    case Output::Depth:
        return scalar(g.windowDepth);
    case Output::LinearDepth:
        return scalar(g.viewDistance);
    case Output::Normal:
        return vector(g.normal);
    case Output::EyeNormal:
        return vector(g.eyeNormal);
    case Output::PrimId:
        return scalar(static_cast<float>(g.prim));
    case Output::InstanceId:
        return scalar(static_cast<float>(g.instance));
    default:
        return scalar(static_cast<float>(g.element));
    }
}

AovBuffer readBuffer(const Film& film, const FrameSettings& settings, Output output)
{
    const bool isId = output == Output::PrimId || output == Output::InstanceId || output == Output::ElementId;
    AovBuffer buffer;
    buffer.size = film.size();
    buffer.channels = channelsOf(output);
    buffer.format = output == Output::Color ? AovFormat::UNorm8
                    : isId                  ? AovFormat::Int32
                                            : AovFormat::Float32;
    auto bytes = std::make_shared<std::vector<std::uint8_t>>();
    const std::size_t valueSize = output == Output::Color ? 1 : 4;
    bytes->resize(film.pixelCount() * static_cast<std::size_t>(buffer.channels) * valueSize);
    std::uint8_t* to = bytes->data();
    for (std::size_t i = 0; i < film.pixelCount(); ++i) {
        const OutputPixel pixel = readPixel(film, settings, output, i);
        for (int c = 0; c < buffer.channels; ++c, to += valueSize) {
            const auto id = static_cast<std::int32_t>(isId ? pixel.channel[c] : 0.0f);
            if (output == Output::Color) {
                *to = toByte(pixel.channel[c]);
            } else if (isId) {
                std::memcpy(to, &id, sizeof(id));
            } else {
                std::memcpy(to, &pixel.channel[c], sizeof(float));
            }
        }
    }
    buffer.bytes = std::move(bytes);
    return buffer;
}

namespace {

std::uint8_t markAt(const Film& film, const std::vector<std::uint8_t>& marks, int x, int y)
{
    if (x < 0 || y < 0 || x >= film.width() || y >= film.height()) return 0;
    return marks[film.index(x, y)];
}

// The nearest marked pixel within the outline's width of a pixel that is not marked itself.
std::uint8_t outlineAt(const Film& film, const std::vector<std::uint8_t>& marks, int x, int y, int width)
{
    std::uint8_t mark = 0;
    for (int dy = -width; dy <= width; ++dy) {
        for (int dx = -width; dx <= width; ++dx) {
            if (dx * dx + dy * dy <= width * width)
                mark = std::max(mark, markAt(film, marks, x + dx, y + dy));
        }
    }
    return mark;
}

void blendOver(FilmPixel& pixel, Vec3 color, float alpha, float samples)
{
    pixel.color = pixel.color * (1.0f - alpha) + color * (alpha * samples);
    pixel.alpha = pixel.alpha * (1.0f - alpha) + alpha * samples;
}

} // namespace

void drawOutlines(Film& film, const FrameSettings& settings, const std::vector<std::uint8_t>& marks)
{
    const int width =
        std::clamp(static_cast<int>(std::lround(std::clamp(settings.outlineThickness, 0.0f, 32.0f))), 0, 32);
    const GfVec4f* colors[3] = {nullptr, &settings.selectionColor, &settings.highlightColor};
    const auto samples = static_cast<float>(film.samples);
    for (int y = 0; y < film.height(); ++y) {
        for (int x = 0; x < film.width(); ++x) {
            const std::uint8_t own = markAt(film, marks, x, y);
            const std::uint8_t mark = own ? own : outlineAt(film, marks, x, y, width);
            if (!mark) continue;
            const GfVec4f& c = *colors[mark];
            const float strength = std::clamp(c[3], 0.0f, 1.0f) * (own ? 0.15f : 1.0f);
            blendOver(film.pixel(film.index(x, y)),
                      displayToWorking(Vec3(c[0], c[1], c[2]), settings.colorCorrection), strength, samples);
        }
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
    for (std::size_t i = 0; i < film.pixelCount(); ++i) {
        const float d = film.geometry(i).viewDistance;
        if (!std::isfinite(d)) continue;
        nearest = std::min(nearest, d);
        farthest = std::max(farthest, d);
    }
    const float range = std::max(farthest - nearest, 1e-30f);
    const float dearest = mostRays(film);
    for (std::size_t i = 0; i < film.pixelCount(); ++i) {
        const GeometryPixel& g = film.geometry(i);
        Vec3 c(0.0f);
        switch (settings.debugMode) {
        case DebugMode::Depth:
            if (g.prim >= 0) c = Vec3(1.0f - 0.95f * (g.viewDistance - nearest) / range);
            break;
        case DebugMode::Normal:
            if (g.prim >= 0) c = g.normal * 0.5f + Vec3(0.5f);
            break;
        case DebugMode::ElementId:
            c = idColor(g.element);
            break;
        case DebugMode::InstanceId:
            c = idColor(g.instance);
            break;
        case DebugMode::Cost:
            c = heatColor(film.pixel(i).cost / dearest);
            break;
        default:
            c = idColor(g.prim);
            break;
        }
        const Vec3 working = displayToWorking(c, settings.colorCorrection);
        film.pixel(i) = {working * static_cast<float>(film.samples), static_cast<float>(film.samples),
                         film.pixel(i).cost};
    }
}

} // namespace vesk::renderers::picture
