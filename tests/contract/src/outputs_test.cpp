#include "contract_session.h"

#include <pxr/base/tf/token.h>

#include <cmath>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::tests::contract {
namespace {

// 200 pixels show 4 units: the sphere is a disk of 50 pixels radius around (100, 100). Its mesh of 96
// segments lies inside it by at most 1 - cos(pi / 96) of the radius, 0.03 pixels.
TEST_P(EveryDrawingRenderer, ShowsASphereAsADiskOfItsRadius)
{
    ContractSession session(GetParam(), kSphereScene);
    session.lookOrthographic(4.0);
    const Picture ids = session.render("primId");
    std::string wrong;
    for (int y = 0; y < 200; ++y) {
        for (int x = 0; x < 200; ++x) {
            const double distance = std::hypot(x + 0.5 - 100.0, y + 0.5 - 100.0);
            if (std::abs(distance - 50.0) < 0.1) continue;
            if ((ids.id(x, y) >= 0) != (distance < 50.0)) {
                wrong += " " + std::to_string(x) + "," + std::to_string(y);
            }
        }
    }
    EXPECT_EQ(wrong, "");
}

TEST_P(EveryDrawingRenderer, MeasuresDepthAlongTheViewAxisToTheFrontOfACube)
{
    ContractSession session(GetParam(), "#usda 1.0\ndef Cube \"Box\" { double size = 2\n}\n");
    session.lookPerspective(10.0);
    const Picture linear = session.render("linearDepth");
    // The front face lies at z = 1, 9 from the camera, in the middle and 11 pixels from there alike.
    EXPECT_NEAR(linear.number(100, 100), 9.0f, 1e-4f);
    EXPECT_NEAR(linear.number(111, 95), 9.0f, 1e-4f);
    EXPECT_TRUE(std::isinf(linear.number(2, 2)));
    // far / (far - near) * (1 - near / depth) with near 1 and far 100.
    const Picture depth = session.render("depth");
    EXPECT_NEAR(depth.number(100, 100), 100.0 / 99.0 * (1.0 - 1.0 / 9.0), 1e-5);
    EXPECT_EQ(depth.number(2, 2), 1.0f);
}

TEST_P(EveryDrawingRenderer, MeasuresOrthographicDepthLinearlyBetweenThePlanes)
{
    ContractSession session(GetParam(), "#usda 1.0\ndef Cube \"Box\" { double size = 2\n}\n");
    session.lookOrthographic(4.0);
    EXPECT_NEAR(session.render("linearDepth").number(100, 100), 9.0f, 1e-4f);
    EXPECT_NEAR(session.render("depth").number(100, 100), (9.0 - 1.0) / 99.0, 1e-5);
}

TEST_P(EveryDrawingRenderer, ShowsACubeOverTheHalfOfThePictureThatItsSizeIs)
{
    ContractSession session(GetParam(), "#usda 1.0\ndef Cube \"Box\" { double size = 2\n}\n");
    session.lookOrthographic(4.0);
    const Picture ids = session.render("primId");
    EXPECT_EQ(ids.id(49, 100), -1);
    EXPECT_GE(ids.id(50, 100), 0);
    EXPECT_GE(ids.id(149, 100), 0);
    EXPECT_EQ(ids.id(150, 100), -1);
    EXPECT_EQ(ids.id(100, 49), -1);
    EXPECT_GE(ids.id(100, 50), 0);
}

TEST_P(EveryDrawingRenderer, TurnsNormalsTowardsTheViewerInWorldAndEyeSpace)
{
    ContractSession session(GetParam(), kSphereScene);
    session.lookOrthographic(4.0);
    const Picture eye = session.render("Neye");
    const Picture world = session.render("normal");
    EXPECT_NEAR(eye.number(100, 100, 2), 1.0f, 1e-3f);
    // Half the radius to the right: x is 25.5 pixels of 50, and z the rest of the unit length.
    const double x = 25.5 / 50.0;
    EXPECT_NEAR(world.number(125, 100, 0), x, 0.01);
    EXPECT_NEAR(world.number(125, 100, 2), std::sqrt(1.0 - x * x), 0.01);
    EXPECT_EQ(world.number(2, 2, 0), 0.0f);
}

TEST_P(EveryDrawingRenderer, GivesEachPrimAndEachFaceANumberOfItsOwn)
{
    ContractSession session(GetParam(), R"(#usda 1.0
def Sphere "Left" { double radius = 0.5
    double3 xformOp:translate = (-1, 0, 0)
    uniform token[] xformOpOrder = ["xformOp:translate"]
}
def Mesh "Right" {
    uniform token subdivisionScheme = "none"
    int[] faceVertexCounts = [4, 4]
    int[] faceVertexIndices = [0, 1, 4, 3, 1, 2, 5, 4]
    point3f[] points = [(0.5, -1, 0), (1, -1, 0), (1.5, -1, 0), (0.5, 1, 0), (1, 1, 0), (1.5, 1, 0)]
}
)");
    session.lookOrthographic(4.0);
    const Picture ids = session.render("primId");
    // x = -1 is pixel 50, x = 0.75 pixel 137, x = 1.25 pixel 162.
    EXPECT_NE(ids.id(50, 100), ids.id(137, 100));
    EXPECT_EQ(ids.id(137, 100), ids.id(162, 100));
    const Picture elements = session.render("elementId");
    EXPECT_EQ(elements.id(137, 100), 0);
    EXPECT_EQ(elements.id(162, 100), 1);
    EXPECT_EQ(elements.id(100, 5), -1);
    EXPECT_EQ(session.render("instanceId").id(50, 100), -1);
}

TEST_P(EveryDrawingRenderer, LeavesOutTheFacesThatAreHoles)
{
    ContractSession session(GetParam(), R"(#usda 1.0
def Mesh "Sheet" {
    uniform token subdivisionScheme = "none"
    int[] faceVertexCounts = [4, 4]
    int[] faceVertexIndices = [0, 1, 4, 3, 1, 2, 5, 4]
    int[] holeIndices = [0]
    point3f[] points = [(-1, -1, 0), (0, -1, 0), (1, -1, 0), (-1, 1, 0), (0, 1, 0), (1, 1, 0)]
}
)");
    session.lookOrthographic(4.0);
    const Picture elements = session.render("elementId");
    EXPECT_EQ(elements.id(75, 100), -1);
    EXPECT_EQ(elements.id(125, 100), 1);
}

} // namespace
} // namespace vesk::tests::contract
