#include "render_buffer_reading.h"

#include <vesk/base/thread_pool.h>

#include <pxr/base/gf/half.h>
#include <pxr/imaging/hd/types.h>

#include <cstring>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::hydra {
namespace {

constexpr std::size_t kRowsAtOnce = 32;

/// A rectangle of a mapped buffer, the top row first.
class MappedBuffer
{
public:
    MappedBuffer(HdRenderBuffer* buffer, const PixelRect& rect) : m_buffer(buffer), m_rect(rect)
    {
        if (!m_buffer) return;
        const GfVec2i end = rect.origin + rect.size;
        if (end[0] > static_cast<int>(m_buffer->GetWidth()) ||
            end[1] > static_cast<int>(m_buffer->GetHeight()))
            return;
        m_buffer->Resolve();
        m_bytes = static_cast<const std::uint8_t*>(m_buffer->Map());
    }
    ~MappedBuffer()
    {
        if (m_bytes) m_buffer->Unmap();
    }
    MappedBuffer(const MappedBuffer&) = delete;
    MappedBuffer& operator=(const MappedBuffer&) = delete;

    bool isValid() const { return m_bytes != nullptr; }
    HdFormat format() const { return m_buffer->GetFormat(); }

    /// Calls use(number of the pixel in the rectangle, address) for each pixel, on several threads.
    template <class F>
    void forEach(const F& use) const
    {
        if (!m_bytes) return;
        const std::size_t size = HdDataSizeOfFormat(format());
        const std::size_t rowSize = m_buffer->GetWidth() * size;
        const auto width = static_cast<std::size_t>(m_rect.size[0]);
        const auto left = static_cast<std::size_t>(m_rect.origin[0]);
        const std::size_t lastRow = m_buffer->GetHeight() - 1 - static_cast<std::size_t>(m_rect.origin[1]);
        base::parallelFor(static_cast<std::size_t>(m_rect.size[1]), kRowsAtOnce,
                          [&](std::size_t from, std::size_t to) {
                              for (std::size_t row = from; row < to; ++row) {
                                  const std::uint8_t* at = m_bytes + (lastRow - row) * rowSize + left * size;
                                  for (std::size_t column = 0; column < width; ++column, at += size)
                                      use(row * width + column, at);
                              }
                          });
    }

private:
    HdRenderBuffer* m_buffer;
    PixelRect m_rect;
    const std::uint8_t* m_bytes = nullptr;
};

// The channels of a pixel as floats; what the format lacks stays as it is.
void readChannels(HdFormat format, const std::uint8_t* from, float (&to)[4])
{
    const std::size_t count = std::min<std::size_t>(HdGetComponentCount(format), 4);
    switch (HdGetComponentFormat(format)) {
    case HdFormatFloat16: {
        GfHalf half[4];
        std::memcpy(static_cast<void*>(half), from, count * sizeof(GfHalf));
        for (std::size_t i = 0; i < count; ++i)
            to[i] = half[i];
        break;
    }
    case HdFormatFloat32:
        std::memcpy(to, from, count * sizeof(float));
        break;
    case HdFormatUNorm8:
        for (std::size_t i = 0; i < count; ++i)
            to[i] = static_cast<float>(from[i]) / 255.0f;
        break;
    default:
        break;
    }
}

// Ten bits a channel, as rasterisers draw normals.
GfVec3f unpackNormal(const std::uint8_t* from)
{
    std::uint32_t bits = 0;
    std::memcpy(&bits, from, sizeof(bits));
    const auto channel = [bits](unsigned shift) {
        auto value = static_cast<std::int32_t>(bits >> shift & 0x3ff);
        if (value >= 512) value -= 1024;
        return std::max(static_cast<float>(value) / 511.0f, -1.0f);
    };
    return {channel(0), channel(10), channel(20)};
}

} // namespace

void addColors(HdRenderBuffer* buffer, const PixelRect& rect, picture::Film& film)
{
    const MappedBuffer mapped(buffer, rect);
    if (rect.count() != film.pixelCount()) return;
    mapped.forEach([&](std::size_t index, const std::uint8_t* at) {
        float c[4] = {0.0f, 0.0f, 0.0f, 1.0f};
        readChannels(mapped.format(), at, c);
        picture::FilmPixel& pixel = film.pixel(index);
        pixel.color += picture::Vec3(c[0], c[1], c[2]);
        pixel.alpha += c[3];
        pixel.samples += 1.0f;
    });
}

std::vector<float> readFloats(HdRenderBuffer* buffer, const PixelRect& rect)
{
    const MappedBuffer mapped(buffer, rect);
    std::vector<float> values(mapped.isValid() ? rect.count() : 0, 1.0f);
    mapped.forEach([&](std::size_t index, const std::uint8_t* at) {
        float c[4] = {1.0f, 0.0f, 0.0f, 0.0f};
        readChannels(mapped.format(), at, c);
        values[index] = c[0];
    });
    return values;
}

std::vector<std::int32_t> readIds(HdRenderBuffer* buffer, const PixelRect& rect)
{
    const MappedBuffer mapped(buffer, rect);
    if (!mapped.isValid() || HdDataSizeOfFormat(mapped.format()) != sizeof(std::int32_t)) return {};
    std::vector<std::int32_t> values(rect.count(), -1);
    mapped.forEach([&](std::size_t index, const std::uint8_t* at) {
        std::memcpy(&values[index], at, sizeof(std::int32_t));
    });
    return values;
}

std::vector<GfVec3f> readNormals(HdRenderBuffer* buffer, const PixelRect& rect)
{
    const MappedBuffer mapped(buffer, rect);
    std::vector<GfVec3f> values(mapped.isValid() ? rect.count() : 0, GfVec3f(0.0f));
    if (values.empty()) return values;
    const bool isPacked = mapped.format() == HdFormatUNorm8Vec4 || mapped.format() == HdFormatInt32;
    mapped.forEach([&](std::size_t index, const std::uint8_t* at) {
        if (isPacked) {
            values[index] = unpackNormal(at);
            return;
        }
        float c[4] = {0.0f, 0.0f, 0.0f, 0.0f};
        readChannels(mapped.format(), at, c);
        values[index] = GfVec3f(c[0], c[1], c[2]);
    });
    return values;
}

} // namespace vesk::renderers::hydra
