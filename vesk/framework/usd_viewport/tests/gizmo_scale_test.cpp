#include "viewport_fixture.h"

#include <cmath>

namespace vesk::framework::usd_viewport::tests {
namespace {

class GizmoScaleTest : public ViewportTest
{
protected:
    void SetUp() override
    {
        ViewportTest::SetUp();
        forget();
    }
};

TEST_F(GizmoScaleTest, IsCutToItsLimits)
{
    const std::pair<float, float> rows[] = {{5.0f, 3.0f},       {0.01f, 0.1f}, {HUGE_VALF, 3.0f},
                                            {-HUGE_VALF, 0.1f}, {-1.0f, 0.1f}, {2.5f, 2.5f}};
    for (const auto& [given, kept] : rows) {
        model->setGizmoScaleMultiplier(given);
        EXPECT_EQ(model->gizmoScaleMultiplier(), kept) << given;
    }
    expectSilence();
}

TEST_F(GizmoScaleTest, DropsChangesBelowTheFloatEpsilon)
{
    model->setGizmoScaleMultiplier(0.1f);
    model->setGizmoScaleMultiplier(0.1000001f);
    EXPECT_EQ(model->gizmoScaleMultiplier(), 0.1f);
    model->setGizmoScaleMultiplier(0.1000002f);
    EXPECT_EQ(model->gizmoScaleMultiplier(), 0.1000002f);
}

TEST_F(GizmoScaleTest, KeepsAChangeOfExactlyTheFloatEpsilon)
{
    model->setGizmoScaleMultiplier(1.0f + 1.1920928955078125e-07f);
    EXPECT_EQ(model->gizmoScaleMultiplier(), 1.0f + 1.1920928955078125e-07f);
}

TEST_F(GizmoScaleTest, KeepsANaNAndWhatFollowsIt)
{
    model->setGizmoScaleMultiplier(std::nanf(""));
    EXPECT_TRUE(std::isnan(model->gizmoScaleMultiplier()));
    model->setGizmoScaleMultiplier(1.0f);
    EXPECT_EQ(model->gizmoScaleMultiplier(), 1.0f);
}

TEST_F(GizmoScaleTest, HasItsLimitsAsDeclared)
{
    EXPECT_EQ(ViewportModel::kGizmoScaleMin, 0.1f);
    EXPECT_EQ(ViewportModel::kGizmoScaleMax, 3.0f);
}

} // namespace
} // namespace vesk::framework::usd_viewport::tests
