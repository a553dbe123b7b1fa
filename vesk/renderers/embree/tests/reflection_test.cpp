#include "reflection.h"

#include <gtest/gtest.h>

#include <cmath>

namespace vesk::renderers::embree {
namespace {

constexpr float kPi = 3.14159265f;
const Vec3 kUp(0.0f, 0.0f, 1.0f);

Vec3 fromAngle(float degrees)
{
    const float a = degrees * kPi / 180.0f;
    return {std::sin(a), 0.0f, std::cos(a)};
}

// What an evenly bright sky gives to a viewer, by a grid over all directions.
float underEvenSky(const Reflection& r, Vec3 toViewer)
{
    constexpr int kRings = 400;
    constexpr int kSteps = 800;
    double sum = 0.0;
    for (int i = 0; i < kRings; ++i) {
        const double theta = (i + 0.5) / kRings * kPi / 2;
        for (int j = 0; j < kSteps; ++j) {
            const double phi = (j + 0.5) / kSteps * 2 * kPi;
            const Vec3 l(float(std::sin(theta) * std::cos(phi)), float(std::sin(theta) * std::sin(phi)),
                         float(std::cos(theta)));
            sum += r.between(kUp, toViewer, l, 1.0f, 1.0f).x * std::cos(theta) * std::sin(theta);
        }
    }
    return float(sum * (kPi / 2 / kRings) * (2 * kPi / kSteps) / kPi);
}

TEST(Reflection, OfADullSurfaceIsItsColourFromEverywhere)
{
    Reflection r;
    r.diffuse = Vec3(0.4f);
    r.roughness = 1.0f;
    EXPECT_NEAR(r.between(kUp, kUp, kUp, 1.0f, 1.0f).x, 0.4f, 1e-6f);
}

TEST(Reflection, NeverGivesMoreLightThanItGets)
{
    for (const float roughness : {0.3f, 0.5f, 1.0f}) {
        for (const float angle : {0.0f, 45.0f, 75.0f}) {
            Reflection r;
            r.specular = Vec3(1.0f);
            r.roughness = roughness;
            const float share = underEvenSky(r, fromAngle(angle));
            EXPECT_LE(share, 1.01f) << roughness << " " << angle;
            // Light that meets several facets is lost: at the roughest two thirds of it.
            EXPECT_GT(share, 0.3f) << roughness << " " << angle;
        }
    }
}

// Two ways to the same number: the sum over all directions, and the mean over the chosen ones.
TEST(Reflection, ChoosesMirroredDirectionsAsOftenAsTheyCount)
{
    for (const float roughness : {0.35f, 0.7f}) {
        Reflection r;
        r.specular = Vec3(0.8f);
        r.roughness = roughness;
        const Vec3 toViewer = fromAngle(40.0f);
        double sum = 0.0;
        constexpr unsigned kCount = 20000;
        for (unsigned i = 0; i < kCount; ++i) {
            Vec3 direction;
            Vec3 share;
            if (r.sampleMirror(kUp, toViewer, sequencePoint(i, 7), direction, share)) sum += share.x;
        }
        EXPECT_NEAR(sum / kCount, underEvenSky(r, toViewer), 0.02) << roughness;
    }
}

TEST(Reflection, OfASmoothMetalMirrors)
{
    Reflection r;
    r.specular = Vec3(0.9f);
    r.roughness = 0.0f;
    Vec3 direction;
    Vec3 share;
    ASSERT_TRUE(r.sampleMirror(kUp, fromAngle(30.0f), {0.3f, 0.6f}, direction, share));
    EXPECT_NEAR(direction.x, -0.5f, 3e-3f);
    EXPECT_NEAR(direction.z, std::sqrt(0.75f), 3e-3f);
    EXPECT_NEAR(share.x, 0.9f, 1e-2f);
}

TEST(Reflection, GrowsTowardsGrazingAngles)
{
    Reflection r;
    r.specular = Vec3(0.04f);
    r.roughness = 0.5f;
    EXPECT_GT(underEvenSky(r, fromAngle(80.0f)), 2.0f * underEvenSky(r, kUp));
}

} // namespace
} // namespace vesk::renderers::embree
