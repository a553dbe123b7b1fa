#include "camera_check.h"
#include "stage_check.h"

#include <pxr/usd/usdGeom/tokens.h>
#include <vesk/usd/utils/bounds_utils.h>
#include <vesk/usd/utils/utils_error.h>

using namespace vesk::usd::utils;
using namespace vesk::usd::utils::tests;
using vesk::base::error_handling::makeErrorCode;
PXR_NAMESPACE_USING_DIRECTIVE

namespace {

const char* const kScene = R"(
def Xform "World"
{
    def Cube "Box"
    {
        double size = 2
        double3 xformOp:translate = (5, 0, 0)
        uniform token[] xformOpOrder = ["xformOp:translate"]
    }

    def Cube "Render"
    {
        double size = 20
        uniform token purpose = "render"
    }

    def Cube "Proxy"
    {
        double size = 40
        uniform token purpose = "proxy"
    }

    def Cube "Hidden"
    {
        double size = 1000
        token visibility = "invisible"
    }
}
)";

GfRange3f cubeAround(const GfVec3f& centre, float half)
{
    return GfRange3f(centre - GfVec3f(half), centre + GfVec3f(half));
}

GfRange3f sceneBounds(const UsdStageRefPtr& stage, bool proxy = false,
                      UsdTimeCode time = UsdTimeCode::Default())
{
    return computeAlignedGeometryBounds(stage, SdfPath::AbsoluteRootPath(), time, proxy, nullptr).takeValue();
}

TEST(SceneBounds, CountDefaultAndRenderGeometry)
{
    EXPECT_EQ(sceneBounds(stageFrom(kScene)), cubeAround(GfVec3f(0), 10));
}

TEST(SceneBounds, CountDefaultAndProxyGeometryWithTheFlag)
{
    EXPECT_EQ(sceneBounds(stageFrom(kScene), true), cubeAround(GfVec3f(0), 20));
}

TEST(SceneBounds, OfAPrimAreItsOwn)
{
    EXPECT_EQ(computeAlignedGeometryBounds(stageFrom(kScene), SdfPath("/World/Box"), UsdTimeCode::Default(),
                                           false, nullptr)
                  .takeValue(),
              cubeAround(GfVec3f(5, 0, 0), 1));
}

TEST(SceneBounds, OfNothingAreEmpty)
{
    EXPECT_TRUE(sceneBounds(stageFrom("def Xform \"World\"\n{\n}\n")).IsEmpty());
}

TEST(SceneBounds, FollowTheTime)
{
    const UsdStageRefPtr stage = stageFrom(R"(
def Cube "Box"
{
    double size = 2
    double3 xformOp:translate.timeSamples = { 0: (0, 0, 0), 10: (10, 0, 0) }
    uniform token[] xformOpOrder = ["xformOp:translate"]
}
)");
    EXPECT_EQ(sceneBounds(stage, false, UsdTimeCode(5)), cubeAround(GfVec3f(5, 0, 0), 1));
}

TEST(SceneBounds, SetTimeAndPurposesOfASharedCache)
{
    const UsdStageRefPtr stage = stageFrom(kScene);
    UsdGeomBBoxCache cache(UsdTimeCode(99), {UsdGeomTokens->guide});
    const auto bounds = [&](bool proxy) {
        return computeAlignedGeometryBounds(stage, SdfPath::AbsoluteRootPath(), UsdTimeCode(3), proxy, &cache)
            .takeValue();
    };
    EXPECT_EQ(bounds(false), cubeAround(GfVec3f(0), 10));
    EXPECT_EQ(bounds(true), cubeAround(GfVec3f(0), 20));
    EXPECT_EQ(bounds(false), cubeAround(GfVec3f(0), 10));
    EXPECT_EQ(cache.GetTime(), UsdTimeCode(3));
}

TEST(SceneBounds, OfASharedCacheAreThoseOfAFreshOneAtEveryTime)
{
    const UsdStageRefPtr stage = stageFrom(R"(
def Cube "Box"
{
    double size.timeSamples = { 0: 2, 10: 6 }
}
)");
    UsdGeomBBoxCache cache(UsdTimeCode::Default(), {UsdGeomTokens->default_});
    for (const double time : {0.0, 10.0, 0.0, 5.0}) {
        const GfRange3f shared =
            computeAlignedGeometryBounds(stage, SdfPath::AbsoluteRootPath(), UsdTimeCode(time), false, &cache)
                .takeValue();
        EXPECT_EQ(shared, sceneBounds(stage, false, UsdTimeCode(time))) << time;
    }
}

TEST(SceneBounds, AreAnErrorWithoutAStage)
{
    EXPECT_EQ(computeAlignedGeometryBounds(UsdStageRefPtr(), SdfPath::AbsoluteRootPath(),
                                           UsdTimeCode::Default(), false, nullptr)
                  .code(),
              makeErrorCode(UtilsError::InvalidStage));
}

TEST(SceneBounds, AreAnErrorWithoutThePrim)
{
    for (const SdfPath& path : {SdfPath("/Nowhere"), SdfPath("/World.visibility"), SdfPath()})
        EXPECT_EQ(
            computeAlignedGeometryBounds(stageFrom(kScene), path, UsdTimeCode::Default(), false, nullptr)
                .code(),
            makeErrorCode(UtilsError::InvalidPrim));
}

TEST(SceneBounds, LeaveOutAPrimWhoseBoxIsNotFinite)
{
    const UsdStageRefPtr stage = stageFrom(R"(
def Xform "World"
{
    def Cube "Good"
    {
        double size = 2
    }

    def Cube "Infinite"
    {
        double size = inf
    }

    def Cube "Lost"
    {
        double3 xformOp:translate = (nan, 0, 0)
        uniform token[] xformOpOrder = ["xformOp:translate"]
    }
}
)");
    EXPECT_EQ(sceneBounds(stage), cubeAround(GfVec3f(0), 1));
}

TEST(SceneBounds, CountTheFinitePointsOfAMesh)
{
    const UsdStageRefPtr stage = stageFrom(R"(
def Mesh "Mesh"
{
    int[] faceVertexCounts = [4]
    int[] faceVertexIndices = [0, 1, 2, 3]
    point3f[] points = [(0, 0, 0), (1, 2, 3), (inf, 0, 0), (0, nan, 0)]
    double3 xformOp:translate = (10, 0, 0)
    uniform token[] xformOpOrder = ["xformOp:translate"]
}
)");
    EXPECT_EQ(sceneBounds(stage), GfRange3f(GfVec3f(10, 0, 0), GfVec3f(11, 2, 3)));
}

TEST(SceneBounds, LeaveOutHiddenPrimsWhileLookingForFiniteOnes)
{
    const UsdStageRefPtr stage = stageFrom(R"(
def Xform "World"
{
    def Cube "Infinite"
    {
        double size = inf
    }

    def Xform "Group"
    {
        token visibility = "invisible"

        def Cube "Hidden"
        {
            double size = 100
        }
    }

    def Cube "Good"
    {
        double size = 2
    }
}
)");
    EXPECT_EQ(sceneBounds(stage), cubeAround(GfVec3f(0), 1));
}

TEST(SceneBounds, AreCutToWhatAFloatCanSquare)
{
    const GfRange3f bounds = sceneBounds(stageFrom("def Cube \"Huge\"\n{\n    double size = 1e30\n}\n"));
    EXPECT_EQ(bounds, cubeAround(GfVec3f(0), 1e19f));
}

TEST(SubSceneBounds, AreThoseOfAllPathsTogether)
{
    const UsdStageRefPtr stage = stageFrom(kScene);
    EXPECT_EQ(getSubSceneBounds(stage, {SdfPath("/World/Box"), SdfPath("/World/Render")}, false, nullptr),
              cubeAround(GfVec3f(0), 10));
    EXPECT_EQ(getSubSceneBounds(stage, {SdfPath("/World/Box")}, false, nullptr),
              cubeAround(GfVec3f(5, 0, 0), 1));
}

TEST(SubSceneBounds, LeaveOutPathsWithoutAPrim)
{
    EXPECT_EQ(
        getSubSceneBounds(stageFrom(kScene),
                          {SdfPath(), SdfPath("relative"), SdfPath("/Nowhere"), SdfPath("/World/Box.size")},
                          false, nullptr),
        cubeAround(GfVec3f(5, 0, 0), 1));
}

TEST(SubSceneBounds, OfNoPathAreEmpty)
{
    EXPECT_TRUE(getSubSceneBounds(stageFrom(kScene), {}, false, nullptr).IsEmpty());
    EXPECT_TRUE(getSubSceneBounds(UsdStageRefPtr(), {SdfPath("/World")}, false, nullptr).IsEmpty());
}

TEST(SubSceneBounds, TakeTheTimeOfTheCache)
{
    const UsdStageRefPtr stage = stageFrom(R"(
def Cube "Box"
{
    double size.timeSamples = { 0: 2, 10: 4 }
}
)");
    UsdGeomBBoxCache cache(UsdTimeCode(10), {UsdGeomTokens->default_});
    EXPECT_EQ(getSubSceneBounds(stage, {SdfPath("/Box")}, false, &cache), cubeAround(GfVec3f(0), 2));
}

} // namespace
