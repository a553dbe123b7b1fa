#include "contract_session.h"
#include "stage_edits.h"

#include <pxr/base/gf/vec3d.h>
#include <pxr/base/vt/array.h>
#include <pxr/usd/usd/attribute.h>
#include <tests/support/log_capture.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::tests::contract {
namespace {

constexpr const char* kTwoBalls = R"(#usda 1.0
def Sphere "A" { double radius = 0.5
    color3f[] primvars:displayColor = [(1, 0, 0)]
    double3 xformOp:translate = (-1, 0, 0)
    uniform token[] xformOpOrder = ["xformOp:translate"]
}
def Sphere "B" { double radius = 0.5
    double3 xformOp:translate = (1, 0, 0)
    uniform token[] xformOpOrder = ["xformOp:translate"]
}
)";

TEST_P(EveryDrawingRenderer, ShowsAPrimWhereItWasMovedTo)
{
    ContractSession session(GetParam(), kTwoBalls);
    session.lookOrthographic(4.0);
    EXPECT_EQ(session.render("primId").id(100, 100), -1);
    setValue(session, "/A", "xformOp:translate", GfVec3d(0.0, 0.0, 0.0));
    const Picture moved = session.render("primId");
    EXPECT_GE(moved.id(100, 100), 0);
    EXPECT_EQ(moved.id(50, 100), -1);
    EXPECT_GE(moved.id(150, 100), 0);
}

TEST_P(EveryDrawingRenderer, ShowsAnEditedShapeAndAnEditedColour)
{
    ContractSession session(GetParam(), kTwoBalls);
    session.lookOrthographic(4.0);
    session.useAmbientLightOnly();
    EXPECT_EQ(session.render("color").byte(50, 100, 0), 255);
    setValue(session, "/A", "primvars:displayColor", VtVec3fArray{GfVec3f(0.0f, 1.0f, 0.0f)});
    const Picture green = session.render("color");
    EXPECT_EQ(green.byte(50, 100, 0), 0);
    EXPECT_EQ(green.byte(50, 100, 1), 255);
    setValue(session, "/A", "radius", 0.1);
    EXPECT_EQ(session.render("color").byte(40, 100, 1), 0); // 10 pixels from the middle of a radius of 5
}

TEST_P(EveryDrawingRenderer, ForgetsAPrimThatWasRemovedAndFindsItAgainAfterUndo)
{
    ContractSession session(GetParam(), kTwoBalls);
    session.lookOrthographic(4.0);
    EXPECT_TRUE(session.renderer->singlePointPicking(50, 100, 0).get().hit);
    session.document->edit("remove", [](const auto& c) { return c.stage()->RemovePrim(SdfPath("/A")); })
        .get();
    session.document->waitUntilIdle();
    EXPECT_FALSE(session.renderer->singlePointPicking(50, 100, 0).get().hit);
    session.document->undo().get();
    session.document->waitUntilIdle();
    EXPECT_EQ(session.renderer->singlePointPicking(50, 100, 0).get().primPath, "/A");
}

TEST_P(EveryDrawingRenderer, AsksTheDocumentOnlyWhenSomethingChanged)
{
    ContractSession session(GetParam(), kTwoBalls, 16, 8, true);
    session.lookOrthographic(4.0);
    session.render("primId");
    session.lookOrthographic(3.0);
    const auto frame = session.renderer->renderFrame({});
    EXPECT_EQ(session.document->pendingTaskCount(), 0u); // a camera of the host needs nothing of the stage
    EXPECT_TRUE(frame.get().converged);
}

struct BrokenMesh
{
    const char* body;
    const char* warning;
};

TEST_P(EveryDrawingRenderer, LeavesOutAMeshThatIsBrokenWithOneWarningAndDrawsTheRest)
{
    const std::vector<BrokenMesh> cases = {
        {"int[] faceVertexCounts = [3]\n int[] faceVertexIndices = [0, 1, 7]\n point3f[] points = [(0,0,0), "
         "(1,0,0)]",
         "has a face vertex index out of range"},
        {"int[] faceVertexCounts = [3]\n int[] faceVertexIndices = [0, 1, -1]\n point3f[] points = [(0,0,0), "
         "(1,0,0)]",
         "has a face vertex index out of range"},
        {"int[] faceVertexCounts = [4]\n int[] faceVertexIndices = [0, 1, 1]\n point3f[] points = [(0,0,0), "
         "(1,0,0)]",
         "has face vertex counts that do not sum to the number of its face vertex indices"},
        {"int[] faceVertexCounts = [-3]\n int[] faceVertexIndices = [0, 1, 1]\n point3f[] points = [(0,0,0), "
         "(1,0,0)]",
         "has a face with a negative number of corners"},
        {"int[] faceVertexCounts = [3]\n int[] faceVertexIndices = [0, 1, 1]\n point3f[] points = [(0,0,0), "
         "(nan,0,0)]",
         "has a point that is not finite"}};
    for (const BrokenMesh& c : cases) {
        LogCapture log;
        ContractSession session(GetParam(), std::string("#usda 1.0\ndef Mesh \"Broken\" {\n") + c.body +
                                                "\n}\ndef Sphere \"Ball\" { double radius = 1\n}\n");
        session.lookOrthographic(4.0);
        EXPECT_EQ(session.renderer->singlePointPicking(100, 100, 0).get().primPath, "/Ball");
        EXPECT_EQ(session.renderer->singlePointPicking(101, 100, 0).get().primPath, "/Ball");
        EXPECT_EQ(log.takeTexts(),
                  (std::vector<std::string>{std::string("Prim /Broken ") + c.warning + " and is not drawn"}));
    }
}

TEST_P(EveryDrawingRenderer, DrawsPrimsThatLieFarFromTheOriginWithoutLosingTheirShape)
{
    ContractSession session(GetParam(), R"(#usda 1.0
def Sphere "Ball" { double radius = 1
    double3 xformOp:translate = (1e7, 0, 0)
    uniform token[] xformOpOrder = ["xformOp:translate"]
}
)");
    GfCamera camera = makeOrthographicCamera(4.0, 1.0, 10.0);
    camera.SetTransform(GfMatrix4d(1.0).SetTranslate(GfVec3d(1e7, 0.0, 10.0)));
    session.renderer->setCamera(camera);
    const Picture ids = session.render("primId");
    EXPECT_EQ(ids.id(49, 100), -1);
    EXPECT_GE(ids.id(51, 100), 0);
    EXPECT_GE(ids.id(148, 100), 0);
    EXPECT_EQ(ids.id(150, 100), -1);
    EXPECT_NEAR(session.renderer->singlePointPicking(100, 100, 0).get().point[0], 1e7, 0.02);
}

TEST_P(EveryDrawingRenderer, ShowsNothingOfAPrimThatIsScaledToNothing)
{
    ContractSession session(GetParam(), R"(#usda 1.0
def Sphere "Flat" { double radius = 1
    double3 xformOp:scale = (1, 1, 0)
    uniform token[] xformOpOrder = ["xformOp:scale"]
}
)");
    session.lookOrthographic(4.0);
    EXPECT_FALSE(session.renderer->singlePointPicking(100, 100, 0).get().hit);
}

} // namespace
} // namespace vesk::tests::contract
