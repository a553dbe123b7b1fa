#include "texture.h"

#include "drawing.h"

#include <pxr/usd/ar/asset.h>
#include <pxr/usd/ar/resolvedPath.h>
#include <pxr/usd/ar/resolver.h>
#include <vesk/base/logging.h>

#include <array>
#include <stdexcept>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

const std::array<float, 256>& decodedBytes()
{
    static const std::array<float, 256> table = [] {
        std::array<float, 256> values{};
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i] = srgbToLinear(static_cast<float>(i) / 255.0f);
        return values;
    }();
    return table;
}

// A pixel's number along one side, -1 for none.
int wrapped(int i, int size, TextureWrap wrap)
{
    switch (wrap) {
    case TextureWrap::Repeat:
        return (i % size + size) % size;
    case TextureWrap::Mirror: {
        const int m = (i % (2 * size) + 2 * size) % (2 * size);
        return m < size ? m : 2 * size - 1 - m;
    }
    case TextureWrap::Clamp:
        return std::clamp(i, 0, size - 1);
    default:
        return i < 0 || i >= size ? -1 : i;
    }
}

bool isColor(const DecodedImage& image) { return image.channels >= 3 && !image.bytes.empty(); }

Vec4 pixelOf(const DecodedImage& image, int x, int y, bool decode)
{
    if (x < 0 || y < 0) return {};
    const std::size_t at = 4 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width) +
                                static_cast<std::size_t>(x));
    Vec4 value;
    for (std::size_t c = 0; c < 4; ++c) {
        if (image.bytes.empty()) {
            value.v[c] = decode && c < 3 ? srgbToLinear(image.floats[at + c]) : image.floats[at + c];
        } else {
            const std::uint8_t byte = image.bytes[at + c];
            value.v[c] = decode && c < 3 ? decodedBytes()[byte] : static_cast<float>(byte) * (1.0f / 255.0f);
        }
    }
    return value;
}

// Each pixel is the mean of four. \param color whether light is added up rather than its encoded numbers
DecodedImage halved(const DecodedImage& image, bool color)
{
    DecodedImage half;
    half.width = std::max(image.width / 2, 1);
    half.height = std::max(image.height / 2, 1);
    half.channels = image.channels;
    const std::size_t count =
        4 * static_cast<std::size_t>(half.width) * static_cast<std::size_t>(half.height);
    (image.bytes.empty() ? half.floats.reserve(count) : half.bytes.reserve(count));
    for (int y = 0; y < half.height; ++y) {
        const int rows[2] = {2 * y, std::min(2 * y + 1, image.height - 1)};
        for (int x = 0; x < half.width; ++x) {
            const int columns[2] = {2 * x, std::min(2 * x + 1, image.width - 1)};
            Vec4 sum;
            for (const int row : rows) {
                for (const int column : columns)
                    sum += pixelOf(image, column, row, color) * 0.25f;
            }
            for (int c = 0; c < 4; ++c) {
                const float mean = color && c < 3 ? linearToSrgb(sum.v[c]) : sum.v[c];
                if (image.bytes.empty()) {
                    half.floats.push_back(mean);
                } else {
                    half.bytes.push_back(toByte(mean));
                }
            }
        }
    }
    return half;
}

DecodedImage readImage(const std::string& path)
{
    const std::shared_ptr<ArAsset> asset = ArGetResolver().OpenAsset(ArResolvedPath(path));
    if (!asset) throw std::runtime_error("it cannot be opened");
    const std::shared_ptr<const char> buffer = asset->GetBuffer();
    if (!buffer) throw std::runtime_error("it cannot be read");
    return decodeImage(buffer.get(), asset->GetSize());
}

} // namespace

Texture::Texture(DecodedImage image) : m_path("(memory)")
{
    std::call_once(m_once, [&] { m_image = std::move(image); });
}

void Texture::load() const
{
    std::call_once(m_once, [this] {
        try {
            m_image = readImage(m_path);
        } catch (const std::exception& error) {
            m_image = {};
            VESK_LOG_WARN("Texture {} is not shown: {}", m_path, error.what());
        }
    });
}

bool Texture::isUsable() const
{
    load();
    return m_image.width > 0;
}

Vec4 Texture::_blend(const DecodedImage& image, float s, float t, TextureWrap wrapS, TextureWrap wrapT,
                     bool decode) const
{
    const double x = double(s) * image.width - 0.5;
    const double y = (1.0 - double(t)) * image.height - 0.5;
    const double fx = std::floor(x);
    const double fy = std::floor(y);
    const auto dx = static_cast<float>(x - fx);
    const auto dy = static_cast<float>(y - fy);
    Vec4 sum;
    for (int j = 0; j < 2; ++j) {
        const int row = wrapped(static_cast<int>(std::clamp(fy, -1e9, 1e9)) + j, image.height, wrapT);
        for (int i = 0; i < 2; ++i) {
            const int column = wrapped(static_cast<int>(std::clamp(fx, -1e9, 1e9)) + i, image.width, wrapS);
            sum += pixelOf(image, column, row, decode) * ((i ? dx : 1.0f - dx) * (j ? dy : 1.0f - dy));
        }
    }
    return sum;
}

const DecodedImage& Texture::_level(int level, bool decode) const
{
    if (level <= 0) return m_image;
    Smaller& smaller = m_smaller[decode ? 1 : 0];
    std::call_once(smaller.once, [this, &smaller, decode] {
        const DecodedImage* last = &m_image;
        while (last->width > 1 || last->height > 1) {
            smaller.levels.push_back(halved(*last, decode));
            last = &smaller.levels.back();
        }
    });
    const std::size_t index = std::min(static_cast<std::size_t>(level), smaller.levels.size());
    return index == 0 ? m_image : smaller.levels[index - 1];
}

Vec4 Texture::sample(float s, float t, TextureWrap wrapS, TextureWrap wrapT, TextureColorSpace space,
                     float footprint) const
{
    // Far outside a texture there are no digits left that could tell its pixels apart.
    if (!(std::abs(s) < 1e6f && std::abs(t) < 1e6f)) return {};
    const bool decode =
        space == TextureColorSpace::Srgb || (space == TextureColorSpace::Auto && isColor(m_image));
    const float pixels = footprint * static_cast<float>(std::max(m_image.width, m_image.height));
    if (!(pixels > 1.0f)) return _blend(m_image, s, t, wrapS, wrapT, decode);
    const float level = std::min(std::log2(pixels), 30.0f);
    const int finer = static_cast<int>(level);
    const float share = level - static_cast<float>(finer);
    return _blend(_level(finer, decode), s, t, wrapS, wrapT, decode) * (1.0f - share) +
           _blend(_level(finer + 1, decode), s, t, wrapS, wrapT, decode) * share;
}

std::shared_ptr<const Texture> TextureStore::at(const std::string& path)
{
    const std::lock_guard lock(m_mutex);
    std::weak_ptr<const Texture>& known = m_textures[path];
    if (auto texture = known.lock()) return texture;
    auto texture = std::make_shared<const Texture>(path);
    known = texture;
    return texture;
}

} // namespace vesk::renderers::embree
