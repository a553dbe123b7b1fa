#include "enlarging.h"

#include <cstring>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {

using framework::hydra_renderer::AovBuffer;
using framework::hydra_renderer::AovFormat;

Film enlarged(const Film& coarse, const GfVec2i& size, const Tile& area, int block)
{
    Film film(size, coarse.parts());
    const FilmParts& parts = film.parts();
    for (int y = area.y0; y < area.y1; ++y) {
        for (int x = area.x0; x < area.x1; ++x) {
            const std::size_t to = film.index(x, y);
            const std::size_t from = coarse.index(x / block, y / block);
            if (parts.colors) film.pixel(to) = coarse.pixel(from);
            if (parts.ids) film.ids(to) = coarse.ids(from);
            if (parts.depths) film.depths(to) = coarse.depths(from);
            if (parts.normals) film.normals(to) = coarse.normals(from);
        }
    }
    return film;
}

AovBuffer enlarged(const AovBuffer& coarse, const GfVec2i& size, int block)
{
    AovBuffer buffer = coarse;
    buffer.size = size;
    const std::size_t pixel =
        static_cast<std::size_t>(coarse.channels) * (coarse.format == AovFormat::UNorm8 ? 1u : 4u);
    const std::size_t row = pixel * static_cast<std::size_t>(size[0]);
    const std::size_t coarseRow = pixel * static_cast<std::size_t>(coarse.size[0]);
    auto bytes = std::make_shared<std::vector<std::uint8_t>>();
    bytes->resize(row * static_cast<std::size_t>(size[1]));
    std::uint8_t* to = bytes->data();
    for (int y = 0; y < size[1]; ++y, to += row) {
        if (y % block != 0) {
            std::memcpy(to, to - row, row);
            continue;
        }
        const std::uint8_t* from = coarse.bytes->data() + static_cast<std::size_t>(y / block) * coarseRow;
        for (int x = 0; x < size[0]; ++x)
            std::memcpy(to + static_cast<std::size_t>(x) * pixel,
                        from + static_cast<std::size_t>(x / block) * pixel, pixel);
    }
    buffer.bytes = std::move(bytes);
    return buffer;
}

} // namespace vesk::renderers::embree
