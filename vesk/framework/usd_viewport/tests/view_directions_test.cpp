#include "view_directions.h"

#include <vesk/usd/utils/camera_utils.h>

#include <gtest/gtest.h>

namespace vesk::framework::usd_viewport {
namespace {

PXR_NAMESPACE_USING_DIRECTIVE

TEST(FramedView, HasTheLabelOfItsDirection)
{
    const char* const labels[] = {"frame scene",       "frame front view", "frame back view",
                                  "frame left view",   "frame right view", "frame top view",
                                  "frame bottom view", "reset view"};
    for (int direction = 0; direction < 8; ++direction)
        EXPECT_EQ(framedView(static_cast<ViewDirection>(direction), false).undoLabel, labels[direction]);
}

TEST(FramedView, KeepsTheCamerasDirectionForCurrentAndForUnknownValues)
{
    for (const int direction : {0, 8, -1}) {
        const FramedView view = framedView(static_cast<ViewDirection>(direction), false);
        EXPECT_FALSE(view.direction);
        EXPECT_EQ(&view.undoLabel, &ViewportModel::m_cameraFrameSceneUndoLabel);
    }
}

TEST(FramedView, NegatesTheOppositeDirection)
{
    for (const bool zUp : {false, true}) {
        const auto direction = [zUp](ViewDirection view) { return *framedView(view, zUp).direction; };
        EXPECT_EQ(direction(ViewDirection::Back), -direction(ViewDirection::Front));
        EXPECT_EQ(direction(ViewDirection::Left), -direction(ViewDirection::Right));
        EXPECT_EQ(direction(ViewDirection::Bottom), -direction(ViewDirection::Top));
    }
}

TEST(FramedView, WidensTheUtilitiesDirections)
{
    EXPECT_EQ(*framedView(ViewDirection::ThreeQuarters, true).direction,
              GfVec3d(vesk::usd::utils::threeQuartersViewDirection(true)));
}

} // namespace
} // namespace vesk::framework::usd_viewport
