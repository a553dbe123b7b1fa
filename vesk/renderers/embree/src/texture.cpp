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

Vec4 Texture::_pixel(int x, int y, bool decode) const
{
    if (x < 0 || y < 0) return {};
    const std::size_t at = 4 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(m_image.width) +
                                static_cast<std::size_t>(x));
    Vec4 value;
    for (std::size_t c = 0; c < 4; ++c) {
        if (m_image.bytes.empty()) {
            value.v[c] = decode && c < 3 ? srgbToLinear(m_image.floats[at + c]) : m_image.floats[at + c];
        } else {
            const std::uint8_t byte = m_image.bytes[at + c];
            value.v[c] = decode && c < 3 ? decodedBytes()[byte] : static_cast<float>(byte) * (1.0f / 255.0f);
        }
    }
    return value;
}

Vec4 Texture::sample(float s, float t, TextureWrap wrapS, TextureWrap wrapT, TextureColorSpace space) const
{
    // Far outside a texture there are no digits left that could tell its pixels apart.
    if (!(std::abs(s) < 1e6f && std::abs(t) < 1e6f)) return {};
    const bool isColor = m_image.channels >= 3 && !m_image.bytes.empty();
    const bool decode = space == TextureColorSpace::Srgb || (space == TextureColorSpace::Auto && isColor);
    const double x = double(s) * m_image.width - 0.5;
    const double y = (1.0 - double(t)) * m_image.height - 0.5;
    const double fx = std::floor(x);
    const double fy = std::floor(y);
    const auto dx = static_cast<float>(x - fx);
    const auto dy = static_cast<float>(y - fy);
    Vec4 sum;
    for (int j = 0; j < 2; ++j) {
        const int row = wrapped(static_cast<int>(std::clamp(fy, -1e9, 1e9)) + j, m_image.height, wrapT);
        for (int i = 0; i < 2; ++i) {
            const int column = wrapped(static_cast<int>(std::clamp(fx, -1e9, 1e9)) + i, m_image.width, wrapS);
            sum += _pixel(column, row, decode) * ((i ? dx : 1.0f - dx) * (j ? dy : 1.0f - dy));
        }
    }
    return sum;
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
