#include "test_helpers.h"

#include <pxr/base/gf/half.h>

#include <limits>

namespace {

float roundTrip(double value) { return GfHalf(float(value)); }

TEST(Half, RoundsToTheNearest)
{
    // Between 1 and 2 the numbers are 2^-10 apart.
    const double unit = std::ldexp(1.0, -10);
    EXPECT_EQ(roundTrip(1 + 0.4 * unit), 1);
    EXPECT_EQ(roundTrip(1 + 0.6 * unit), 1 + unit);
}

TEST(Half, RoundsHalfwayCasesToTheEvenFraction)
{
    const double unit = std::ldexp(1.0, -10);
    EXPECT_EQ(roundTrip(1 + 0.5 * unit), 1);
    EXPECT_EQ(roundTrip(1 + 1.5 * unit), 1 + 2 * unit);
    EXPECT_EQ(roundTrip(-(1 + 2.5 * unit)), -(1 + 2 * unit));
    EXPECT_EQ(roundTrip(2048 + 1), 2048); // above 2048 only even numbers are left
    EXPECT_EQ(roundTrip(2048 + 3), 2052);
}

TEST(Half, BecomesInfiniteHalfAStepAboveItsLargestNumber)
{
    EXPECT_EQ(roundTrip(65504), 65504);
    EXPECT_EQ(roundTrip(65519.99), 65504);
    EXPECT_EQ(roundTrip(65520), std::numeric_limits<float>::infinity());
    EXPECT_EQ(roundTrip(-1e30), -std::numeric_limits<float>::infinity());
    EXPECT_TRUE(GfHalf(65520.0f).isInfinity());
}

TEST(Half, RoundsSubnormalsToMultiplesOfTheSmallest)
{
    const double smallest = std::ldexp(1.0, -24);
    EXPECT_EQ(roundTrip(smallest), float(smallest));
    EXPECT_EQ(roundTrip(smallest * 0.5), 0); // halfway, 0 is even
    EXPECT_EQ(roundTrip(smallest * 0.500001), float(smallest));
    EXPECT_EQ(roundTrip(smallest * 2.5), float(smallest * 2));
    EXPECT_EQ(roundTrip(smallest * 1023.5), float(smallest * 1024)); // up to the first normal number
    EXPECT_TRUE(GfHalf(float(smallest)).isDenormalized());
}

TEST(Half, KeepsTheSignOfZero)
{
    EXPECT_TRUE(std::signbit(roundTrip(-0.0)));
    EXPECT_TRUE(std::signbit(roundTrip(-1e-30)));
    EXPECT_FALSE(std::signbit(roundTrip(1e-30)));
}

TEST(Half, StaysANumberThatIsNone)
{
    EXPECT_TRUE(GfHalf(std::numeric_limits<float>::quiet_NaN()).isNan());
    EXPECT_TRUE(std::isnan(float(GfHalf::qNan())));
}

TEST(Half, EveryBitPatternSurvivesTheWayThroughFloat)
{
    for (unsigned bits = 0; bits != 0x10000; ++bits) {
        GfHalf h;
        h.setBits(static_cast<unsigned short>(bits));
        if (h.isNan()) {
            EXPECT_TRUE(std::isnan(float(h))) << bits;
            continue;
        }
        // By the definition of the format: (-1)^sign * 2^(e - 15) * 1.fraction.
        const int exponent = (bits >> 10) & 31;
        const int fraction = bits & 1023;
        const double magnitude = exponent == 31  ? std::numeric_limits<double>::infinity()
                                 : exponent == 0 ? std::ldexp(fraction, -24)
                                                 : std::ldexp(1024 + fraction, exponent - 25);
        ASSERT_EQ(double(float(h)), bits & 0x8000 ? -magnitude : magnitude) << bits;
        ASSERT_EQ(GfHalf(float(h)).bits(), bits);
    }
}

TEST(Half, ComputesInFloatAndRoundsTheResult)
{
    GfHalf h(0.1f);
    h += 1.0f;
    EXPECT_EQ(float(h), roundTrip(roundTrip(0.1f) + 1.0f));
    h = -h;
    EXPECT_LT(float(h), 0);
    EXPECT_EQ(float(std::numeric_limits<GfHalf>::max()), 65504);
    EXPECT_EQ(textOf(GfHalf(0.5f)), "0.5");
}

} // namespace
