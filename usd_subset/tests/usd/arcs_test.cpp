#include "scene.h"

#include <pxr/usd/sdf/types.h>
#include <pxr/usd/usd/editContext.h>
#include <pxr/usd/usd/inherits.h>
#include <pxr/usd/usd/payloads.h>
#include <pxr/usd/usd/references.h>
#include <pxr/usd/usd/variantSets.h>

#include <gmock/gmock.h>

using namespace usd_tests;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A scene that refers to another layer, which it keeps.
struct Referencing
{
    Referencing(const std::string& asset, const std::string& scene) : assetLayer(layer(asset, "asset.usda"))
    {
        std::string text = scene;
        const std::string name = "ASSET";
        for (size_t at = text.find(name); at != std::string::npos; at = text.find(name)) {
            text.replace(at, name.size(), assetLayer->GetIdentifier());
        }
        stage = usd_tests::stage(text);
    }
    SdfLayerRefPtr assetLayer;
    UsdStageRefPtr stage;
};

} // namespace

TEST(References, BringThePrimAndAllBelowUnderAnotherName)
{
    const Referencing scene("def Xform \"X\" { double a = 1\n def \"B\" { double b = 2 } }",
                            "def \"A\" ( references = @ASSET@</X> ) { }");
    EXPECT_EQ(prim(scene.stage, "/A").GetTypeName(), TfToken("Xform"));
    EXPECT_EQ(valueOf<double>(attribute(scene.stage, "/A.a")), 1);
    EXPECT_EQ(valueOf<double>(attribute(scene.stage, "/A/B.b")), 2);
    EXPECT_FALSE(prim(scene.stage, "/X"));
}

TEST(References, AreWeakerThanWhatIsSaidWhereTheyAreWritten)
{
    const Referencing scene(
        "def \"X\" { double a = 1\n def \"B\" { double b = 1 } }",
        "def \"A\" ( references = @ASSET@</X> ) { double a = 5\n over \"B\" { double b = 5 } }");
    EXPECT_EQ(valueOf<double>(attribute(scene.stage, "/A.a")), 5);
    EXPECT_EQ(valueOf<double>(attribute(scene.stage, "/A/B.b")), 5);
}

TEST(References, WithoutAPathLeadToTheDefaultPrim)
{
    const Referencing scene("( defaultPrim = \"X\" )\n def \"X\" { double a = 1 }",
                            "def \"A\" ( references = @ASSET@ ) { }");
    EXPECT_EQ(valueOf<double>(attribute(scene.stage, "/A.a")), 1);
}

TEST(References, MayStayInsideTheScene)
{
    const UsdStageRefPtr scene =
        stage("def \"X\" { double a = 1\n rel r = [</X/B>, </Y>]\n def \"B\" {} }\n def \"Y\" {}\n"
              "def \"A\" ( references = </X> ) { }");
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a")), 1);
    SdfPathVector targets;
    EXPECT_TRUE(scene->GetRelationshipAtPath(SdfPath("/A.r")).GetTargets(&targets));
    EXPECT_THAT(targets, ElementsAre(SdfPath("/A/B"), SdfPath("/Y")));
}

TEST(References, ToALayerTakeNoTargetsFromOutsideThePrim)
{
    const Referencing scene("def \"X\" { rel r = [</X/B>, </Outside>]\n def \"B\" {} }\n def \"Outside\" {}",
                            "def \"A\" ( references = @ASSET@</X> ) { }");
    SdfPathVector targets;
    EXPECT_FALSE(
        scene.stage->GetRelationshipAtPath(SdfPath("/A.r")).GetTargets(&targets)); // one leads nowhere
    EXPECT_THAT(targets, ElementsAre(SdfPath("/A/B")));
}

TEST(References, MoveTheAssetsTimes)
{
    const Referencing scene("def \"X\" { double a.timeSamples = { 1: 1, 2: 2 } }",
                            "def \"A\" ( references = @ASSET@</X> ( offset = 10; scale = 2 ) ) { }");
    std::vector<double> times;
    attribute(scene.stage, "/A.a").GetTimeSamples(&times);
    EXPECT_THAT(times, ElementsAre(12, 14)); // 2 t + 10
}

TEST(References, CountTheRatesOfBothLayers)
{
    const Referencing scene("( timeCodesPerSecond = 48 )\n def \"X\" { double a.timeSamples = { 48: 1 } }",
                            "def \"A\" ( references = @ASSET@</X> ) { }");
    std::vector<double> times;
    attribute(scene.stage, "/A.a").GetTimeSamples(&times);
    EXPECT_THAT(times, ElementsAre(24)); // one second in both
}

TEST(References, ComeInTheOrderOfTheirListTheFirstIsStrongest)
{
    const UsdStageRefPtr scene =
        stage("def \"X\" { double a = 1\n double x = 1 }\n def \"Y\" { double a = 2\n double y = 2 }\n"
              "def \"A\" ( references = [</X>, </Y>] ) { }");
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a")), 1);
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.y")), 2);
}

TEST(References, ToAPrimBelowAnotherBringWhatTheUpperOneRefersTo)
{
    Warnings warnings;
    const UsdStageRefPtr scene = stage("def \"Base\" { def \"Part\" { double a = 1 } }\n"
                                       "def \"Whole\" ( references = </Base> ) { }\n"
                                       "def \"A\" ( references = </Whole/Part> ) { }");
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a")), 1);
    EXPECT_THAT(warnings.texts, IsEmpty());
}

TEST(References, OnAPrimItselfAreStrongerThanThoseOfOnesAbove)
{
    const UsdStageRefPtr scene =
        stage("def \"X\" { def \"B\" { double b = 1 } }\n def \"Y\" { double b = 2 }\n"
              "def \"A\" ( references = </X> ) { def \"B\" ( references = </Y> ) { } }");
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A/B.b")), 2);
}

TEST(References, ThatLeadBackAreOneWarningAndLeftOut)
{
    Warnings warnings;
    const UsdStageRefPtr scene = stage("def \"A\" ( references = </B> ) { double a = 1 }\n"
                                       "def \"B\" ( references = </A> ) { double b = 1 }");
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.b")), 1);
    EXPECT_EQ(valueOf<double>(attribute(scene, "/B.a")), 1);
    const std::string root = scene->GetRootLayer()->GetIdentifier();
    EXPECT_THAT(
        warnings.texts,
        ElementsAre("The arc to </A> was left out: it leads back to where it comes from. Remove the cycle. "
                    "It is written on </B> in @" +
                        root + "@.",
                    "The arc to </B> was left out: it leads back to where it comes from. Remove the cycle. "
                    "It is written on </A> in @" +
                        root + "@."));
}

TEST(References, ToTheirOwnParentAreLeftOut)
{
    Warnings warnings;
    const UsdStageRefPtr scene = stage("def \"A\" { def \"B\" ( references = </A> ) { double b = 1 } }");
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A/B.b")), 1);
    EXPECT_FALSE(prim(scene, "/A/B/B"));
    EXPECT_EQ(warnings.texts.size(), 1u);
}

TEST(References, ToAMissingFileAreOneWarningAndTheRestStays)
{
    Warnings warnings;
    const UsdStageRefPtr scene = stage("def \"A\" ( references = @no/such.usda@ ) { double a = 1 }");
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a")), 1);
    EXPECT_THAT(
        warnings.texts,
        ElementsAre(
            "The arc to @no/such.usda@ was left out: the file was not found. It is written on </A> in @" +
            scene->GetRootLayer()->GetIdentifier() + "@."));
}

TEST(References, ThatLeadToNoPrimAreOneWarning)
{
    Warnings warnings;
    const UsdStageRefPtr scene = stage("def \"A\" ( references = </None> ) { }");
    EXPECT_TRUE(prim(scene, "/A"));
    EXPECT_THAT(warnings.texts,
                ElementsAre("The arc to @@</None> leads to no prim. It is written on </A> in @" +
                            scene->GetRootLayer()->GetIdentifier() + "@."));
}

TEST(References, AreFollowedWhenTheyAreWritten)
{
    const UsdStageRefPtr scene = stage("def \"X\" { double a = 1\n def \"B\" {} }\n def \"A\" {}");
    const UsdPrim a = prim(scene, "/A");
    NoticeLog log(scene);
    EXPECT_TRUE(a.GetReferences().AddInternalReference(SdfPath("/X")));
    EXPECT_THAT(log.take(), ElementsAre("resynced /A"));
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a")), 1);
    EXPECT_TRUE(prim(scene, "/A/B"));
    EXPECT_TRUE(a.GetReferences().ClearReferences());
    EXPECT_FALSE(prim(scene, "/A/B"));
    EXPECT_TRUE(a);
}

TEST(References, CarryChangesOfTheAssetToEachPrimThatRefersToIt)
{
    const Referencing scene(
        "def \"X\" { double a = 1 }",
        "def \"A\" ( references = @ASSET@</X> ) { }\n def \"B\" ( references = @ASSET@</X> ) { }");
    NoticeLog log(scene.stage);
    scene.assetLayer->SetField(SdfPath("/X.a"), TfToken("default"), 7.0);
    EXPECT_THAT(log.take(), ElementsAre("changed /A.a", "changed /B.a"));
    EXPECT_EQ(valueOf<double>(attribute(scene.stage, "/B.a")), 7);
    SdfCreatePrimInLayer(SdfLayerHandle(scene.assetLayer), SdfPath("/X/New"))->SetSpecifier(SdfSpecifierDef);
    EXPECT_TRUE(prim(scene.stage, "/A/New").IsDefined());
    EXPECT_TRUE(prim(scene.stage, "/B/New").IsDefined());
}

TEST(References, ThatMultiplyEndWithOneWarning)
{
    // Each level refers to both prims of the next: 2^20 ways to the end.
    std::string text;
    for (int i = 0; i != 20; ++i) {
        const std::string next = std::to_string(i + 1);
        for (const char* name : {"a", "b"}) {
            text += "def \"" + (name + std::to_string(i)) + "\" ( references = [</a" + next + ">, </b" +
                    next + ">] ) {}\n";
        }
    }
    Warnings warnings;
    const UsdStageRefPtr scene = stage(text + "def \"a20\" { double a = 1 }\n def \"b20\" {}");
    EXPECT_EQ(valueOf<double>(attribute(scene, "/a15.a")), 1); // 2^5 ways
    EXPECT_THAT(warnings.texts,
                ElementsAre("The arcs of prim </a0> lead to more than 1000 places; the rest was left "
                            "out, here and on other prims that do so."));
}

TEST(Payloads, AreLoadedAndUnloaded)
{
    const UsdStageRefPtr scene =
        stage("def \"X\" { def \"B\" {} }\n def \"A\" ( payload = </X> ) { def \"Own\" {} }");
    EXPECT_TRUE(prim(scene, "/A").HasPayload());
    EXPECT_TRUE(prim(scene, "/A/B"));
    NoticeLog log(scene);
    scene->Unload(SdfPath("/A"));
    EXPECT_THAT(log.take(), ElementsAre("resynced /A"));
    EXPECT_FALSE(prim(scene, "/A").IsLoaded());
    EXPECT_FALSE(prim(scene, "/A/B"));
    EXPECT_FALSE(prim(scene, "/A/Own").IsLoaded());
    EXPECT_THAT(scene->GetLoadSet(), IsEmpty());
    EXPECT_THAT(scene->FindLoadable(), ElementsAre(SdfPath("/A")));
    EXPECT_TRUE(scene->Load(SdfPath("/A")).IsLoaded());
    EXPECT_TRUE(prim(scene, "/A/B"));
    EXPECT_THAT(scene->GetLoadSet(), ElementsAre(SdfPath("/A")));
}

TEST(Payloads, StayOutOfAStageThatIsOpenedWithoutThem)
{
    const SdfLayerRefPtr root = layer("def \"X\" { def \"B\" {} }\n def \"A\" ( payload = </X> ) { }");
    const UsdStageRefPtr scene = UsdStage::Open(SdfLayerHandle(root), UsdStage::LoadNone);
    EXPECT_FALSE(prim(scene, "/A/B"));
    EXPECT_TRUE(prim(scene, "/X/B"));
}

TEST(Payloads, AreWeakerThanReferences)
{
    const UsdStageRefPtr scene = stage("def \"X\" { double a = 1 }\n def \"Y\" { double a = 2 }\n"
                                       "def \"A\" ( payload = </X>\n references = </Y> ) { }");
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a")), 2);
}

TEST(Inherits, BringTheClassesOpinionsWeakerThanThePrims)
{
    const UsdStageRefPtr scene = stage("class \"C\" { double a = 1\n double b = 1 }\n"
                                       "def \"A\" ( inherits = </C> ) { double b = 2 }");
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a")), 1);
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.b")), 2);
    EXPECT_FALSE(prim(scene, "/A").IsAbstract());
    EXPECT_THAT(prim(scene, "/A").GetInherits().GetAllDirectInherits(), ElementsAre(SdfPath("/C")));
}

TEST(Inherits, AreStrongerThanReferences)
{
    const UsdStageRefPtr scene = stage("class \"C\" { double a = 1 }\n def \"X\" { double a = 2 }\n"
                                       "def \"A\" ( inherits = </C>\n references = </X> ) { }");
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a")), 1);
}

TEST(Inherits, OfAReferencedPrimCanBeOverriddenWhereItIsReferenced)
{
    const Referencing scene(
        "class \"C\" { double a = 1\n double b = 1 }\n def \"X\" ( inherits = </C> ) { double b = 2 }",
        "over \"C\" { double a = 5\n double b = 5 }\n def \"A\" ( references = @ASSET@</X> ) { }");
    EXPECT_EQ(valueOf<double>(attribute(scene.stage, "/A.a")), 5);
    EXPECT_EQ(valueOf<double>(attribute(scene.stage, "/A.b")),
              5); // the scene's class is stronger than the asset
}

TEST(Inherits, OfAReferencedPrimFollowAClassThatIsWrittenLater)
{
    const Referencing scene("class \"C\" { double a = 1 }\n def \"X\" ( inherits = </C> ) { }",
                            "def \"A\" ( references = @ASSET@</X> ) { }");
    EXPECT_EQ(valueOf<double>(attribute(scene.stage, "/A.a")), 1);
    scene.stage->CreateClassPrim(SdfPath("/C"))
        .CreateAttribute(TfToken("a"), SdfValueTypeNames->Double)
        .Set(5.0);
    EXPECT_EQ(valueOf<double>(attribute(scene.stage, "/A.a")), 5);
}

TEST(Inherits, ReachThePrimsBelow)
{
    const UsdStageRefPtr scene =
        stage("class \"C\" { def \"B\" { double b = 1 } }\n def \"A\" ( inherits = </C> ) { }");
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A/B.b")), 1);
    EXPECT_FALSE(prim(scene, "/A/B").IsAbstract());
}

TEST(Specializes, AreWeakerThanEverythingElse)
{
    const Referencing scene("class \"S\" { double a = 1\n double b = 1 }\n"
                            "def \"X\" ( specializes = </S> ) { }",
                            "def \"Y\" { double a = 3 }\n"
                            "def \"A\" ( references = [@ASSET@</X>, </Y>] ) { }");
    EXPECT_EQ(valueOf<double>(attribute(scene.stage, "/A.a")), 3);
    EXPECT_EQ(valueOf<double>(attribute(scene.stage, "/A.b")), 1);
}

TEST(Variants, BringTheSelectedOnesOpinions)
{
    const UsdStageRefPtr scene =
        stage("def \"A\" ( variants = { string v = \"x\" }\n prepend variantSets = \"v\" ) {\n variantSet "
              "\"v\" = {\n"
              " \"x\" { double a = 1\n def \"InX\" {} }\n \"y\" { double a = 2\n def \"InY\" {} } } }");
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a")), 1);
    EXPECT_TRUE(prim(scene, "/A/InX"));
    NoticeLog log(scene);
    prim(scene, "/A").GetVariantSet("v").SetVariantSelection("y");
    EXPECT_THAT(log.take(), ElementsAre("resynced /A"));
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a")), 2);
    EXPECT_FALSE(prim(scene, "/A/InX"));
    EXPECT_TRUE(prim(scene, "/A/InY"));
    EXPECT_THAT(prim(scene, "/A").GetVariantSet("v").GetVariantNames(), ElementsAre("x", "y"));
}

TEST(Variants, AreWeakerThanThePrimsOwnOpinionsAndStrongerThanReferences)
{
    const UsdStageRefPtr scene = stage(
        "def \"X\" { double b = 3 }\n"
        "def \"A\" ( variants = { string v = \"x\" }\n prepend variantSets = \"v\"\n references = </X> ) {\n"
        " double a = 5\n variantSet \"v\" = { \"x\" { double a = 1\n double b = 1 } } }");
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a")), 5);
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.b")), 1);
}

TEST(Variants, OfAReferencedPrimAreSelectedWhereItIsReferenced)
{
    const Referencing scene("def \"X\" ( variants = { string v = \"x\" }\n prepend variantSets = \"v\" ) {\n"
                            " variantSet \"v\" = { \"x\" { double a = 1 }\n \"y\" { double a = 2 } } }",
                            "def \"A\" ( references = @ASSET@</X>\n variants = { string v = \"y\" } ) { }\n"
                            "def \"B\" ( references = @ASSET@</X> ) { }");
    EXPECT_EQ(valueOf<double>(attribute(scene.stage, "/A.a")), 2);
    EXPECT_EQ(valueOf<double>(attribute(scene.stage, "/B.a")), 1);
}

TEST(Variants, MayHoldVariantsAndReferences)
{
    const UsdStageRefPtr scene = stage(
        "def \"X\" { double r = 7 }\n"
        "def \"A\" ( variants = { string v = \"x\"\n string w = \"p\" }\n prepend variantSets = \"v\" ) {\n"
        " variantSet \"v\" = { \"x\" ( prepend variantSets = \"w\"\n references = </X> ) {\n"
        "  variantSet \"w\" = { \"p\" { double a = 1 }\n \"q\" { double a = 2 } } } } }");
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a")), 1);
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.r")), 7);
}

TEST(Variants, AreEditedThroughTheirEditTarget)
{
    const UsdStageRefPtr scene =
        stage("def \"A\" ( variants = { string v = \"x\" }\n prepend variantSets = \"v\" ) {\n"
              " variantSet \"v\" = { \"x\" { double a = 1 } } }");
    {
        const UsdEditContext context(prim(scene, "/A").GetVariantSet("v").GetVariantEditContext());
        attribute(scene, "/A.a").Set(3.0);
        scene->DefinePrim(SdfPath("/A/B"));
    }
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a")), 3);
    EXPECT_TRUE(prim(scene, "/A/B"));
    EXPECT_TRUE(scene->GetRootLayer()->GetPrimAtPath(SdfPath("/A{v=x}B")));
    EXPECT_FALSE(scene->GetRootLayer()->GetPrimAtPath(SdfPath("/A/B")));
}

TEST(Variants, FallBackOnWhatTheProcessPrefers)
{
    UsdStage::SetGlobalVariantFallbacks({{"v", {"none", "y"}}});
    const UsdStageRefPtr scene =
        stage("def \"A\" ( prepend variantSets = \"v\" ) {\n"
              " variantSet \"v\" = { \"x\" { double a = 1 }\n \"y\" { double a = 2 } } }");
    UsdStage::SetGlobalVariantFallbacks({});
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a")), 2);
}
