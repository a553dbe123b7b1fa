#include <apps/support/contact_sheet.h>

#include <algorithm>
#include <array>
#include <cmath>

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#pragma GCC diagnostic ignored "-Wsign-compare"
#include <stb/stb_easy_font.h>
#pragma GCC diagnostic pop

namespace vesk::apps {
namespace {

constexpr int kGap = 8;
constexpr int kTextScale = 2;
constexpr int kCaptionHeight = 12 * kTextScale;

/// The mean colour of the source pixels that one target pixel covers.
std::array<std::uint8_t, 4> meanOf(const Image& source, double x0, double y0, double x1, double y1)
{
    const int left = std::clamp(static_cast<int>(x0), 0, source.width - 1);
    const int top = std::clamp(static_cast<int>(y0), 0, source.height - 1);
    const int right = std::clamp(static_cast<int>(std::ceil(x1)), left + 1, source.width);
    const int bottom = std::clamp(static_cast<int>(std::ceil(y1)), top + 1, source.height);
    std::array<unsigned, 4> sum{};
    for (int y = top; y < bottom; ++y) {
        for (int x = left; x < right; ++x) {
            for (int c = 0; c < 4; ++c)
                sum[c] += source.pixel(x, y)[c];
        }
    }
    const unsigned count = static_cast<unsigned>((right - left) * (bottom - top));
    std::array<std::uint8_t, 4> mean{};
    for (int c = 0; c < 4; ++c)
        mean[c] = static_cast<std::uint8_t>((sum[c] + count / 2) / count);
    return mean;
}

void blend(std::uint8_t* target, const std::array<std::uint8_t, 4>& color)
{
    for (int c = 0; c < 3; ++c) {
        target[c] =
            static_cast<std::uint8_t>((color[c] * color[3] + target[c] * (255 - color[3]) + 127) / 255);
    }
}

void drawFitted(Image& sheet, const Image& source, int cellX, int cellY, int cellWidth, int cellHeight)
{
    if (source.width <= 0 || source.height <= 0) return;
    const double scale = std::min(static_cast<double>(cellWidth) / source.width,
                                  static_cast<double>(cellHeight) / source.height);
    const int width = std::max(1, static_cast<int>(std::lround(source.width * scale)));
    const int height = std::max(1, static_cast<int>(std::lround(source.height * scale)));
    const int x0 = cellX + (cellWidth - width) / 2;
    const int y0 = cellY + (cellHeight - height) / 2;
    const double stepX = static_cast<double>(source.width) / width;
    const double stepY = static_cast<double>(source.height) / height;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            blend(sheet.pixel(x0 + x, y0 + y),
                  meanOf(source, x * stepX, y * stepY, (x + 1) * stepX, (y + 1) * stepY));
        }
    }
}

/// One corner of a quad as stb_easy_font lays it out.
struct FontVertex
{
    float x, y, z;
    std::uint8_t color[4];
};

void drawText(Image& sheet, std::string text, int x0, int y0, int width)
{
    while (!text.empty() && stb_easy_font_width(text.data()) * kTextScale > width)
        text.pop_back();
    std::vector<FontVertex> vertices(text.size() * 80 + 4);
    const int quads = stb_easy_font_print(0, 0, text.data(), nullptr, vertices.data(),
                                          static_cast<int>(vertices.size() * sizeof(FontVertex)));
    for (int quad = 0; quad < quads; ++quad) {
        const FontVertex& from = vertices[quad * 4];
        const FontVertex& to = vertices[quad * 4 + 2];
        const int left = x0 + static_cast<int>(from.x * kTextScale);
        const int top = y0 + static_cast<int>(from.y * kTextScale);
        const int right = std::min(x0 + static_cast<int>(to.x * kTextScale), sheet.width);
        const int bottom = std::min(y0 + static_cast<int>(to.y * kTextScale), sheet.height);
        for (int y = top; y < bottom; ++y) {
            for (int x = left; x < right; ++x)
                blend(sheet.pixel(x, y), {225, 225, 225, 255});
        }
    }
}

} // namespace

Image makeContactSheet(const std::vector<SheetEntry>& entries, int columns, int cellWidth, int cellHeight)
{
    columns = std::min<int>(columns, static_cast<int>(entries.size()));
    const int rows = (static_cast<int>(entries.size()) + columns - 1) / columns;
    const int stepX = cellWidth + kGap;
    const int stepY = cellHeight + kCaptionHeight + kGap;
    Image sheet(kGap + columns * stepX, kGap + rows * stepY, 32, 32, 34);
    for (int i = 0; i < static_cast<int>(entries.size()); ++i) {
        const int x = kGap + i % columns * stepX;
        const int y = kGap + i / columns * stepY;
        drawFitted(sheet, entries[i].image, x, y, cellWidth, cellHeight);
        drawText(sheet, entries[i].caption, x + 2, y + cellHeight + 4, cellWidth - 4);
    }
    return sheet;
}

} // namespace vesk::apps
