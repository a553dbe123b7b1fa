#include "contract_session.h"

#include <cmath>
#include <limits>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::tests::contract {
namespace {

PickingResult pick(ContractSession& session, float x, float y, float radius = 0.0f)
{
    return session.renderer->singlePointPicking(x, y, radius).get();
}

TEST_P(EveryDrawingRenderer, PicksThePrimUnderThePointWithItsPlaceNormalAndDepth)
{
    ContractSession session(GetParam(),
                            "#usda 1.0\ndef Xform \"G\" { def Cube \"Box\" { double size = 2\n}\n}\n");
    session.lookPerspective(10.0);
    // 200 pixels show as many units as the depth: at depth 9, pixel 110 lies 10 / 200 * 9 to the right.
    const PickingResult result = pick(session, 110.0f, 95.0f);
    ASSERT_TRUE(result.hit);
    EXPECT_EQ(result.primPath, "/G/Box");
    EXPECT_EQ(result.secondaryPath, "");
    EXPECT_EQ(result.tertiaryPath, "");
    EXPECT_EQ(result.instanceIndex, -1);
    EXPECT_NEAR(result.point[0], 0.45, 1e-5);
    EXPECT_NEAR(result.point[1], 0.225, 1e-5);
    EXPECT_NEAR(result.point[2], 1.0, 1e-5);
    EXPECT_NEAR(result.normal[2], 1.0, 1e-6);
    EXPECT_NEAR(result.depth, 9.0, 1e-5);
}

struct PickCase
{
    const char* name;
    float x;
    float y;
    float radius;
    bool hit;
};

// The sphere is a disk of 50 pixels radius around (100, 100).
TEST_P(EveryDrawingRenderer, HitsWithinTheRadiusAndMissesBeyondIt)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float inf = std::numeric_limits<float>::infinity();
    const std::vector<PickCase> cases = {{"the middle", 100, 100, 0, true},
                                         {"beside it", 160, 100, 0, false},
                                         {"beside it, too short a radius", 160, 100, 8, false},
                                         {"beside it, a radius that reaches", 160, 100, 12, true},
                                         {"beside it, a radius without end", 160, 100, 1e30f, true},
                                         {"an infinite radius", 160, 100, inf, true},
                                         {"a radius that is no number", 100, 100, nan, true},
                                         {"a negative radius", 160, 100, -5, false},
                                         {"outside on the left", -1, 100, 200, false},
                                         {"on the right edge", 200, 100, 200, false},
                                         {"below", 100, 1e30f, 10, false},
                                         {"no number", nan, 100, 10, false},
                                         {"infinite", inf, -inf, 10, false}};
    ContractSession session(GetParam(), kSphereScene);
    session.lookOrthographic(4.0);
    for (const PickCase& c : cases) {
        EXPECT_EQ(pick(session, c.x, c.y, c.radius).hit, c.hit) << c.name;
    }
}

TEST_P(EveryDrawingRenderer, PrefersWhatIsNearestToThePointOverWhatIsNearestToTheViewer)
{
    ContractSession session(GetParam(), R"(#usda 1.0
def Cube "Near" { double size = 1
    double3 xformOp:translate = (-1.5, 0, 3)
    uniform token[] xformOpOrder = ["xformOp:translate"]
}
def Cube "Far" { double size = 1
    double3 xformOp:translate = (0.75, 0, -3)
    uniform token[] xformOpOrder = ["xformOp:translate"]
}
)");
    session.lookOrthographic(4.0);
    // Near ends at x = -1, pixel 50; Far begins at x = 0.25, pixel 112.5.
    EXPECT_EQ(pick(session, 100.0f, 100.0f, 80.0f).primPath, "/Far");
    EXPECT_EQ(pick(session, 60.0f, 100.0f, 80.0f).primPath, "/Near");
    EXPECT_EQ(pick(session, 120.0f, 100.0f, 80.0f).primPath, "/Far");
}

TEST_P(EveryDrawingRenderer, AnswersTheSamePickTheSameWay)
{
    ContractSession session(GetParam(), kSphereScene);
    session.lookPerspective(5.0);
    const PickingResult first = pick(session, 87.25f, 91.5f);
    const PickingResult second = pick(session, 87.25f, 91.5f);
    EXPECT_EQ(first.point, second.point);
    EXPECT_EQ(first.normal, second.normal);
    EXPECT_EQ(first.depth, second.depth);
}

TEST_P(EveryDrawingRenderer, ReadsOnePixelOfAnOutputAsTheFrameShowsIt)
{
    ContractSession session(GetParam(), kSphereScene);
    session.lookOrthographic(4.0);
    const Picture linear = session.render("linearDepth");
    const GfVec4f depth = session.renderer->colorPicking({120.7f, 90.2f}, TfToken("linearDepth")).get();
    EXPECT_EQ(depth[0], linear.number(120, 90));
    EXPECT_EQ(depth[3], 1.0f);
    session.useAmbientLightOnly();
    const Picture color = session.render("color", 16);
    const GfVec4f picked = session.renderer->colorPicking({120.0f, 90.0f}, TfToken("color")).get();
    EXPECT_NEAR(picked[0] * 255.0f, color.byte(120, 90, 0), 0.51);
}

TEST_P(EveryDrawingRenderer, ReportsAnUnknownOutputAndAPixelOutsideThePicture)
{
    ContractSession session(GetParam(), kSphereScene);
    session.lookOrthographic(4.0);
    EXPECT_EQ(errorOf(session.renderer->colorPicking({1, 1}, TfToken("sparkle"))),
              "unknown render output 'sparkle'; known outputs: color, depth, linearDepth, cameraDepth, "
              "normal, Neye, "
              "primId, instanceId, elementId: Invalid argument");
    EXPECT_EQ(errorOf(session.renderer->colorPicking({-1, 1}, TfToken("color"))),
              "cannot read a pixel outside the picture: Invalid argument");
}

} // namespace
} // namespace vesk::tests::contract
