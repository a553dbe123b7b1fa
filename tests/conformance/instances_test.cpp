#include "scene.h"

#include <pxr/usd/usd/primRange.h>
#include <pxr/usd/usd/relationship.h>

namespace conformance {
namespace {

using ::testing::ElementsAre;

const std::map<std::string, std::string>& Files()
{
    static const std::map<std::string, std::string> files{
        {"root.usda", R"(
        def "A" ( instanceable = true; prepend references = @a.usda@</R> ) { over "K" { int a = 9 } int own = 1 }
        def "B" ( instanceable = true; prepend references = @a.usda@</R> ) {}
        def "Other" ( instanceable = true; prepend references = @a.usda@</R> ( offset = 5 ) ) {})"},
        {"a.usda", "def \"R\" { int own = 2\n def \"K\" { int a = 1\n rel to = </R/K/L>\n def \"L\" {} } }"}};
    return files;
}

TEST(Instances, ShareAPrototypeWhereTheirArcsAreTheSame)
{
    const Scene scene(Files());
    EXPECT_TRUE(scene.GetPrim("/A").IsInstance());
    EXPECT_EQ(scene.GetPrim("/A").GetPrototype(), scene.GetPrim("/B").GetPrototype());
    EXPECT_NE(scene.GetPrim("/A").GetPrototype(), scene.GetPrim("/Other").GetPrototype());
    EXPECT_EQ(2u, scene.GetStage()->GetPrototypes().size());
}

TEST(Instances, IgnoreWhatIsWrittenBelowThem)
{
    const Scene scene(Files());
    EXPECT_EQ(1, scene.Get<int>("/A/K.a"));
    EXPECT_EQ(1, scene.Get<int>("/A.own"));
    EXPECT_EQ(2, scene.Get<int>("/B.own"));
}

TEST(Instances, HaveNoChildrenButProxies)
{
    const Scene scene(Files());
    EXPECT_TRUE(scene.GetChildren("/A").empty());
    const UsdPrim proxy = scene.GetPrim("/A/K/L");
    ASSERT_TRUE(proxy);
    EXPECT_TRUE(proxy.IsInstanceProxy());
    EXPECT_EQ(SdfPath("/A/K"), proxy.GetParent().GetPath());
    EXPECT_TRUE(proxy.GetPrimInPrototype().IsInPrototype());
}

TEST(Instances, AreEnteredOnlyByTraversalsThatAsk)
{
    const Scene scene(Files());
    Strings plain;
    for (const UsdPrim& prim : scene.GetStage()->Traverse()) {
        plain.push_back(prim.GetPath().GetString());
    }
    EXPECT_THAT(plain, ElementsAre("/A", "/B", "/Other"));
    Strings all;
    for (const UsdPrim& prim : scene.GetStage()->Traverse(UsdTraverseInstanceProxies())) {
        all.push_back(prim.GetPath().GetString());
    }
    EXPECT_THAT(
        all, ElementsAre("/A", "/A/K", "/A/K/L", "/B", "/B/K", "/B/K/L", "/Other", "/Other/K", "/Other/K/L"));
}

TEST(Instances, MapTheTargetsOfTheirProxies)
{
    const Scene scene(Files());
    EXPECT_THAT(scene.GetTargets("/A/K.to"), ElementsAre("/A/K/L"));
    EXPECT_THAT(scene.GetTargets("/B/K.to"), ElementsAre("/B/K/L"));
}

TEST(Instances, MayHoldInstances)
{
    const Scene scene({{"root.usda", R"(
        def "A" ( instanceable = true; prepend references = @a.usda@</R> ) {}
        def "B" ( instanceable = true; prepend references = @a.usda@</R> ) {})"},
                       {"a.usda", R"(
        def "R" {
            def "One" ( instanceable = true; prepend references = @b.usda@</L> ) {}
            def "Two" ( instanceable = true; prepend references = @b.usda@</L> ) {} })"},
                       {"b.usda", "def \"L\" { def \"Leaf\" {} }"}});
    EXPECT_EQ(2u, scene.GetStage()->GetPrototypes().size());
    EXPECT_TRUE(scene.GetPrim("/A/One/Leaf").IsInstanceProxy());
    EXPECT_EQ(scene.GetPrim("/A/One").GetPrototype(), scene.GetPrim("/B/Two").GetPrototype());
}

TEST(Instances, NeedAnArc)
{
    const Scene scene("def \"A\" ( instanceable = true ) { def \"K\" {} }");
    EXPECT_FALSE(scene.GetPrim("/A").IsInstance());
    EXPECT_THAT(scene.GetChildren("/A"), ElementsAre("K"));
}

TEST(Instances, DoNotShareWhereVariantsDiffer)
{
    const Scene scene({{"root.usda", R"(
        def "A" ( instanceable = true; prepend references = @a.usda@</R>; variants = { string v = "x" } ) {}
        def "B" ( instanceable = true; prepend references = @a.usda@</R>; variants = { string v = "y" } ) {}
        def "C" ( instanceable = true; prepend references = @a.usda@</R>; variants = { string v = "x" } ) {})"},
                       {"a.usda", R"(
        def "R" ( prepend variantSets = "v" ) {
            variantSet "v" = { "x" { def "X" {} } "y" { def "Y" {} } }
        })"}});
    EXPECT_NE(scene.GetPrim("/A").GetPrototype(), scene.GetPrim("/B").GetPrototype());
    EXPECT_EQ(scene.GetPrim("/A").GetPrototype(), scene.GetPrim("/C").GetPrototype());
    EXPECT_TRUE(scene.GetPrim("/B/Y"));
}

} // namespace
} // namespace conformance
