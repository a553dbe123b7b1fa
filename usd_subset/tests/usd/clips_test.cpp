#include "scene.h"

#include <pxr/base/gf/vec2d.h>
#include <pxr/base/vt/array.h>
#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/usd/clipsAPI.h>

#include <gmock/gmock.h>

using namespace usd_tests;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// A stage with clips of one attribute that the manifest declares.
class ClippedStage
{
public:
    explicit ClippedStage(const std::string& assetPath)
        : m_manifest(layer("over \"M\" { double d }", "manifest.usda")),
          m_stage(stage("def \"P\" ( clips = { dictionary default = {\nasset[] assetPaths = [@" + assetPath +
                        "@]\nasset manifestAssetPath = @" + m_manifest->GetIdentifier() +
                        "@\nstring primPath = \"/M\"\ndouble2[] active = [(0, 0)]\n } } ) { double d }"))
    {}

    const UsdStageRefPtr& get() const { return m_stage; }
    UsdClipsAPI api() const { return UsdClipsAPI(prim(m_stage, "/P")); }

private:
    SdfLayerRefPtr m_manifest;
    UsdStageRefPtr m_stage;
};

} // namespace

TEST(Clips, ThatCannotBeOpenedAreNamedInOneWarning)
{
    const ClippedStage scene("/nowhere/clip.usda");
    const Warnings warnings;
    double value = 0;
    for (int i = 0; i != 3; ++i) {
        EXPECT_FALSE(attribute(scene.get(), "/P.d").Get(&value, 1.0 * i));
        prim(scene.get(), "/P").SetMetadata(TfToken("kind"), TfToken(i % 2 ? "component" : "group"));
    }
    EXPECT_THAT(warnings.texts, ElementsAre("The clip @/nowhere/clip.usda@ of </P>, which @" +
                                            scene.get()->GetRootLayer()->GetIdentifier() +
                                            "@ names, was left out: the file was not found."));
}

TEST(Clips, ShowWhatIsEditedInThem)
{
    const SdfLayerRefPtr clip = layer("def \"M\" { double d.timeSamples = { 0: 1 } }", "clip.usda");
    const ClippedStage scene(clip->GetIdentifier());
    EXPECT_EQ(1.0, valueOf<double>(attribute(scene.get(), "/P.d"), 0.0));
    clip->SetTimeSample(SdfPath("/M.d"), 0.0, 5.0);
    EXPECT_EQ(5.0, valueOf<double>(attribute(scene.get(), "/P.d"), 0.0));
}

TEST(Clips, ThatAreEditedResyncTheirPrim)
{
    const SdfLayerRefPtr clip = layer("def \"M\" { double d.timeSamples = { 0: 1 } }", "clip.usda");
    const ClippedStage scene(clip->GetIdentifier());
    NoticeLog log(scene.get());
    scene.api().SetClipPrimPath("/N");
    EXPECT_THAT(log.take(), ElementsAre("resynced /P"));
    double value = 0;
    EXPECT_FALSE(attribute(scene.get(), "/P.d").Get(&value, 0.0));
}

TEST(Clips, WithWrongEntriesAreLeftOutWithOneWarning)
{
    const struct
    {
        VtVec2dArray active;
        VtVec2dArray times;
        std::string primPath;
        std::string why;
    } cases[] = {
        {{GfVec2d(0, 3)}, {}, "/M", "Invalid clip index 3 in 'active'"},
        {{GfVec2d(0, 0), GfVec2d(0, 0)},
         {},
         "/M",
         "Clip 0 cannot be active at time 0.000 in 'active' because clip 0 was already specified as active "
         "at "
         "this time."},
        {{GfVec2d(0, 0)},
         {GfVec2d(1, 0), GfVec2d(1, 1), GfVec2d(1, 2)},
         "/M",
         "Cannot have more than two entries in 'times' with the same stage time (1.000)."},
        {{GfVec2d(0, 0)}, {}, "M", "Path 'M' in 'primPath' must be an absolute path to a prim"},
        {{GfVec2d(0, 0)}, {}, "", "No clip prim path specified in 'primPath'"},
    };
    for (const auto& each : cases) {
        VtDictionary set;
        set["assetPaths"] = VtValue(VtArray<SdfAssetPath>{SdfAssetPath("/nowhere/clip.usda")});
        set["active"] = VtValue(each.active);
        set["times"] = VtValue(each.times);
        set["primPath"] = VtValue(each.primPath);
        VtDictionary clips;
        clips["default"] = VtValue(set);
        const UsdStageRefPtr scene = stage("def \"P\" { double d }");
        const Warnings warnings;
        UsdClipsAPI(prim(scene, "/P")).SetClips(clips);
        EXPECT_THAT(warnings.texts, ElementsAre("Invalid clips specified for prim </P>: " + each.why));
        EXPECT_FALSE(attribute(scene, "/P.d").HasValue());
    }
}

TEST(Clips, OfATemplateWithTooManyStepsAreLeftOut)
{
    const UsdStageRefPtr scene = stage("def \"P\" { double d }");
    VtDictionary set;
    set["templateAssetPath"] = VtValue(std::string("/nowhere/clip.###.usda"));
    set["templateStartTime"] = VtValue(0.0);
    set["templateEndTime"] = VtValue(1e9);
    set["templateStride"] = VtValue(1e-9);
    set["primPath"] = VtValue(std::string("/M"));
    VtDictionary clips;
    clips["default"] = VtValue(set);
    const Warnings warnings;
    UsdClipsAPI(prim(scene, "/P")).SetClips(clips);
    EXPECT_THAT(warnings.texts,
                ElementsAre("Invalid time range specified for prim </P>. From templateStartTime (0) to "
                            "templateEndTime (1e+09) there are more than 100,000 steps of "
                            "templateStride 1e-09, or their numbers are too large for file names."));
}

TEST(Clips, HaveSetsWithNamesThatAreIdentifiers)
{
    const UsdStageRefPtr scene = stage("def \"P\" { }");
    UsdClipsAPI api(prim(scene, "/P"));
    Errors errors;
    EXPECT_FALSE(api.SetClipPrimPath("/M", "1x"));
    EXPECT_FALSE(api.SetClipPrimPath("/M", std::string()));
    EXPECT_THAT(errors.take(), ElementsAre("Clip set name must be a valid identifier (got '1x')",
                                           "Empty clip set name not allowed"));
    EXPECT_TRUE(api.SetClipPrimPath("/M", "x"));
    std::string path;
    EXPECT_TRUE(api.GetClipPrimPath(&path, "x"));
    EXPECT_EQ("/M", path);
    EXPECT_FALSE(api.GetClipPrimPath(&path));
    EXPECT_FALSE(UsdClipsAPI(scene->GetPseudoRoot()).SetClipPrimPath("/M", "x"));
    EXPECT_THAT(errors.take(), IsEmpty());
}
