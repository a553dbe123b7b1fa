#include "scene.h"

#include <pxr/base/gf/interval.h>
#include <pxr/base/gf/vec2d.h>
#include <pxr/base/vt/array.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/timeCode.h>
#include <pxr/usd/usd/attributeQuery.h>
#include <pxr/usd/usd/clipsAPI.h>

namespace conformance {
namespace {

using ::testing::ElementsAre;

using Files = std::map<std::string, std::string>;

std::vector<double> timesOf(const UsdAttribute& attribute)
{
    std::vector<double> times;
    attribute.GetTimeSamples(&times);
    return times;
}

// Two clips of a prim M with an attribute d, and a manifest that declares it.
Files withClips(const std::string& root, Files files = {})
{
    files.emplace("a.usda", "def \"M\" { double d.timeSamples = { 0: 10, 4: 14 } }");
    files.emplace("b.usda", "def \"M\" { double d.timeSamples = { 5: 105, 9: 109 } }");
    files.emplace("manifest.usda", "over \"M\" { double d }");
    files["root.usda"] = root;
    return files;
}

// A prim P with a set of those clips and further entries.
std::string prim(const std::string& entries, const std::string& properties = "double d")
{
    return "def \"P\" ( clips = { dictionary default = {\n"
           "asset[] assetPaths = [@./a.usda@, @./b.usda@]\nstring primPath = \"/M\"\n" +
           entries + " } } ) { " + properties + " }";
}

const std::string kActive = "double2[] active = [(0, 0), (5, 1)]\n";
const std::string kManifest = "asset manifestAssetPath = @./manifest.usda@\n";

TEST(Clips, GiveTheSamplesOfTheOneThatIsActive)
{
    const Scene scene(withClips(prim(kActive + kManifest)));
    EXPECT_EQ(10.0, scene.Get<double>("/P.d", -3));
    EXPECT_EQ(12.0, scene.Get<double>("/P.d", 2));
    EXPECT_EQ(105.0, scene.Get<double>("/P.d", 5));
    EXPECT_EQ(107.0, scene.Get<double>("/P.d", 7));
    EXPECT_EQ(109.0, scene.Get<double>("/P.d", 20));
    EXPECT_THAT(timesOf(scene.GetAttribute("/P.d")), ElementsAre(0, 4, 5, 9));
    EXPECT_EQ(UsdResolveInfoSourceValueClips, scene.GetAttribute("/P.d").GetResolveInfo().GetSource());
    EXPECT_TRUE(scene.GetAttribute("/P.d").ValueMightBeTimeVarying());
}

TEST(Clips, GiveNoDefaultValue)
{
    const Scene scene(withClips(prim(kActive + kManifest)));
    double value = 7;
    EXPECT_FALSE(scene.GetAttribute("/P.d").Get(&value));
    EXPECT_EQ(7, value);
    EXPECT_FALSE(UsdAttributeQuery(scene.GetAttribute("/P.d")).Get(&value));
}

TEST(Clips, AreWeakerThanTheLayerThatNamesThem)
{
    const Scene scene({{"root.usda", "( subLayers = [@weak.usda@] )\n" +
                                         prim(kActive + kManifest, "double e = 1\n double d")},
                       {"weak.usda", "over \"P\" { double d = 3\n double e = 3 }"},
                       {"a.usda", "def \"M\" { double d.timeSamples = { 0: 10 }\n"
                                  " double e.timeSamples = { 0: 20 } }"},
                       {"b.usda", "def \"M\" { }"},
                       {"manifest.usda", "over \"M\" { double d\n double e }"}});
    EXPECT_EQ(10.0, scene.Get<double>("/P.d", 0));
    EXPECT_EQ(1.0, scene.Get<double>("/P.e", 0));
}

TEST(Clips, AreStrongerThanWhatAReferenceBrings)
{
    Files files = withClips(prim(kActive + kManifest, ""));
    files["root.usda"].replace(files["root.usda"].find("( clips"), 7,
                               "( prepend references = @ref.usda@</R>\n clips");
    files["ref.usda"] = "def \"R\" { double d = 3\n double d.timeSamples = { 0: 4 }\n double o = 5 }";
    const Scene scene(files);
    EXPECT_EQ(12.0, scene.Get<double>("/P.d", 2));
    EXPECT_EQ(3.0, scene.Get<double>("/P.d"));
    EXPECT_EQ(5.0, scene.Get<double>("/P.o", 2));
}

TEST(Clips, HoldForPrimsBelowOfWhichTheirLayerSaysNothing)
{
    const Scene scene({{"root.usda", R"(
        def "P" ( prepend references = @ref.usda@</R>
                  clips = { dictionary default = {
                      asset[] assetPaths = [@./a.usda@]
                      string primPath = "/M"
                      double2[] active = [(0, 0)]
                  } } ) { })"},
                       {"ref.usda", "def \"R\" { def \"C\" { double d = 3 } }"},
                       {"a.usda", "def \"M\" { def \"C\" { double d.timeSamples = { 0: 10, 2: 12 } } }"}});
    EXPECT_EQ(11.0, scene.Get<double>("/P/C.d", 1));
}

TEST(Clips, ShowTheTimesThatTheirKnotsSay)
{
    const Scene scene(withClips(prim("double2[] active = [(0, 0)]\n"
                                     "double2[] times = [(0, 0), (8, 4)]\n" +
                                     kManifest)));
    EXPECT_EQ(11.0, scene.Get<double>("/P.d", 2));
    EXPECT_EQ(14.0, scene.Get<double>("/P.d", 8));
    EXPECT_THAT(timesOf(scene.GetAttribute("/P.d")), ElementsAre(0, 8));
}

TEST(Clips, JumpBetweenTwoKnotsAtOneTime)
{
    const Scene scene(withClips(prim("double2[] active = [(0, 0)]\n"
                                     "double2[] times = [(0, 0), (4, 4), (4, 0), (8, 4)]\n" +
                                     kManifest)));
    EXPECT_EQ(13.0, scene.Get<double>("/P.d", 3));
    EXPECT_EQ(10.0, scene.Get<double>("/P.d", 4));
    EXPECT_EQ(11.0, scene.Get<double>("/P.d", 5));
    double lower = 0;
    double upper = 0;
    bool hasSamples = false;
    EXPECT_TRUE(scene.GetAttribute("/P.d").GetBracketingTimeSamples(5, &lower, &upper, &hasSamples));
    EXPECT_EQ(4.0, lower);
    EXPECT_EQ(8.0, upper);
    EXPECT_TRUE(hasSamples);
}

TEST(Clips, WithoutSamplesGiveTheDefaultOfTheManifest)
{
    const Scene scene(
        withClips(prim(kActive + kManifest),
                  {{"b.usda", "def \"M\" { }"}, {"manifest.usda", "over \"M\" { double d = 42 }"}}));
    EXPECT_EQ(14.0, scene.Get<double>("/P.d", 4));
    EXPECT_EQ(42.0, scene.Get<double>("/P.d", 6));
    EXPECT_THAT(timesOf(scene.GetAttribute("/P.d")), ElementsAre(0, 4, 5));
}

TEST(Clips, WithoutSamplesAreFilledFromTheirNeighboursWhereTheSetSaysSo)
{
    const Scene scene(withClips(prim("double2[] active = [(0, 0), (5, 1), (10, 0)]\n"
                                     "bool interpolateMissingClipValues = true\n" +
                                     kManifest),
                                {{"b.usda", "def \"M\" { }"}}));
    // The sample at 4 is 14; the clip that starts at 10 shows there what it has last, 14 too.
    EXPECT_EQ(14.0, scene.Get<double>("/P.d", 7));
    EXPECT_THAT(timesOf(scene.GetAttribute("/P.d")), ElementsAre(0, 4, 10));
}

TEST(Clips, DoNotVaryWhatTheManifestCallsUniformOrLeavesOut)
{
    const Scene scene(
        withClips(prim(kActive + kManifest), {{"manifest.usda", "over \"M\" { uniform double d }"}}));
    EXPECT_FALSE(scene.GetAttribute("/P.d").HasValue());
    const Scene without(withClips(prim(kActive + kManifest), {{"manifest.usda", "over \"M\" { }"}}));
    EXPECT_FALSE(without.GetAttribute("/P.d").HasValue());
}

TEST(Clips, WithoutAManifestDeclareWhatTheyHaveSamplesOf)
{
    const Scene scene(withClips(prim(kActive, "double d\n double o")));
    EXPECT_EQ(12.0, scene.Get<double>("/P.d", 2));
    EXPECT_FALSE(scene.GetAttribute("/P.o").HasValue());
    UsdClipsAPI api(scene.GetPrim("/P"));
    const SdfLayerRefPtr manifest = api.GenerateClipManifest();
    EXPECT_TRUE(manifest->GetAttributeAtPath(SdfPath("/M.d")));
    EXPECT_FALSE(manifest->GetAttributeAtPath(SdfPath("/M.o")));
}

TEST(Clips, WithoutSamplesAreMarkedByBlocksInAManifestThatIsAskedTo)
{
    const Scene scene(withClips(prim(kActive), {{"b.usda", "def \"M\" { }"}}));
    UsdClipsAPI api(scene.GetPrim("/P"));
    const SdfLayerRefPtr manifest = api.GenerateClipManifest(true);
    VtValue value;
    EXPECT_TRUE(manifest->QueryTimeSample(SdfPath("/M.d"), 5.0, &value));
    EXPECT_TRUE(value.IsHolding<SdfValueBlock>());
    EXPECT_FALSE(manifest->QueryTimeSample(SdfPath("/M.d"), 0.0));
}

TEST(Clips, OfATemplateAreTheFilesThatAreThere)
{
    const Scene scene({{"root.usda", R"(
        def "P" ( clips = { dictionary default = {
                      string templateAssetPath = "./c.##.usda"
                      double templateStartTime = 0
                      double templateEndTime = 4
                      double templateStride = 1
                      string primPath = "/M"
                  } } ) { double d })"},
                       {"c.01.usda", "def \"M\" { double d.timeSamples = { 1: 10 } }"},
                       {"c.03.usda", "def \"M\" { double d.timeSamples = { 3: 30 } }"}});
    EXPECT_EQ(10.0, scene.Get<double>("/P.d", 1));
    EXPECT_EQ(30.0, scene.Get<double>("/P.d", 3));
    EXPECT_EQ(2u, UsdClipsAPI(scene.GetPrim("/P")).ComputeClipAssetPaths().size());
    EXPECT_THAT(timesOf(scene.GetAttribute("/P.d")), ElementsAre(1, 3));
}

TEST(Clips, AreMovedByTheOffsetOfTheLayerThatNamesThem)
{
    const Scene scene(withClips("( subLayers = [@sub.usda@ (offset = 100)] )",
                                {{"sub.usda", prim("double2[] active = [(0, 0)]\n"
                                                   "double2[] times = [(0, 0), (4, 4)]\n" +
                                                   kManifest)}}));
    EXPECT_EQ(12.0, scene.Get<double>("/P.d", 102));
    EXPECT_THAT(timesOf(scene.GetAttribute("/P.d")), ElementsAre(100, 104));
}

TEST(Clips, MoveTheTimeCodesInThem)
{
    const Scene scene({{"root.usda", R"(
        def "P" ( clips = { dictionary default = {
                      asset[] assetPaths = [@./a.usda@]
                      string primPath = "/M"
                      double2[] active = [(0, 0)]
                      double2[] times = [(10, 0), (20, 10)]
                  } } ) { timecode t })"},
                       {"a.usda", "def \"M\" { timecode t.timeSamples = { 2: 5 } }"}});
    EXPECT_EQ(SdfTimeCode(15), scene.Get<SdfTimeCode>("/P.t", 12));
}

TEST(Clips, OfSeveralSetsAtOnePlaceFollowTheirList)
{
    const auto text = [](const std::string& order) {
        return "def \"P\" ( clips = {\n"
               "dictionary x = {\nasset[] assetPaths = [@./a.usda@]\nstring primPath = \"/M\"\n"
               "double2[] active = [(0, 0)]\n }\n"
               "dictionary y = {\nasset[] assetPaths = [@./b.usda@]\nstring primPath = \"/M\"\n"
               "double2[] active = [(0, 0)]\n } }\n" +
               order + " ) { double d }";
    };
    EXPECT_EQ(10.0, Scene(withClips(text(""))).Get<double>("/P.d", 0));
    EXPECT_EQ(105.0, Scene(withClips(text("clipSets = [\"y\", \"x\"]"))).Get<double>("/P.d", 0));
    EXPECT_EQ(105.0, Scene(withClips(text("delete clipSets = [\"x\"]"))).Get<double>("/P.d", 0));
}

TEST(Clips, OfAPrimAreStrongerThanThoseOfItsParent)
{
    const Scene scene({{"root.usda", R"(
        def "P" ( clips = { dictionary default = {
                      asset[] assetPaths = [@./a.usda@]
                      string primPath = "/M"
                      double2[] active = [(0, 0)]
                  } } ) {
            def "C" ( clips = { dictionary default = {
                          asset[] assetPaths = [@./b.usda@]
                          string primPath = "/M"
                          double2[] active = [(0, 0)]
                      } } ) { double d
                              double e } })"},
                       {"a.usda", "def \"M\" { def \"C\" { double d.timeSamples = { 0: 1 }\n"
                                  " double e.timeSamples = { 0: 2 } } }"},
                       {"b.usda", "def \"M\" { double d.timeSamples = { 0: 3 } }"}});
    EXPECT_EQ(3.0, scene.Get<double>("/P/C.d", 0));
    EXPECT_EQ(2.0, scene.Get<double>("/P/C.e", 0));
}

TEST(Clips, ThatAreEditedTakeEffectAtOnce)
{
    const Scene scene(withClips(prim(kActive + kManifest)));
    UsdClipsAPI api(scene.GetPrim("/P"));
    EXPECT_TRUE(api.SetClipActive(VtVec2dArray{GfVec2d(0, 1)}));
    EXPECT_EQ(105.0, scene.Get<double>("/P.d", 2));
    VtVec2dArray active;
    EXPECT_TRUE(api.GetClipActive(&active));
    EXPECT_EQ((VtVec2dArray{GfVec2d(0, 1)}), active);
    EXPECT_TRUE(scene.GetPrim("/P").ClearMetadata(TfToken("clips")));
    EXPECT_FALSE(scene.GetAttribute("/P.d").HasValue());
}

TEST(Clips, AreAmongTheLayersThatAreUsed)
{
    const Scene scene(withClips(prim(kActive + kManifest)));
    scene.Get<double>("/P.d", 2);
    const auto has = [&](const std::string& file, bool withClipLayers) {
        for (const SdfLayerHandle& layer : scene.GetStage()->GetUsedLayers(withClipLayers)) {
            if (layer->GetDisplayName() == file) {
                return true;
            }
        }
        return false;
    };
    EXPECT_TRUE(has("a.usda", true));
    EXPECT_TRUE(has("manifest.usda", true));
    EXPECT_FALSE(has("b.usda", true)); // nobody asked for a time of it
    EXPECT_FALSE(has("a.usda", false));
}

TEST(Clips, ListTheirSpecsAmongThoseOfTheProperty)
{
    const Scene scene(withClips(prim(kActive + kManifest)));
    Strings files;
    for (const auto& spec : scene.GetAttribute("/P.d").GetPropertyStack(2.0)) {
        files.push_back(spec->GetLayer()->GetDisplayName());
    }
    EXPECT_THAT(files, ElementsAre("root.usda", "a.usda"));
}

} // namespace
} // namespace conformance
