#include "contract_session.h"

#include <cmath>
#include <limits>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::tests::contract {
namespace {

constexpr const char* kPurposeScene = R"(#usda 1.0
def Plane "Render" { uniform token purpose = "render"
    color3f[] primvars:displayColor = [(1, 0, 0)]
}
def Plane "Proxy" { uniform token purpose = "proxy"
    color3f[] primvars:displayColor = [(0, 1, 0)]
}
def Plane "Guide" { uniform token purpose = "guide"
    color3f[] primvars:displayColor = [(0, 0, 1)]
    double3 xformOp:translate = (0, 0, 1)
    uniform token[] xformOpOrder = ["xformOp:translate"]
}
)";

TEST_P(EveryDrawingRenderer, DrawsRenderGeometryOrProxyGeometryAndNeverGuides)
{
    ContractSession session(GetParam(), kPurposeScene);
    session.lookOrthographic(4.0);
    session.useAmbientLightOnly();
    EXPECT_EQ(session.render("color").byte(100, 100, 0), 255);
    session.renderer->setRenderProxyGeometry(true);
    const Picture p = session.render("color");
    EXPECT_EQ(p.byte(100, 100, 0), 0);
    EXPECT_EQ(p.byte(100, 100, 1), 255);
}

TEST_P(EveryDrawingRenderer, ShowsVisibilityAndPlacesOfTheCurrentTime)
{
    ContractSession session(GetParam(), R"(#usda 1.0
def Sphere "Ball" { double radius = 0.5
    token visibility.timeSamples = { 0: "inherited", 10: "invisible" }
    double3 xformOp:translate.timeSamples = { 0: (-1, 0, 0), 4: (1, 0, 0) }
    uniform token[] xformOpOrder = ["xformOp:translate"]
}
)");
    session.lookOrthographic(4.0);
    session.renderer->setCurrentTime(0.0);
    EXPECT_GE(session.render("primId").id(50, 100), 0);
    session.renderer->setCurrentTime(2.0); // half way: the middle
    const Picture middle = session.render("primId");
    EXPECT_GE(middle.id(100, 100), 0);
    EXPECT_EQ(middle.id(50, 100), -1);
    session.renderer->setCurrentTime(10.0);
    const Picture gone = session.render("primId");
    EXPECT_EQ(gone.id(150, 100), -1);
}

TEST_P(EveryDrawingRenderer, DrawsOnlyInsideTheTiledWindow)
{
    ContractSession session(GetParam(), "#usda 1.0\ndef Cube \"Box\" { double size = 8\n}\n");
    session.lookOrthographic(4.0, 20.0);
    session.renderer->setTiledRenderWindow(GfVec4i(50, 20, 100, 40));
    const Picture ids = session.render("primId");
    EXPECT_GE(ids.id(50, 20), 0);
    EXPECT_GE(ids.id(149, 59), 0);
    EXPECT_EQ(ids.id(49, 20), -1);
    EXPECT_EQ(ids.id(150, 20), -1);
    EXPECT_EQ(ids.id(50, 60), -1);
    session.renderer->setTiledRenderWindow(GfVec4i(0, 0, 0, 0));
    EXPECT_GE(session.render("primId").id(0, 0), 0);
}

// A window of 4 x 4 units in a picture of 400 x 200 pixels: `fit` keeps the height (50 pixels a unit), `crop`
// the width (100 pixels a unit).
TEST_P(EveryDrawingRenderer, FitsTheCamerasWindowIntoThePictureAsThePolicySays)
{
    ContractSession session(GetParam(), "#usda 1.0\ndef Cube \"Box\" { double size = 2\n}\n", 400, 200);
    session.lookOrthographic(4.0);
    session.renderer->setCameraFitPolicy(CameraUtilFit);
    const Picture fit = session.render("primId");
    EXPECT_EQ(fit.id(149, 100), -1);
    EXPECT_GE(fit.id(150, 100), 0);
    session.renderer->setCameraFitPolicy(CameraUtilCrop);
    const Picture crop = session.render("primId");
    EXPECT_EQ(crop.id(99, 100), -1);
    EXPECT_GE(crop.id(100, 100), 0);
}

TEST_P(EveryDrawingRenderer, CutsAwayWhatLiesOutsideTheClippingRange)
{
    ContractSession session(GetParam(), kSphereScene);
    GfCamera camera = makeOrthographicCamera(4.0, 1.0, 10.0);
    camera.SetClippingRange(GfRange1f(9.5f, 100.0f)); // in front of z = 0.5 nothing is seen
    session.renderer->setCamera(camera);
    const Picture linear = session.render("linearDepth");
    EXPECT_NEAR(linear.number(100, 100), 11.0f, 0.01f); // the inside of the sphere's back
    camera.SetClippingRange(GfRange1f(1.0f, 8.0f));
    session.renderer->setCamera(camera);
    EXPECT_EQ(session.render("primId").id(100, 100), -1);
}

TEST_P(EveryDrawingRenderer, LooksThroughACameraOfTheStageAtTheCurrentTime)
{
    ContractSession session(GetParam(), R"(#usda 1.0
def Sphere "Ball" { double radius = 0.5
}
def Camera "Cam" {
    token projection = "orthographic"
    float horizontalAperture = 40
    float verticalAperture = 40
    float2 clippingRange = (1, 100)
    double3 xformOp:translate.timeSamples = { 0: (0, 0, 10), 2: (1, 0, 10) }
    uniform token[] xformOpOrder = ["xformOp:translate"]
}
)");
    session.renderer->setCamera(SdfPath("/Cam"));
    EXPECT_GE(session.render("primId").id(100, 100), 0);
    session.renderer->setCurrentTime(
        2.0); // the camera went one unit to the right: the ball is 50 pixels to the left
    const Picture moved = session.render("primId");
    EXPECT_EQ(moved.id(100, 100), -1);
    EXPECT_GE(moved.id(50, 100), 0);
}

TEST_P(EveryDrawingRenderer, DrawsOnlyTheEdgesOfFacesAsAWireframe)
{
    ContractSession session(GetParam(), kSheetScene);
    session.lookOrthographic(4.0);
    session.useAmbientLightOnly();
    session.renderer->setDrawMode(TfToken("wireframe"));
    const Picture p = session.render("color");
    EXPECT_GT(p.byte(100, 100, 0), 128); // the edge between the two faces
    EXPECT_EQ(p.byte(75, 100, 0), 0);    // inside a face, where its diagonal runs
    session.renderer->setDrawMode(TfToken("points"));
    const Picture points = session.render("color");
    EXPECT_EQ(points.byte(100, 100, 0), 0);
    EXPECT_GT(points.byte(100, 51, 0), 128); // the point (0, 1)
}

TEST_P(EveryDrawingRenderer, OutlinesSelectedPrimsJustOutsideTheirSilhouette)
{
    ContractSession session(GetParam(),
                            "#usda 1.0\ndef Xform \"G\" { def Cube \"Box\" { double size = 2\n}\n}\n");
    session.lookOrthographic(4.0);
    session.useAmbientLightOnly();
    session.renderer->setSelectionColor(GfVec4f(0.0f, 1.0f, 0.0f, 1.0f));
    session.renderer->setOutlineThickness(2.0f);
    session.renderer->setSelectionPaths({SdfPath("/G")});
    const Picture selected = session.render("color");
    EXPECT_EQ(selected.byte(48, 100, 1), 255);
    EXPECT_EQ(selected.byte(49, 100, 1), 255);
    EXPECT_EQ(selected.byte(47, 100, 1), 0);
    session.renderer->setRenderSelectionVisualization(false);
    EXPECT_EQ(session.render("color").byte(49, 100, 1), 0);
}

TEST_P(EveryDrawingRenderer, DrawsTheGridOfTheGroundUnlessItPresents)
{
    ContractSession session(GetParam(), "#usda 1.0\n( upAxis = \"Z\" )\n");
    session.lookOrthographic(4.0); // from above: the ground lies across the view
    session.renderer->setGridAboveColor(GfVec4f(1.0f));
    session.renderer->setGridEnabled(true);
    const auto brightest = [&session] {
        const Picture p = session.render("color");
        int most = 0;
        for (int x = 0; x < p.width(); ++x) {
            most = std::max(most, p.byte(x, 93, 0));
        }
        return most;
    };
    EXPECT_GT(brightest(), 60);
    session.renderer->setPresentationModeEnabled(true);
    EXPECT_EQ(brightest(), 0);
}

TEST_P(EveryDrawingRenderer, ShowsDepthAndNormalsInsteadOfTheColourInItsDebugModes)
{
    ContractSession session(GetParam(), kSphereScene);
    session.lookOrthographic(4.0);
    session.renderer->setPostProcessingDebugMode(TfToken("normal"));
    const Picture p = session.render("color");
    EXPECT_NEAR(p.byte(100, 100, 0), 128, 2); // a normal along +z is (0.5, 0.5, 1)
    EXPECT_NEAR(p.byte(100, 100, 2), 255, 1);
    session.renderer->setPostProcessingDebugMode(TfToken("depth"));
    const Picture depth = session.render("color");
    EXPECT_GT(depth.byte(100, 100, 0), depth.byte(145, 100, 0));
    session.renderer->setPostProcessingDebugMode(TfToken());
    EXPECT_NE(session.render("color").byte(100, 100, 2), 0);
}

TEST_P(EveryDrawingRenderer, ReportsASizeThatNoPictureCanHave)
{
    ContractSession session(GetParam(), kSphereScene);
    session.lookOrthographic(4.0);
    for (const auto& [width, height] :
         {std::pair(0, 10), std::pair(10, 0), std::pair(-1, 5), std::pair(100000, 2)}) {
        session.renderer->setRenderSize(width, height);
        EXPECT_EQ(errorOf(session.renderer->renderFrame({})),
                  "cannot render a picture of " + std::to_string(width) + "x" + std::to_string(height) +
                      " pixels; width and height must lie between 1 and 16384: Invalid argument");
        EXPECT_NE(errorOf(session.renderer->singlePointPicking(0, 0, 0)), "no error");
    }
    session.renderer->setRenderSize(8, 4);
    const auto result = session.renderer->renderFrame({}).get();
    EXPECT_EQ(result.size, GfVec2i(8, 4));
    EXPECT_TRUE(result.converged);
}

TEST_P(EveryDrawingRenderer, ReportsACameraThatHasNoView)
{
    ContractSession session(GetParam(), kSphereScene);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    GfCamera nowhere;
    nowhere.SetTransform(GfMatrix4d(1.0).SetTranslate(GfVec3d(nan, 0.0, 0.0)));
    GfCamera backwards;
    backwards.SetClippingRange(GfRange1f(10.0f, 1.0f));
    GfCamera flat;
    flat.SetHorizontalAperture(0.0f);
    flat.SetVerticalAperture(0.0f);
    for (const GfCamera& camera : {nowhere, backwards, flat}) {
        session.renderer->setCamera(camera);
        EXPECT_EQ(errorOf(session.renderer->renderFrame({})),
                  "the camera has no usable view; its transform and apertures must be finite and its near "
                  "plane must "
                  "lie before its far plane: Invalid argument");
        EXPECT_NE(errorOf(session.renderer->singlePointPicking(1, 1, 0)), "no error");
    }
    session.lookOrthographic(4.0);
    EXPECT_TRUE(session.renderer->renderFrame({}).get().converged);
}

TEST_P(EveryDrawingRenderer, KeepsTheLastGoodCameraWhenItsPathNamesNoneAnyMore)
{
    ContractSession session(GetParam(), kSphereScene);
    session.renderer->setCamera(SdfPath("/Missing"));
    EXPECT_EQ(errorOf(session.renderer->renderFrame({})),
              "there is no camera at '/Missing': Invalid argument");

    ContractSession followed(GetParam(),
                             "#usda 1.0\ndef Camera \"Cam\" { float2 clippingRange = (1, 100)\n}\n");
    followed.renderer->setCamera(SdfPath("/Cam"));
    EXPECT_TRUE(followed.renderer->renderFrame({}).get().converged);
    followed.document
        ->edit("delete", [](const auto& context) { context.stage()->RemovePrim(SdfPath("/Cam")); })
        .get();
    followed.document->waitUntilIdle();
    EXPECT_TRUE(followed.renderer->renderFrame({}).get().converged);
}

} // namespace
} // namespace vesk::tests::contract
