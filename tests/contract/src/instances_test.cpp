#include "contract_session.h"
#include "stage_edits.h"

#include <pxr/base/gf/vec3f.h>
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>
#include <pxr/usd/usd/attribute.h>
#include <tests/support/log_capture.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::tests::contract {
namespace {

// 200 pixels show 4 units: x = -1 is pixel 50, 0 is 100, 1 is 150.
constexpr const char* kInstancer = R"(#usda 1.0
def PointInstancer "Row" {
    point3f[] positions = [(-1, 0, 0), (0, 0, 0), (1, 0, 0)]
    int[] protoIndices = [0, 1, 0]
    rel prototypes = [</Row/Protos/Ball>, </Row/Protos/Box>]
    def Scope "Protos" {
        def Sphere "Ball" { double radius = 0.25
        }
        def Xform "Box" {
            double3 xformOp:translate = (0, 1, 0)
            uniform token[] xformOpOrder = ["xformOp:translate"]
            def Cube "Shape" { double size = 0.5
            }
        }
    }
}
)";

PickingResult pick(ContractSession& session, float x, float y)
{
    return session.renderer->singlePointPicking(x, y, 0.0f).get();
}

TEST_P(EveryDrawingRenderer, PicksACopyOfAPointInstancerByItsNumberAndItsPrototype)
{
    ContractSession session(GetParam(), kInstancer);
    session.lookOrthographic(4.0);
    for (const auto& [x, index] : {std::pair(50.0f, 0), std::pair(150.0f, 2)}) {
        const PickingResult ball = pick(session, x, 100.0f);
        ASSERT_TRUE(ball.hit) << x;
        EXPECT_EQ(ball.primPath, "/Row/Protos/Ball");
        EXPECT_EQ(ball.secondaryPath, "/Row");
        EXPECT_EQ(ball.instanceIndex, index);
        EXPECT_EQ(ball.tertiaryPath, "/Row/Protos/Ball");
    }
}

TEST_P(EveryDrawingRenderer, PlacesACopyByItsPrototypesOwnTransformToo)
{
    ContractSession session(GetParam(), kInstancer);
    session.lookOrthographic(4.0);
    EXPECT_FALSE(pick(session, 100.0f, 100.0f).hit); // the box stands one unit, 50 pixels, above its point
    const PickingResult box = pick(session, 100.0f, 50.0f);
    ASSERT_TRUE(box.hit);
    EXPECT_EQ(box.primPath, "/Row/Protos/Box/Shape");
    EXPECT_EQ(box.instanceIndex, 1);
}

TEST_P(EveryDrawingRenderer, LeavesOutInvisibleAndInactiveCopiesAndKeepsTheOthersNumbers)
{
    ContractSession session(GetParam(), R"(#usda 1.0
def PointInstancer "Row" (
    inactiveIds = [30]
) {
    point3f[] positions = [(-1, 0, 0), (0, 0, 0), (1, 0, 0), (0, 1, 0)]
    int[] protoIndices = [0, 0, 0, 0]
    int64[] ids = [10, 20, 30, 40]
    int64[] invisibleIds = [10]
    rel prototypes = </Row/Ball>
    def Sphere "Ball" { double radius = 0.25
    }
}
)");
    session.lookOrthographic(4.0);
    EXPECT_FALSE(pick(session, 50.0f, 100.0f).hit);
    EXPECT_EQ(pick(session, 100.0f, 100.0f).instanceIndex, 1);
    EXPECT_FALSE(pick(session, 150.0f, 100.0f).hit);
    EXPECT_EQ(pick(session, 100.0f, 50.0f).instanceIndex, 3);
}

// The bar is 1 long along x; turned by 90 degrees about z and doubled it reaches 1 up and down.
TEST_P(EveryDrawingRenderer, TurnsAndScalesCopies)
{
    ContractSession session(GetParam(), R"(#usda 1.0
def PointInstancer "One" {
    point3f[] positions = [(0, 0, 0)]
    int[] protoIndices = [0]
    quath[] orientations = [(0.7071, 0, 0, 0.7071)]
    float3[] scales = [(2, 2, 2)]
    rel prototypes = </One/Bar>
    def Mesh "Bar" {
        uniform token subdivisionScheme = "none"
        int[] faceVertexCounts = [4]
        int[] faceVertexIndices = [0, 1, 2, 3]
        point3f[] points = [(-0.5, -0.1, 0), (0.5, -0.1, 0), (0.5, 0.1, 0), (-0.5, 0.1, 0)]
    }
}
)");
    session.lookOrthographic(4.0);
    EXPECT_TRUE(pick(session, 100.0f, 52.0f).hit);
    EXPECT_FALSE(pick(session, 100.0f, 48.0f).hit);
    EXPECT_TRUE(pick(session, 109.0f, 100.0f).hit);
    EXPECT_FALSE(pick(session, 112.0f, 100.0f).hit);
}

constexpr const char* kNested = R"(#usda 1.0
class Xform "_Pair" {
    def PointInstancer "Inner" {
        point3f[] positions = [(-0.5, 0, 0), (0.5, 0, 0)]
        int[] protoIndices = [0, 0]
        rel prototypes = <Ball>
        def Sphere "Ball" { double radius = 0.25
        }
    }
}
def PointInstancer "Outer" {
    point3f[] positions = [(0, 1, 0), (0, -1, 0)]
    int[] protoIndices = [0, 0]
    rel prototypes = </Outer/Pair>
    def Xform "Pair" ( inherits = </_Pair> ) {
    }
}
def Xform "Copy" ( inherits = </_Pair>; instanceable = true ) {
}
)";

TEST_P(EveryDrawingRenderer, NamesTheOutermostInstancerOfNestedOnes)
{
    ContractSession session(GetParam(), kNested);
    session.lookOrthographic(4.0);
    const PickingResult result = pick(session, 125.0f, 150.0f);
    ASSERT_TRUE(result.hit);
    EXPECT_EQ(result.primPath, "/Outer/Pair/Inner/Ball");
    EXPECT_EQ(result.secondaryPath, "/Outer");
    EXPECT_EQ(result.instanceIndex, 1);
}

TEST_P(EveryDrawingRenderer, NamesTheNativeInstanceThatHoldsAnInstancer)
{
    ContractSession session(GetParam(), kNested);
    session.lookOrthographic(4.0);
    const PickingResult result = pick(session, 75.0f, 100.0f);
    ASSERT_TRUE(result.hit);
    EXPECT_EQ(result.primPath, "/Copy/Inner/Ball");
    EXPECT_EQ(result.secondaryPath, "/Copy");
    EXPECT_EQ(result.instanceIndex, 0);
    EXPECT_EQ(result.tertiaryPath.substr(result.tertiaryPath.rfind("/Inner")), "/Inner/Ball");
}

TEST_P(EveryDrawingRenderer, ShowsAnEditedPrototypeInAllItsCopiesAndEditedPositions)
{
    ContractSession session(GetParam(), kInstancer);
    session.lookOrthographic(4.0);
    ASSERT_FALSE(pick(session, 70.0f, 100.0f).hit);
    setValue(session, "/Row/Protos/Ball", "radius", 0.45);
    EXPECT_EQ(pick(session, 70.0f, 100.0f).instanceIndex, 0);
    EXPECT_EQ(pick(session, 130.0f, 100.0f).instanceIndex, 2);
    setValue(session, "/Row", "positions",
             VtVec3fArray{GfVec3f(0, 0, 0), GfVec3f(0, 5, 0), GfVec3f(0, -5, 0)});
    EXPECT_EQ(pick(session, 100.0f, 100.0f).instanceIndex, 0);
    EXPECT_FALSE(pick(session, 150.0f, 100.0f).hit);
}

TEST_P(EveryDrawingRenderer, NumbersTheCopiesOfAnInstancerInTheInstanceOutput)
{
    ContractSession session(GetParam(), kInstancer);
    session.lookOrthographic(4.0);
    const Picture numbers = session.render("instanceId");
    EXPECT_EQ(numbers.id(50, 100), 0);
    EXPECT_EQ(numbers.id(100, 50), 1);
    EXPECT_EQ(numbers.id(150, 100), 2);
    const Picture prims = session.render("primId");
    EXPECT_EQ(prims.id(50, 100), prims.id(150, 100)); // copies of one prim
    EXPECT_NE(prims.id(50, 100), prims.id(100, 50));
}

TEST_P(EveryDrawingRenderer, LeavesOutABrokenInstancerWithOneWarning)
{
    const std::vector<std::pair<const char*, const char*>> cases = {
        {"int[] protoIndices = [1]\n point3f[] positions = [(0, 0, 0)]",
         "Instancer /Row has a prototype index out of range and is not drawn"},
        {"int[] protoIndices = [-1]\n point3f[] positions = [(0, 0, 0)]",
         "Instancer /Row has a prototype index out of range and is not drawn"},
        {"int[] protoIndices = [0, 0]\n point3f[] positions = [(0, 0, 0)]",
         "Instancer /Row has not as many positions as prototype indices and is not drawn"}};
    for (const auto& [body, warning] : cases) {
        LogCapture log;
        ContractSession session(GetParam(), std::string("#usda 1.0\ndef PointInstancer \"Row\" {\n") + body +
                                                "\n rel prototypes = </Row/Ball>\n"
                                                "def Sphere \"Ball\" {\n}\n}\n");
        session.lookOrthographic(4.0);
        EXPECT_FALSE(pick(session, 100.0f, 100.0f).hit);
        EXPECT_EQ(log.takeTexts(), std::vector<std::string>{warning});
    }
}

TEST_P(EveryDrawingRenderer, EndsWhereAnInstancerIsItsOwnPrototype)
{
    LogCapture log;
    ContractSession session(GetParam(), R"(#usda 1.0
def Xform "Loop" {
    def PointInstancer "Row" {
        point3f[] positions = [(0, 0, 0)]
        int[] protoIndices = [0]
        rel prototypes = </Loop>
    }
    def Sphere "Ball" { double radius = 1
    }
}
)");
    session.lookOrthographic(4.0);
    EXPECT_TRUE(pick(session, 100.0f, 100.0f).hit);
    EXPECT_EQ(log.takeTexts(),
              std::vector<std::string>{"Prototype /Loop holds itself and is not drawn there"});
}

} // namespace
} // namespace vesk::tests::contract
