#include "dome.h"

#include <algorithm>
#include <map>
#include <mutex>

namespace vesk::renderers::embree {
namespace {

constexpr float kPi = 3.14159265f;

constexpr int kColumns = 128;
constexpr int kRows = 64;

float brightness(Vec3 c) { return 0.2126f * c.x + 0.7152f * c.y + 0.0722f * c.z; }

float cellBrightness(const Texture& texture, int column, int row)
{
    constexpr int kSteps = 4;
    float sum = 0.0f;
    for (int i = 0; i < kSteps * kSteps; ++i) {
        const float x = (static_cast<float>(i % kSteps) + 0.5f) / kSteps;
        const float y = (static_cast<float>(i / kSteps) + 0.5f) / kSteps;
        const Vec4 c = texture.sample((static_cast<float>(column) + x) / kColumns,
                                      1.0f - (static_cast<float>(row) + y) / kRows, TextureWrap::Repeat,
                                      TextureWrap::Clamp, TextureColorSpace::Auto);
        const float b = brightness(Vec3(c.v[0], c.v[1], c.v[2]));
        if (b > 0.0f && std::isfinite(b)) sum += b;
    }
    // A little everywhere, so that no direction is impossible.
    return sum / (kSteps * kSteps) + 1e-4f;
}

// Cells near the poles are smaller: their share of the sphere is the sine of their latitude.
std::shared_ptr<const std::vector<float>> makeTable(const Texture& texture)
{
    auto cells = std::make_shared<std::vector<float>>();
    cells->reserve(std::size_t(kColumns) * kRows);
    float sum = 0.0f;
    for (int row = 0; row < kRows; ++row) {
        const float sine = std::sin((static_cast<float>(row) + 0.5f) / kRows * kPi);
        for (int column = 0; column < kColumns; ++column) {
            sum += cellBrightness(texture, column, row) * sine;
            cells->push_back(sum);
        }
    }
    return cells;
}

/// A table that was made, for as long as its texture lives.
struct KnownTable
{
    std::weak_ptr<const Texture> texture;
    std::shared_ptr<const std::vector<float>> cells;
};

// Every frame asks for the table of its domes: it is made once a texture.
std::shared_ptr<const std::vector<float>> tableOf(const std::shared_ptr<const Texture>& texture)
{
    static std::mutex mutex;
    static std::map<const Texture*, KnownTable> tables;
    const std::lock_guard lock(mutex);
    for (auto at = tables.begin(); at != tables.end();)
        at = at->second.texture.expired() ? tables.erase(at) : std::next(at);
    KnownTable& known = tables[texture.get()];
    if (!known.cells) known = {texture, makeTable(*texture)};
    return known.cells;
}

} // namespace

Dome::Dome(Vec3 color, std::shared_ptr<const Texture> texture, const Mat3& toDome)
    : m_color(color), m_texture(std::move(texture)), m_toDome(toDome)
{
    if (m_texture && !m_texture->isUsable()) m_texture = nullptr;
    if (m_texture) m_cells = tableOf(m_texture);
}

void Dome::_placeOf(Vec3 local, float& u, float& v) const
{
    u = (std::atan2(local.z, local.x) + 0.5f * kPi) / (2.0f * kPi);
    u -= std::floor(u);
    v = std::acos(std::clamp(local.y, -1.0f, 1.0f)) / kPi; // 0 at the pole
}

Vec3 Dome::radiance(Vec3 direction) const
{
    if (!m_texture) return m_color;
    float u = 0.0f;
    float v = 0.0f;
    _placeOf(m_toDome.apply(direction), u, v);
    const Vec4 c =
        m_texture->sample(u, 1.0f - v, TextureWrap::Repeat, TextureWrap::Clamp, TextureColorSpace::Auto);
    return max(Vec3(c.v[0], c.v[1], c.v[2]), 0.0f) * m_color;
}

Vec3 Dome::sample(Sample2 s, float& densityOut) const
{
    const float wanted = s.x * m_cells->back();
    const auto at = static_cast<std::size_t>(std::min<std::ptrdiff_t>(
        std::upper_bound(m_cells->begin(), m_cells->end(), wanted) - m_cells->begin(),
        static_cast<std::ptrdiff_t>(m_cells->size()) - 1));
    const float before = at > 0 ? (*m_cells)[at - 1] : 0.0f;
    const float within =
        std::clamp((wanted - before) / std::max((*m_cells)[at] - before, 1e-30f), 0.0f, 1.0f);
    const float u = (static_cast<float>(at % kColumns) + within) / kColumns;
    const float v = (static_cast<float>(at / kColumns) + s.y) / kRows;
    const float phi = 2.0f * kPi * u - 0.5f * kPi;
    const float sine = std::sin(v * kPi);
    const Vec3 local(std::cos(phi) * sine, std::cos(v * kPi), std::sin(phi) * sine);
    // The way back of a rotation is its transpose.
    const Vec3 direction(dot(m_toDome.row0, local), dot(m_toDome.row1, local), dot(m_toDome.row2, local));
    densityOut = density(direction);
    return direction;
}

float Dome::density(Vec3 direction) const
{
    float u = 0.0f;
    float v = 0.0f;
    _placeOf(m_toDome.apply(direction), u, v);
    const int column = std::clamp(static_cast<int>(u * kColumns), 0, kColumns - 1);
    const int row = std::clamp(static_cast<int>(v * kRows), 0, kRows - 1);
    const auto at = static_cast<std::size_t>(row) * kColumns + static_cast<std::size_t>(column);
    const float share = ((*m_cells)[at] - (at > 0 ? (*m_cells)[at - 1] : 0.0f)) / m_cells->back();
    const float sine = std::max(std::sin(v * kPi), 1e-4f);
    return share * float(kColumns) * float(kRows) / (2.0f * kPi * kPi * sine);
}

} // namespace vesk::renderers::embree
