#include "jitter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::hydra {
namespace {

TEST(Jitter, LeavesTheFirstDrawingAndASingleOneWhereTheyAre)
{
    EXPECT_EQ(jitterOf(0, 16), GfVec2d(0.0));
    EXPECT_EQ(jitterOf(1, 1), GfVec2d(0.0));
}

TEST(Jitter, SpreadsDrawingsEvenlyOverAQuarterOfAPixel)
{
    GfVec2d sum(0.0);
    std::set<double> columns;
    for (int i = 1; i <= 64; ++i) {
        const GfVec2d shift = jitterOf(i, 65);
        EXPECT_LE(std::abs(shift[0]), 0.125);
        EXPECT_LE(std::abs(shift[1]), 0.125);
        columns.insert(shift[0]);
        sum += shift;
    }
    EXPECT_EQ(columns.size(), 64u); // no two alike
    EXPECT_NEAR(sum[0] / 64.0, 0.0, 0.005);
    EXPECT_NEAR(sum[1] / 64.0, 0.0, 0.005);
}

} // namespace
} // namespace vesk::renderers::hydra
