#include "scene.h"

#include <pxr/usd/sdf/primSpec.h>

namespace conformance {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const char* const kModel = R"(
    def "Model" { rel to = </Model/Rig/Ctl>
        def "Rig" { double own = 1; def "Ctl" { double v = 2 } }
        def "Geo" { rel back = </Model/Rig/Ctl> } })";

TEST(Relocates, MoveWhatAReferenceBringsInToAnotherParent)
{
    const Scene scene({{"root.usda", R"(( relocates = { </P/Rig/Ctl>: </P/Anim/Ctl> } )
        def "P" ( prepend references = @a.usda@</Model> ) { def "Anim" { over "Ctl" { double w = 3 } } })"},
                       {"a.usda", kModel}});
    EXPECT_THAT(scene.GetPrimStack("/P/Anim/Ctl"), ElementsAre("root /P/Anim/Ctl", "a /Model/Rig/Ctl"));
    EXPECT_EQ(scene.Get<double>("/P/Anim/Ctl.v"), 2);
    EXPECT_THAT(scene.GetChildren("/P/Rig"), IsEmpty());
    EXPECT_FALSE(scene.GetPrim("/P/Rig/Ctl"));
}

TEST(Relocates, RenameInPlaceOfTheOldNameAndAppendWhatComesFromElsewhere)
{
    const Scene scene({{"root.usda", R"(( relocates = { </P/Rig>: </P/Base>, </P/Geo/B>: </P/B> } )
        def "P" ( prepend references = @a.usda@</Model> ) {})"},
                       {"a.usda", R"(def "Model" { def "Rig" {} def "Geo" { def "A" {} def "B" {} } })"}});
    EXPECT_THAT(scene.GetChildren("/P"), ElementsAre("Base", "Geo", "B"));
    EXPECT_THAT(scene.GetChildren("/P/Geo"), ElementsAre("A"));
}

TEST(Relocates, TranslateTheTargetsThatComeOverTheReference)
{
    const Scene scene({{"root.usda", R"(( relocates = { </P/Rig/Ctl>: </P/Anim/Ctl> } )
        def "P" ( prepend references = @a.usda@</Model> ) {})"},
                       {"a.usda", kModel}});
    EXPECT_THAT(scene.GetTargets("/P.to"), ElementsAre("/P/Anim/Ctl"));
    EXPECT_THAT(scene.GetTargets("/P/Geo.back"), ElementsAre("/P/Anim/Ctl"));
}

TEST(Relocates, RemoveAPrimWhoseTargetIsEmpty)
{
    const Scene scene({{"root.usda", R"(( relocates = { </P/Rig>: <> } )
        def "P" ( prepend references = @a.usda@</Model> ) {})"},
                       {"a.usda", kModel}});
    EXPECT_THAT(scene.GetChildren("/P"), ElementsAre("Geo"));
}

TEST(Relocates, LeaveOutWhatIsWrittenAtTheOldPlace)
{
    const Scene scene({{"root.usda", R"(( relocates = { </P/Rig>: </P/Base> } )
        def "P" ( prepend references = @a.usda@</Model> ) { over "Rig" { double own = 5 } })"},
                       {"a.usda", kModel}});
    EXPECT_THAT(scene.GetPrimStack("/P/Base"), ElementsAre("a /Model/Rig"));
    EXPECT_EQ(scene.Get<double>("/P/Base.own"), 1);
    EXPECT_FALSE(scene.GetPrim("/P/Rig"));
}

TEST(Relocates, OfAReferencedLayerCountWhereItIsReferenced)
{
    const Scene scene({{"root.usda", R"(def "Q" ( prepend references = @mid.usda@</P> ) { over "Base" {} })"},
                       {"mid.usda", R"(( relocates = { </P/Rig>: </P/Base> } )
        def "P" ( prepend references = @a.usda@</Model> ) {})"},
                       {"a.usda", kModel}});
    EXPECT_THAT(scene.GetChildren("/Q"), ElementsAre("Base", "Geo"));
    EXPECT_THAT(scene.GetPrimStack("/Q/Base"), ElementsAre("root /Q/Base", "a /Model/Rig"));
    EXPECT_THAT(scene.GetTargets("/Q.to"), ElementsAre("/Q/Base/Ctl"));
}

TEST(Relocates, MayFollowEachOtherDownwards)
{
    const Scene scene({{"root.usda", R"(( relocates = { </P/Rig>: </P/Base>, </P/Base/Ctl>: </P/Top> } )
        def "P" ( prepend references = @a.usda@</Model> ) {})"},
                       {"a.usda", kModel}});
    EXPECT_THAT(scene.GetPrimStack("/P/Top"), ElementsAre("a /Model/Rig/Ctl"));
    EXPECT_THAT(scene.GetChildren("/P/Base"), IsEmpty());
    EXPECT_THAT(scene.GetTargets("/P.to"), ElementsAre("/P/Top"));
}

TEST(Relocates, ThatConflictAreLeftOut)
{
    const Scene scene({{"root.usda", R"(( relocates = { </P/Rig>: </P/X>, </P/Geo>: </P/X>, </P>: </R> } )
        def "P" ( prepend references = @a.usda@</Model> ) {})"},
                       {"a.usda", kModel}});
    EXPECT_THAT(scene.GetChildren("/"), ElementsAre("P"));
    EXPECT_THAT(scene.GetChildren("/P"), ElementsAre("Rig", "Geo"));
}

TEST(Relocates, OfAPrimAreKeptButDoNotCountOnAStage)
{
    const Scene scene({{"root.usda", R"(
        def "P" ( prepend references = @a.usda@</Model>; relocates = { <Rig>: <Base> } ) {})"},
                       {"a.usda", kModel}});
    EXPECT_THAT(scene.GetChildren("/P"), ElementsAre("Rig", "Geo"));
    const SdfPrimSpecHandle spec = scene.GetStage()->GetRootLayer()->GetPrimAtPath(SdfPath("/P"));
    ASSERT_TRUE(spec->HasRelocates());
    EXPECT_EQ(SdfPath(spec->GetRelocates()[SdfPath("/P/Rig")]), SdfPath("/P/Base"));
}

TEST(Relocates, BringInTheClassesOfTheOldPlace)
{
    const Scene scene({{"root.usda", R"(( relocates = { </P/Rig/Ctl>: </P/Ctl> } )
        def "P" ( prepend references = @a.usda@</Model> ) {}
        class "C" { double c = 7 })"},
                       {"a.usda", R"(
        def "Model" { def "Rig" { def "Ctl" ( inherits = </C> ) {} } }
        class "C" { double c = 1 })"}});
    EXPECT_THAT(scene.GetPrimStack("/P/Ctl"), ElementsAre("root /C", "a /Model/Rig/Ctl", "a /C"));
    EXPECT_EQ(scene.Get<double>("/P/Ctl.c"), 7);
}

TEST(Relocates, CountAsSoonAsTheyAreWritten)
{
    const Scene scene(
        {{"root.usda", R"(def "P" ( prepend references = @a.usda@</Model> ) {})"}, {"a.usda", kModel}});
    const SdfLayerHandle root = scene.GetStage()->GetRootLayer();
    root->SetRelocates({{SdfPath("/P/Rig"), SdfPath("/P/Base")}});
    EXPECT_THAT(scene.GetChildren("/P"), ElementsAre("Base", "Geo"));
    root->ClearRelocates();
    EXPECT_THAT(scene.GetChildren("/P"), ElementsAre("Rig", "Geo"));
}

} // namespace
} // namespace conformance
