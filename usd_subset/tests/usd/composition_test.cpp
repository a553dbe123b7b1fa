#include "scene.h"

#include <gmock/gmock.h>

using namespace usd_tests;
using testing::ElementsAre;

TEST(Composition, SessionLayerIsStrongerThanRootLayerAndRootLayerThanItsSublayers)
{
    const SdfLayerRefPtr weak = layer("def \"A\" { double a = 1\n double b = 1\n double c = 1 }");
    const SdfLayerRefPtr root = layerWithSublayers({weak}, "over \"A\" { double b = 2\n double c = 2 }");
    const SdfLayerRefPtr session = layer("over \"A\" { double c = 3 }");
    const UsdStageRefPtr scene = UsdStage::Open(SdfLayerHandle(root), SdfLayerHandle(session));
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a")), 1);
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.b")), 2);
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.c")), 3);
}

TEST(Composition, EarlierSublayersAreStrongerThanLaterOnes)
{
    const SdfLayerRefPtr first = layer("def \"A\" { double a = 1 }");
    const SdfLayerRefPtr second = layer("def \"A\" { double a = 2 }");
    const UsdStageRefPtr scene = UsdStage::Open(SdfLayerHandle(layerWithSublayers({first, second})));
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a")), 1);
}

TEST(Composition, ASublayersOwnSublayersComeBeforeItsNextSibling)
{
    const SdfLayerRefPtr nested = layer("def \"A\" { double a = 1 }");
    const SdfLayerRefPtr first = layerWithSublayers({nested});
    const SdfLayerRefPtr second = layer("def \"A\" { double a = 2 }");
    const SdfLayerRefPtr root = layerWithSublayers({first, second});
    const UsdStageRefPtr scene = UsdStage::Open(SdfLayerHandle(root));
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a")), 1);
    EXPECT_THAT(scene->GetLayerStack(false), ElementsAre(SdfLayerHandle(root), SdfLayerHandle(first),
                                                         SdfLayerHandle(nested), SdfLayerHandle(second)));
}

TEST(Composition, APrimIsThereAsSoonAsOneLayerSpeaksOfItAndDefinedWhenOneDefinesIt)
{
    const SdfLayerRefPtr weak = layer("over \"Undefined\" { }\n over \"Defined\" { }");
    const SdfLayerRefPtr weakest = layer("def Xform \"Defined\" { }");
    const UsdStageRefPtr scene = UsdStage::Open(SdfLayerHandle(layerWithSublayers({weak, weakest})));
    ASSERT_TRUE(prim(scene, "/Undefined"));
    EXPECT_FALSE(prim(scene, "/Undefined").IsDefined());
    EXPECT_TRUE(prim(scene, "/Defined").IsDefined());
    EXPECT_EQ(prim(scene, "/Defined").GetTypeName(), TfToken("Xform"));
    EXPECT_EQ(prim(scene, "/Undefined").GetSpecifier(), SdfSpecifierOver);
}

TEST(Composition, ChildrenKeepTheWeakestLayersOrderAndNewOnesFollow)
{
    const SdfLayerRefPtr weak = layer("def \"A\" { def \"x\" {}\n def \"y\" {} }");
    const SdfLayerRefPtr root = layerWithSublayers({weak}, "over \"A\" { def \"z\" {}\n over \"y\" {} }");
    const UsdStageRefPtr scene = UsdStage::Open(SdfLayerHandle(root));
    EXPECT_THAT(texts(prim(scene, "/A").GetChildrenNames()), ElementsAre("x", "y", "z"));
}

TEST(Composition, AnAuthoredOrderMovesTheNamedChildrenInFrontOfWhatFollowsThem)
{
    const UsdStageRefPtr scene = stage(
        "def \"A\" {\n reorder nameChildren = [\"c\", \"a\"]\n def \"a\" {}\n def \"b\" {}\n def \"c\" {} }");
    EXPECT_THAT(texts(prim(scene, "/A").GetChildrenNames()), ElementsAre("c", "a", "b"));
}

TEST(Composition, PropertiesComeInDictionaryOrderWithTheAuthoredOrderOnTop)
{
    const UsdStageRefPtr scene = stage("def \"A\" {\n reorder properties = [\"c\"]\n"
                                       " double c = 0\n double b = 0\n double a10 = 0\n double a9 = 0 }");
    EXPECT_THAT(texts(prim(scene, "/A").GetAuthoredPropertyNames()), ElementsAre("c", "a9", "a10", "b"));
}

TEST(Composition, AppliedSchemasOfAllLayersAreCombined)
{
    const SdfLayerRefPtr weak = layer("def \"A\" ( prepend apiSchemas = [\"WeakAPI\"] ) { }");
    const SdfLayerRefPtr root =
        layerWithSublayers({weak}, "over \"A\" ( prepend apiSchemas = [\"StrongAPI\"] ) { }");
    const UsdStageRefPtr scene = UsdStage::Open(SdfLayerHandle(root));
    EXPECT_THAT(texts(prim(scene, "/A").GetPrimTypeInfo().GetAppliedAPISchemas()),
                ElementsAre("StrongAPI", "WeakAPI"));
}

TEST(Composition, RelationshipTargetsOfAllLayersAreCombinedByTheirListEdits)
{
    const SdfLayerRefPtr weak = layer("def \"A\" { rel r = [</X>, </Y>] }");
    const SdfLayerRefPtr root =
        layerWithSublayers({weak}, "over \"A\" { prepend rel r = </Z>\n delete rel r = </X> }");
    const UsdStageRefPtr scene = UsdStage::Open(SdfLayerHandle(root));
    SdfPathVector targets;
    EXPECT_TRUE(scene->GetRelationshipAtPath(SdfPath("/A.r")).GetTargets(&targets));
    EXPECT_THAT(targets, ElementsAre(SdfPath("/Z"), SdfPath("/Y")));
}

TEST(Composition, ForwardedTargetsFollowRelationshipsAndStopAtCycles)
{
    const UsdStageRefPtr scene = stage("def \"A\" { rel r = [</B.s>, </C>] }\n def \"B\" { rel s = [</D>, "
                                       "</A.r>] }\n def \"C\" {}\n def \"D\" {}");
    SdfPathVector targets;
    EXPECT_TRUE(scene->GetRelationshipAtPath(SdfPath("/A.r")).GetForwardedTargets(&targets));
    EXPECT_THAT(targets, ElementsAre(SdfPath("/D"), SdfPath("/C")));
}

TEST(Composition, AMissingSublayerIsOneWarningAndTheRestStays)
{
    const SdfLayerRefPtr root = layer("def \"A\" { double a = 1 }");
    root->InsertSubLayerPath("no/such/file.usda");
    Warnings warnings;
    const UsdStageRefPtr scene = UsdStage::Open(SdfLayerHandle(root));
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a")), 1);
    EXPECT_THAT(warnings.texts, ElementsAre("Sublayer @no/such/file.usda@ of @" + root->GetIdentifier() +
                                            "@ was left out: the file was not found"));
}

TEST(Composition, ASublayerThatIncludesItselfIsOneWarningAndTheRestStays)
{
    const SdfLayerRefPtr a = layer("def \"A\" { }");
    const SdfLayerRefPtr b = layer("def \"B\" { }");
    a->InsertSubLayerPath(b->GetIdentifier());
    b->InsertSubLayerPath(a->GetIdentifier());
    Warnings warnings;
    const UsdStageRefPtr scene = UsdStage::Open(SdfLayerHandle(a));
    EXPECT_TRUE(prim(scene, "/A"));
    EXPECT_TRUE(prim(scene, "/B"));
    EXPECT_THAT(warnings.texts,
                ElementsAre("Sublayer @" + a->GetIdentifier() + "@ of @" + b->GetIdentifier() +
                            "@ was left out: it includes itself. Remove the cycle."));
}

TEST(Composition, BelowAnInactivePrimNothingIsComposed)
{
    const UsdStageRefPtr scene = stage("def \"A\" ( active = false ) { def \"B\" {} }");
    ASSERT_TRUE(prim(scene, "/A"));
    EXPECT_FALSE(prim(scene, "/A").IsActive());
    EXPECT_FALSE(prim(scene, "/A/B"));
}

TEST(Composition, AMutedLayerDoesNotTakePart)
{
    const SdfLayerRefPtr strong = layer("over \"A\" { double a = 2 }");
    const SdfLayerRefPtr weak = layer("def \"A\" { double a = 1 }");
    const UsdStageRefPtr scene = UsdStage::Open(SdfLayerHandle(layerWithSublayers({strong, weak})));
    scene->MuteLayer(strong->GetIdentifier());
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a")), 1);
    EXPECT_TRUE(scene->IsLayerMuted(strong->GetIdentifier()));
    scene->UnmuteLayer(strong->GetIdentifier());
    EXPECT_EQ(valueOf<double>(attribute(scene, "/A.a")), 2);
}

TEST(Composition, ModelHierarchyNeedsGroupsAllTheWayUp)
{
    const UsdStageRefPtr scene = stage("def \"Set\" ( kind = \"assembly\" ) {\n"
                                       " def \"Chair\" ( kind = \"component\" ) {\n"
                                       "  def \"Leg\" ( kind = \"component\" ) {} }\n"
                                       " def \"Loose\" { def \"Cup\" ( kind = \"component\" ) {} } }");
    EXPECT_TRUE(prim(scene, "/Set").IsGroup());
    EXPECT_TRUE(prim(scene, "/Set/Chair").IsComponent());
    EXPECT_FALSE(prim(scene, "/Set/Chair").IsGroup());
    EXPECT_FALSE(prim(scene, "/Set/Chair/Leg").IsModel());
    EXPECT_FALSE(prim(scene, "/Set/Loose/Cup").IsModel());
}
