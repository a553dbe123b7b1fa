#include "enlarging.h"

#include <gtest/gtest.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

using framework::hydra_renderer::AovFormat;

// 5 x 3 pixels in blocks of 2: columns 0 0 1 1 2, rows 0 0 1.
constexpr int kSource[3][5] = {{0, 0, 1, 1, 2}, {0, 0, 1, 1, 2}, {3, 3, 4, 4, 5}};

TEST(Enlarging, FillsASquareWithEachPixelOfAFilm)
{
    Film coarse(GfVec2i(3, 2), {true, true, true, true});
    for (std::size_t i = 0; i < coarse.pixelCount(); ++i) {
        coarse.pixel(i).alpha = static_cast<float>(i);
        coarse.ids(i).prim = static_cast<int>(i);
        coarse.depths(i).viewDistance = static_cast<float>(i);
        coarse.normals(i).eye.z = static_cast<float>(i);
    }
    const Film film = enlarged(coarse, GfVec2i(5, 3), {0, 0, 5, 3}, 2);
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 5; ++x) {
            const std::size_t i = film.index(x, y);
            EXPECT_EQ(film.ids(i).prim, kSource[y][x]);
            EXPECT_EQ(film.pixel(i).alpha, static_cast<float>(kSource[y][x]));
            EXPECT_EQ(film.depths(i).viewDistance, static_cast<float>(kSource[y][x]));
            EXPECT_EQ(film.normals(i).eye.z, static_cast<float>(kSource[y][x]));
        }
    }
}

TEST(Enlarging, LeavesWhatLiesOutsideTheDrawnAreaEmpty)
{
    Film coarse(GfVec2i(3, 2), {false, true, false, false});
    for (std::size_t i = 0; i < coarse.pixelCount(); ++i)
        coarse.ids(i).prim = 7;
    const Film film = enlarged(coarse, GfVec2i(5, 3), {1, 1, 4, 3}, 2);
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 5; ++x)
            EXPECT_EQ(film.ids(film.index(x, y)).prim, x >= 1 && x < 4 && y >= 1 ? 7 : -1) << x << " " << y;
    }
}

TEST(Enlarging, FillsASquareWithEachPixelOfAnOutput)
{
    framework::hydra_renderer::AovBuffer coarse;
    coarse.size = GfVec2i(3, 2);
    coarse.channels = 4;
    coarse.format = AovFormat::UNorm8;
    auto bytes = std::make_shared<std::vector<std::uint8_t>>();
    for (int i = 0; i < 6; ++i)
        bytes->insert(bytes->end(), {std::uint8_t(i), std::uint8_t(10 + i), 0, 255});
    coarse.bytes = bytes;
    const auto buffer = enlarged(coarse, GfVec2i(5, 3), 2);
    EXPECT_EQ(buffer.size, GfVec2i(5, 3));
    ASSERT_EQ(buffer.bytes->size(), 60u);
    for (int i = 0; i < 15; ++i) {
        const int expected = kSource[i / 5][i % 5];
        EXPECT_EQ(buffer.bytes->at(static_cast<std::size_t>(4 * i)), expected);
        EXPECT_EQ(buffer.bytes->at(static_cast<std::size_t>(4 * i + 1)), 10 + expected);
        EXPECT_EQ(buffer.bytes->at(static_cast<std::size_t>(4 * i + 3)), 255);
    }
}

} // namespace
} // namespace vesk::renderers::embree
