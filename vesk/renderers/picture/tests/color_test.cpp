#include <vesk/renderers/picture/color.h>

#include <gtest/gtest.h>

#include <limits>

namespace vesk::renderers::picture {
namespace {

float next(float v, int steps)
{
    for (int i = 0; i < std::abs(steps); ++i)
        v = std::nextafter(v, steps < 0 ? -1.0f : 2.0f);
    return v;
}

TEST(DisplayBytes, EqualTheRoundedPowerFunctionBetweenBlackAndWhite)
{
    const DisplayBytes& bytes = DisplayBytes::get();
    for (int i = 0; i <= 200000; ++i) {
        const float v = static_cast<float>(i) / 200000.0f;
        ASSERT_EQ(bytes.of(v), toByte(linearToSrgb(v))) << v;
    }
}

TEST(DisplayBytes, EqualItOnBothSidesOfEveryStep)
{
    const DisplayBytes& bytes = DisplayBytes::get();
    for (int byte = 1; byte < 256; ++byte) {
        const float border = srgbToLinear((static_cast<float>(byte) - 0.5f) / 255.0f);
        for (int steps = -40; steps <= 40; ++steps) {
            const float v = next(border, steps);
            ASSERT_EQ(bytes.of(v), toByte(linearToSrgb(v))) << byte << " " << steps;
        }
    }
}

TEST(DisplayBytes, TakeEveryOtherNumber)
{
    const DisplayBytes& bytes = DisplayBytes::get();
    using Limits = std::numeric_limits<float>;
    EXPECT_EQ(bytes.of(-1.0f), 0);
    EXPECT_EQ(bytes.of(-0.0f), 0);
    EXPECT_EQ(bytes.of(Limits::denorm_min()), 0);
    EXPECT_EQ(bytes.of(Limits::quiet_NaN()), 0);
    EXPECT_EQ(bytes.of(-Limits::infinity()), 0);
    EXPECT_EQ(bytes.of(1.5f), 255);
    EXPECT_EQ(bytes.of(Limits::infinity()), 255);
}

} // namespace
} // namespace vesk::renderers::picture
