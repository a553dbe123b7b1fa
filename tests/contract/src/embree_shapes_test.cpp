#include "embree_pictures.h"

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::tests::contract {
namespace {

// 200 pixels show 4 units.
TEST(EmbreeShapes, BlendsTheColoursOfACurvesPoints)
{
    const Picture p = ambientPicture(R"(def BasisCurves "Line" {
    uniform token type = "linear"
    int[] curveVertexCounts = [2]
    point3f[] points = [(-1, 0, 0), (1, 0, 0)]
    float[] widths = [0.5] ( interpolation = "constant" )
    color3f[] primvars:displayColor = [(1, 0, 0), (0, 0, 1)] ( interpolation = "vertex" )
})");
    for (const int x : {60, 100, 140}) {
        const double share = (x + 0.5 - 50) / 100;
        EXPECT_NEAR(p.byte(x, 100, 0), 255 * (1 - share), 4) << x;
        EXPECT_NEAR(p.byte(x, 100, 2), 255 * share, 4) << x;
    }
}

// A varying value stands at each end of a cubic segment, whatever the number of its points.
TEST(EmbreeShapes, ReadsVaryingWidthsAndColoursOfCubicCurves)
{
    const Picture p = ambientPicture(R"(def BasisCurves "Arc" {
    uniform token type = "cubic"
    uniform token basis = "bezier"
    int[] curveVertexCounts = [4]
    point3f[] points = [(-1.5, 0, 0), (-0.5, 0, 0), (0.5, 0, 0), (1.5, 0, 0)]
    float[] widths = [0.2, 1] ( interpolation = "varying" )
    color3f[] primvars:displayColor = [(1, 0, 0), (0, 0, 1)] ( interpolation = "varying" )
})");
    // In the middle it is 0.6 wide: 30 pixels.
    EXPECT_GT(p.byte(100, 88, 0), 0);
    EXPECT_EQ(pixelOf(p, 100, 82), kBlack);
    EXPECT_NEAR(p.byte(100, 100, 0), 127, 5);
    EXPECT_NEAR(p.byte(100, 100, 2), 128, 5);
}

TEST(EmbreeShapes, ReachesTheEndsOfAPinnedCurve)
{
    const auto curve = [](const char* wrap) {
        return std::string("def BasisCurves \"Line\" { color3f[] primvars:displayColor = [(1, 0, 0)]\n"
                           "uniform token basis = \"bspline\"\nuniform token wrap = \"") +
               wrap + R"("
    int[] curveVertexCounts = [4]
    point3f[] points = [(-1.5, 0, 0), (-0.5, 0, 0), (0.5, 0, 0), (1.5, 0, 0)]
    float[] widths = [0.4] ( interpolation = "constant" )
})";
    };
    const Picture open = ambientPicture(curve("nonperiodic"));
    EXPECT_EQ(pixelOf(open, 100, 100), kRed);
    EXPECT_EQ(pixelOf(open, 35, 100), kBlack);
    const Picture pinned = ambientPicture(curve("pinned"));
    EXPECT_EQ(pixelOf(pinned, 35, 100), kRed);
    EXPECT_EQ(pixelOf(pinned, 165, 100), kRed);
}

// A Hermite segment from (-1, 0) to (1, 0) whose tangents are (0, 4) and (0, -4) rises to 1 in its middle.
TEST(EmbreeShapes, FollowsTheTangentsOfHermiteCurves)
{
    const Picture p =
        ambientPicture(R"(def HermiteCurves "Arc" { color3f[] primvars:displayColor = [(1, 0, 0)]
    int[] curveVertexCounts = [2]
    point3f[] points = [(-1, 0, 0), (1, 0, 0)]
    vector3f[] tangents = [(0, 4, 0), (0, -4, 0)]
    float[] widths = [0.2] ( interpolation = "constant" )
})");
    EXPECT_EQ(pixelOf(p, 100, 50), kRed);
    EXPECT_EQ(pixelOf(p, 100, 100), kBlack);
}

TEST(EmbreeShapes, DrawsTheSurfaceOfTetrahedra)
{
    const std::string tet = R"(def TetMesh "Tet" { color3f[] primvars:displayColor = [(1, 0, 0)]
    point3f[] points = [(-1, -1, 0), (1, -1, 0), (0, 1, 0), (0, 0, 1)]
    int4[] tetVertexIndices = [(0, 1, 2, 3)]
)";
    const Picture p = ambientPicture(tet + "}");
    EXPECT_EQ(pixelOf(p, 100, 100), kRed);
    EXPECT_EQ(pixelOf(p, 60, 60), kBlack);
    // An authored surface counts, even where it is only a part.
    const Picture part = ambientPicture(tet + "int3[] surfaceFaceVertexIndices = [(0, 1, 3)]\n}");
    EXPECT_EQ(pixelOf(part, 100, 130), kRed);
    EXPECT_EQ(pixelOf(part, 100, 70), kBlack);
}

TEST(EmbreeShapes, DrawsTheControlPointsOfAPatchAsAMesh)
{
    const Picture p = ambientPicture(R"(def NurbsPatch "Patch" { color3f[] primvars:displayColor = [(1, 0, 0)]
    int uVertexCount = 3
    int vVertexCount = 2
    int uOrder = 2
    int vOrder = 2
    double[] uKnots = [0, 0, 1, 2, 2]
    double[] vKnots = [0, 0, 1, 1]
    point3f[] points = [(-1, -1, 0), (0, -1, 0), (1, -1, 0), (-1, 1, 0), (0, 1, 0), (1, 1, 0)]
})");
    EXPECT_EQ(pixelOf(p, 60, 60), kRed);
    EXPECT_EQ(pixelOf(p, 140, 140), kRed);
    EXPECT_EQ(pixelOf(p, 30, 100), kBlack);
}

} // namespace
} // namespace vesk::tests::contract
