#include "scene.h"

#include <pxr/base/vt/array.h>
#include <pxr/usd/usd/collectionAPI.h>
#include <pxr/usd/usd/relationship.h>
#include <pxr/usd/usdShade/materialBindingAPI.h>

namespace conformance {
namespace {

using ::testing::ElementsAre;

TEST(Targets, FollowTheArcsThatBringThem)
{
    const Scene scene({{"root.usda", "def \"P\" ( prepend references = @a.usda@</R> ) {}"},
                       {"a.usda", "def \"R\" { rel r = [</R/K>, </R.d>]\n double d = 1\n def \"K\" {} }"}});
    EXPECT_THAT(scene.GetTargets("/P.r"), ElementsAre("/P/K", "/P.d"));
}

TEST(Targets, OutsideOfAReferenceAreLeftOutAndAnswerFalse)
{
    const Scene scene({{"root.usda", "def \"P\" ( prepend references = @a.usda@</R> ) {}"},
                       {"a.usda", "def \"R\" { rel r = [</R>, </Q>] }\ndef \"Q\" {}"}});
    SdfPathVector targets;
    EXPECT_FALSE(scene.GetStage()->GetRelationshipAtPath(SdfPath("/P.r")).GetTargets(&targets));
    EXPECT_THAT(ToStrings(targets), ElementsAre("/P"));
}

TEST(Targets, OutsideOfAnInternalArcStayWhatTheyAre)
{
    const Scene scene(R"(
        def "P" ( prepend references = </R> ) {}
        def "I" ( prepend inherits = </R> ) {}
        def "R" { rel r = [</R/K>, </Q>]; def "K" {} }
        def "Q" {})");
    EXPECT_THAT(scene.GetTargets("/P.r"), ElementsAre("/P/K", "/Q"));
    EXPECT_THAT(scene.GetTargets("/I.r"), ElementsAre("/I/K", "/Q"));
}

TEST(Targets, AreListEdited)
{
    const Scene scene({{"root.usda", R"(( subLayers = [@a.usda@] )
        over "P" { prepend rel r = </Z>
                   delete rel r = </B> })"},
                       {"a.usda", "def \"P\" { rel r = [</A>, </B>, </C>] }"}});
    EXPECT_THAT(scene.GetTargets("/P.r"), ElementsAre("/Z", "/A", "/C"));
}

TEST(Targets, OfRelationshipsAreForwarded)
{
    const Scene scene(R"(
        def "P" { rel r = [</Q.r>, </A>] }
        def "Q" { rel r = [</B>, </P.r>] }
        def "A" {} def "B" {})");
    SdfPathVector targets;
    EXPECT_TRUE(scene.GetStage()->GetRelationshipAtPath(SdfPath("/P.r")).GetForwardedTargets(&targets));
    EXPECT_THAT(ToStrings(targets), ElementsAre("/B", "/A"));
}

TEST(Connections, FollowTheArcsThatBringThem)
{
    const Scene scene({{"root.usda", "def \"P\" ( prepend references = @a.usda@</R> ) {}"},
                       {"a.usda", "def \"R\" { double d.connect = </R/K.e>\n def \"K\" { double e = 1 } }"}});
    SdfPathVector sources;
    EXPECT_TRUE(scene.GetAttribute("/P.d").GetConnections(&sources));
    EXPECT_THAT(ToStrings(sources), ElementsAre("/P/K.e"));
}

TEST(Properties, ComeInTheOrderOfADictionaryUnlessReordered)
{
    const Scene scene(R"(
        def "P" { int b10 = 1
                  int b9 = 1
                  int A = 1 }
        def "Q" { reorder properties = ["c", "a"]
                  int a = 1
                  int b = 1
                  int c = 1 })");
    EXPECT_THAT(ToStrings(scene.GetPrim("/P").GetPropertyNames()), ElementsAre("A", "b9", "b10"));
    EXPECT_THAT(ToStrings(scene.GetPrim("/Q").GetPropertyNames()), ElementsAre("c", "a", "b"));
}

TEST(Properties, AreCustomWhereAnyOpinionSaysSoAndNoSchemaKnowsThem)
{
    const Scene scene(
        {{"root.usda", "( subLayers = [@a.usda@] )\nover \"P\" { double d = 1 }"},
         {"a.usda", "def Sphere \"P\" { custom double d = 1\n custom double radius = 2\n double e = 1 }"}});
    EXPECT_TRUE(scene.GetAttribute("/P.d").IsCustom());
    EXPECT_FALSE(scene.GetAttribute("/P.radius").IsCustom());
    EXPECT_FALSE(scene.GetAttribute("/P.e").IsCustom());
}

TEST(Metadata, ThatIsADictionaryIsMergedKeyByKey)
{
    const Scene scene({{"root.usda", R"(( subLayers = [@a.usda@] )
        over "P" ( customData = { int a = 1
                                  dictionary d = { int x = 1 } } ) {})"},
                       {"a.usda", R"(
        def "P" ( customData = { int a = 2
                                 int b = 2
                                 dictionary d = { int x = 2
                                                  int y = 2 } } ) {})"}});
    const VtDictionary data = scene.GetPrim("/P").GetCustomData();
    EXPECT_EQ(1, VtDictionaryGet<int>(data, "a"));
    EXPECT_EQ(2, VtDictionaryGet<int>(data, "b"));
    const VtDictionary inner = VtDictionaryGet<VtDictionary>(data, "d");
    EXPECT_EQ(1, VtDictionaryGet<int>(inner, "x"));
    EXPECT_EQ(2, VtDictionaryGet<int>(inner, "y"));
}

TEST(Schemas, AreAppliedByListEdits)
{
    const Scene scene({{"root.usda", R"(( subLayers = [@a.usda@] )
        over "P" ( prepend apiSchemas = ["GeomModelAPI"]
                   delete apiSchemas = ["MotionAPI"] ) {})"},
                       {"a.usda", "def \"P\" ( apiSchemas = [\"MotionAPI\", \"MaterialBindingAPI\"] ) {}"}});
    EXPECT_THAT(ToStrings(scene.GetPrim("/P").GetAppliedSchemas()),
                ElementsAre("GeomModelAPI", "MaterialBindingAPI"));
    EXPECT_TRUE(scene.GetPrim("/P").HasAPI<UsdShadeMaterialBindingAPI>());
}

TEST(Schemas, ThatAreAppliedBringTheirProperties)
{
    const Scene scene("def \"P\" ( prepend apiSchemas = [\"CollectionAPI:mine\"] ) {}");
    TfToken rule;
    EXPECT_TRUE(scene.GetAttribute("/P.collection:mine:expansionRule").Get(&rule));
    EXPECT_EQ("expandPrims", rule);
    EXPECT_FALSE(scene.GetAttribute("/P.collection:other:expansionRule"));
}

TEST(Materials, AreBoundDownToTheNearestBindingUnlessAStrongerOneIsAbove)
{
    const Scene scene(R"(
        def Material "M" {}
        def Material "N" {}
        def Xform "P" ( prepend apiSchemas = ["MaterialBindingAPI"] ) { rel material:binding = </M>
            def Sphere "A" {}
            def Sphere "B" ( prepend apiSchemas = ["MaterialBindingAPI"] ) { rel material:binding = </N> } }
        def Xform "Q" ( prepend apiSchemas = ["MaterialBindingAPI"] ) {
            rel material:binding = </M> ( bindMaterialAs = "strongerThanDescendants" )
            def Sphere "B" ( prepend apiSchemas = ["MaterialBindingAPI"] ) { rel material:binding = </N> } })");
    const auto bound = [&scene](const char* path) {
        return UsdShadeMaterialBindingAPI(scene.GetPrim(path)).ComputeBoundMaterial().GetPath().GetString();
    };
    EXPECT_EQ("/M", bound("/P/A"));
    EXPECT_EQ("/N", bound("/P/B"));
    EXPECT_EQ("/M", bound("/Q/B"));
}

} // namespace
} // namespace conformance
