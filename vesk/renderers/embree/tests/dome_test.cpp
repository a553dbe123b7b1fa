#include "dome.h"

#include <gtest/gtest.h>

#include <cmath>

namespace vesk::renderers::embree {
namespace {

constexpr float kPi = 3.14159265f;

/// A picture of 8-bit pixels from a rule.
template <class Rule>
std::shared_ptr<const Texture> textureOf(int width, int height, const Rule& rule)
{
    DecodedImage image;
    image.width = width;
    image.height = height;
    image.channels = 3;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            for (int c = 0; c < 4; ++c)
                image.floats.push_back(c == 3 ? 1.0f : rule(x, y, c));
        }
    }
    return std::make_shared<const Texture>(std::move(image));
}

TEST(Dome, OfOneColourIsTheSameEverywhere)
{
    const Dome dome(Vec3(0.5f), nullptr, Mat3());
    EXPECT_FALSE(dome.isTextured());
    EXPECT_EQ(dome.radiance(Vec3(0, 1, 0)), Vec3(0.5f));
}

// Columns 0 to 3 of a picture: its middle is +z, a quarter to the left of it +x.
TEST(Dome, HasThePicturesMiddleAtItsOwnZAndItsTopAtItsOwnY)
{
    const auto columns = textureOf(64, 32, [](int x, int, int c) { return x / 16 == c ? 1.0f : 0.0f; });
    const Dome dome(Vec3(1.0f), columns, Mat3());
    const auto towards = [&dome](float u) {
        const float phi = 2 * kPi * u - kPi / 2;
        return dome.radiance(Vec3(std::cos(phi), 0, std::sin(phi)));
    };
    EXPECT_EQ(towards(0.125f), Vec3(1, 0, 0));
    EXPECT_EQ(towards(0.375f), Vec3(0, 1, 0)); // between +x (0.25) and +z (0.5)
    EXPECT_EQ(towards(0.625f), Vec3(0, 0, 1));
    const auto rows = textureOf(8, 32, [](int, int y, int) { return y < 16 ? 1.0f : 0.0f; });
    const Dome upright(Vec3(2.0f), rows, Mat3());
    EXPECT_EQ(upright.radiance(Vec3(0, 1, 0)), Vec3(2.0f));
    EXPECT_EQ(upright.radiance(Vec3(0, -1, 0)), Vec3(0.0f));
}

TEST(Dome, TurnsWithItsRotation)
{
    const auto rows = textureOf(8, 32, [](int, int y, int) { return y < 16 ? 1.0f : 0.0f; });
    Mat3 toDome; // the world's z is the dome's y
    toDome.row1 = Vec3(0, 0, -1);
    toDome.row2 = Vec3(0, 1, 0);
    const Dome dome(Vec3(1.0f), rows, toDome);
    EXPECT_EQ(dome.radiance(Vec3(0, 0, 1)), Vec3(1.0f));
    EXPECT_EQ(dome.radiance(Vec3(0, 0, -1)), Vec3(0.0f));
}

TEST(Dome, ChoosesDirectionsWithADensityThatSumsToOne)
{
    const auto spots = textureOf(64, 32, [](int x, int y, int) { return x == 40 && y == 9 ? 100.0f : 0.1f; });
    const Dome dome(Vec3(1.0f), spots, Mat3());
    double sum = 0.0;
    constexpr int kRows = 400;
    for (int i = 0; i < kRows; ++i) {
        const double theta = (i + 0.5) / kRows * kPi;
        for (int j = 0; j < 2 * kRows; ++j) {
            const double phi = (j + 0.5) / kRows * kPi;
            sum += dome.density(Vec3(float(std::sin(theta) * std::cos(phi)), float(std::cos(theta)),
                                     float(std::sin(theta) * std::sin(phi)))) *
                   std::sin(theta);
        }
    }
    EXPECT_NEAR(sum * (kPi / kRows) * (kPi / kRows), 1.0, 0.02);
}

// The light of the whole sphere, as the mean of radiance over density, against the sum over all directions.
TEST(Dome, FindsTheLightOfItsPictureBySampling)
{
    const auto spots = textureOf(64, 32, [](int x, int y, int) { return x == 40 && y == 9 ? 100.0f : 0.1f; });
    const Dome dome(Vec3(1.0f), spots, Mat3());
    double sampled = 0.0;
    constexpr unsigned kCount = 20000;
    for (unsigned i = 0; i < kCount; ++i) {
        float density = 0.0f;
        const Vec3 direction = dome.sample(sequencePoint(i, 3), density);
        sampled += dome.radiance(direction).x / density / kCount;
    }
    double summed = 0.0;
    constexpr int kRows = 512;
    for (int i = 0; i < kRows; ++i) {
        const double theta = (i + 0.5) / kRows * kPi;
        for (int j = 0; j < 2 * kRows; ++j) {
            const double phi = (j + 0.5) / kRows * kPi;
            summed += dome.radiance(Vec3(float(std::sin(theta) * std::cos(phi)), float(std::cos(theta)),
                                         float(std::sin(theta) * std::sin(phi))))
                          .x *
                      std::sin(theta) * (kPi / kRows) * (kPi / kRows);
        }
    }
    EXPECT_NEAR(sampled / summed, 1.0, 0.03);
}

} // namespace
} // namespace vesk::renderers::embree
