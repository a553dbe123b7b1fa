#include "sample_rate.h"

#include <gtest/gtest.h>

#include <limits>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

std::int64_t samplesOf(const GfVec2i& size, int block)
{
    return static_cast<std::int64_t>((size[0] + block - 1) / block) * ((size[1] + block - 1) / block);
}

void settle(SampleRate& rate, double secondsPerSample)
{
    for (int i = 0; i < 60; ++i)
        rate.note(secondsPerSample * 1000.0, 1000);
}

int blockAt(double secondsPerSample, const GfVec2i& size)
{
    SampleRate rate;
    settle(rate, secondsPerSample);
    return rate.blockFor(size);
}

TEST(SampleRate, ShowsASmallPictureWholeAtOnce)
{
    EXPECT_EQ(blockAt(1.0, GfVec2i(300, 200)), 1);
    EXPECT_EQ(blockAt(1e-9, GfVec2i(300, 201)), 2);
}

TEST(SampleRate, TakesAsManySamplesAsFitIntoTheTimeOfAFirstImage)
{
    const GfVec2i size(1280, 720);
    EXPECT_EQ(blockAt(1e-9, size), 4);  // 57,600 samples, the most
    EXPECT_EQ(blockAt(1e-6, size), 8);  // 20,000 are affordable, 14,400 fit
    EXPECT_EQ(blockAt(2e-6, size), 16); // 10,000 are affordable, 3,600 fit
    EXPECT_EQ(blockAt(1.0, size), 16);  // fewer than 3,600 show nothing
}

TEST(SampleRate, BoundsTheFirstImageOfEverySize)
{
    for (const int side : {245, 246, 500, 1000, 4096, 9999, 16384}) {
        for (const double seconds : {1e-9, 1e-7, 1e-6, 1e-5, 1.0}) {
            const GfVec2i size(side, side);
            const int block = blockAt(seconds, size);
            EXPECT_LE(block, SampleRate::kLargestBlock);
            if (block == SampleRate::kLargestBlock) continue;
            EXPECT_LE(samplesOf(size, block), SampleRate::kMostSamples) << side;
        }
    }
}

TEST(SampleRate, ForgetsAPassThatWasHeldUp)
{
    SampleRate rate;
    settle(rate, 0.5e-6);
    rate.note(3600.0, 1000);
    for (int i = 0; i < 5; ++i)
        rate.note(0.5e-3, 1000);
    EXPECT_EQ(rate.blockFor(GfVec2i(1280, 720)), 8);
}

TEST(SampleRate, IgnoresWhatIsNoMeasurement)
{
    SampleRate rate;
    settle(rate, 1e-6);
    rate.note(1.0, 0);
    rate.note(0.0, 100);
    rate.note(-1.0, 100);
    rate.note(std::numeric_limits<double>::quiet_NaN(), 100);
    EXPECT_EQ(rate.blockFor(GfVec2i(1280, 720)), 8);
}

} // namespace
} // namespace vesk::renderers::embree
