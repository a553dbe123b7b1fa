#include "embree_pictures.h"

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::tests::contract {
namespace {

// A red cube from -1 to 1 as a component, drawn as a mode says. 200 pixels show 4 units.
std::string model(const std::string& opinions, const std::string& group = {})
{
    return "def Xform \"World\" ( kind = \"group\"\n prepend apiSchemas = [\"GeomModelAPI\"] ) {\n" + group +
           R"(
    def Xform "Model" ( kind = "component"
        prepend apiSchemas = ["GeomModelAPI"] ) {
)" + opinions +
           R"(
        def Cube "Cube" { color3f[] primvars:displayColor = [(1, 0, 0)]
        }
    }
}
)";
}

TEST(EmbreeModels, DrawsTheCardsOfAModelWithItsPictures)
{
    const TemporaryFolder folder;
    const std::string picture =
        writePng(folder, "z.png", 2, 1, [](int x, int) { return x == 0 ? kGreen : kBlue; });
    const std::string opinions = "uniform token model:drawMode = \"cards\"\n"
                                 "asset model:cardTextureZPos = @" +
                                 picture + "@\n";
    const Picture p = ambientPicture(model(opinions));
    EXPECT_EQ(pixelOf(p, 60, 100), kGreen);
    EXPECT_EQ(pixelOf(p, 140, 100), kBlue);
    EXPECT_EQ(pixelOf(p, 30, 100), kBlack); // beside the card
}

TEST(EmbreeModels, CutsOutWhatACardsPictureLeavesEmpty)
{
    const TemporaryFolder folder;
    const std::string picture = writePng(folder, "z.png", 2, 1, [](int x, int) {
        return x == 0 ? kGreen : Pixel{255, 255, 255, 0};
    });
    const Picture p = ambientPicture(model("uniform token model:drawMode = \"cards\"\n"
                                           "asset model:cardTextureZPos = @" +
                                           picture + "@\n"));
    EXPECT_EQ(pixelOf(p, 60, 100), kGreen);
    EXPECT_EQ(pixelOf(p, 140, 100), kBlack);
}

// Cards cross in the model's middle or lie on its box; the camera stands at 10.
TEST(EmbreeModels, PutsCardsWhereTheirGeometrySays)
{
    for (const auto& [geometry, depth] : {std::pair("cross", 10.0), std::pair("box", 9.0)}) {
        ContractSession session(
            "embree", "#usda 1.0\n" + model(std::string("uniform token model:drawMode = \"cards\"\n"
                                                        "uniform token model:cardGeometry = \"") +
                                            geometry + "\"\n color3f model:drawModeColor = (0, 0, 1)\n"));
        session.lookOrthographic(4.0);
        session.useAmbientLightOnly();
        EXPECT_NEAR(session.render("linearDepth").number(110, 110), depth, 0.01) << geometry;
        EXPECT_EQ(pixelOf(session.render("color"), 110, 110), kBlue) << geometry;
    }
}

TEST(EmbreeModels, DrawsTheEdgesOfAModelsBox)
{
    const Picture p = ambientPicture(
        model("uniform token model:drawMode = \"bounds\"\n color3f model:drawModeColor = (0, 1, 0)\n"));
    EXPECT_EQ(pixelOf(p, 100, 100), kBlack);
    EXPECT_EQ(pixelOf(p, 100, 50), kGreen);
    EXPECT_EQ(pixelOf(p, 50, 100), kGreen);
    EXPECT_EQ(pixelOf(p, 150, 120), kGreen);
}

TEST(EmbreeModels, DrawsTheAxesOfAModelsSpace)
{
    const Picture p = ambientPicture(
        model("uniform token model:drawMode = \"origin\"\n color3f model:drawModeColor = (0, 1, 0)\n"), 2.5,
        16);
    // Lines as thin as a pixel: their share of it shows.
    EXPECT_GT(p.byte(140, 99, 1) + p.byte(140, 100, 1), 60);
    EXPECT_GT(p.byte(99, 60, 1) + p.byte(100, 60, 1), 60);
    EXPECT_EQ(pixelOf(p, 60, 100), kBlack);
    EXPECT_EQ(pixelOf(p, 100, 140), kBlack);
}

TEST(EmbreeModels, InheritsAModeAndAppliesItToComponentsAndWhereItIsTold)
{
    const std::string bounds = "uniform token model:drawMode = \"bounds\"\n";
    EXPECT_EQ(pixelOf(ambientPicture(model("", bounds)), 100, 100), kBlack);
    EXPECT_EQ(pixelOf(ambientPicture(model("uniform bool model:applyDrawMode = false\n", bounds)), 100, 100),
              kRed);
    EXPECT_EQ(
        pixelOf(ambientPicture(model("uniform token model:drawMode = \"default\"\n", bounds)), 100, 100),
        kRed);
    // A group is drawn as it is unless it says so itself.
    EXPECT_EQ(pixelOf(ambientPicture(model("uniform token model:drawMode = \"default\"\n",
                                           bounds + "uniform bool model:applyDrawMode = true\n")),
                      100, 100),
              kBlack);
}

TEST(EmbreeModels, ShowsAModelAgainWhoseModeWasEdited)
{
    ContractSession session("embree", "#usda 1.0\n" + model("uniform token model:drawMode = \"bounds\"\n"));
    session.lookOrthographic(4.0);
    session.useAmbientLightOnly();
    EXPECT_EQ(pixelOf(session.render("color"), 100, 100), kBlack);
    const auto set = [&session](const char* mode) {
        session.document
            ->edit("edit",
                   [mode](const auto& context) {
                       return context.stage()
                           ->GetPrimAtPath(SdfPath("/World/Model"))
                           .GetAttribute(TfToken("model:drawMode"))
                           .Set(TfToken(mode));
                   })
            .get();
        session.document->waitUntilIdle();
    };
    set("default");
    EXPECT_EQ(pixelOf(session.render("color"), 100, 100), kRed);
    set("bounds");
    EXPECT_EQ(pixelOf(session.render("color"), 100, 100), kBlack);
}

TEST(EmbreeModels, PicksAModelByItsCard)
{
    ContractSession session("embree", "#usda 1.0\n" + model("uniform token model:drawMode = \"cards\"\n"));
    session.lookOrthographic(4.0);
    const auto pick = session.renderer->singlePointPicking(110.5f, 110.5f, 0.0f);
    session.finish(pick);
    EXPECT_TRUE(pick.get().hit);
    EXPECT_EQ(pick.get().primPath, "/World/Model");
}

} // namespace
} // namespace vesk::tests::contract
