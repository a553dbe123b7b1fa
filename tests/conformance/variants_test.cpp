#include "scene.h"

#include <pxr/usd/usd/variantSets.h>

namespace conformance {
namespace {

using ::testing::ElementsAre;

constexpr const char* kNested = R"(
    def "P" (
        variants = { string outer = "a"
                     string inner = "n" }
        prepend variantSets = "outer"
    ) {
        variantSet "outer" = {
            "a" ( prepend variantSets = "inner" ) {
                int where = 1
                variantSet "inner" = {
                    "m" { int inside = 10 }
                    "n" { int inside = 20 }
                }
            }
            "b" { int where = 2 }
        }
    })";

TEST(Variants, InsideOfVariantsAreSelectedToo)
{
    const Scene scene(kNested);
    EXPECT_THAT(scene.GetPrimStack("/P"),
                ElementsAre("root /P", "root /P{outer=a}", "root /P{outer=a}{inner=n}"));
    EXPECT_EQ(20, scene.Get<int>("/P.inside"));
    EXPECT_THAT(scene.GetPrim("/P").GetVariantSets().GetNames(), ElementsAre("outer", "inner"));
}

TEST(Variants, ChangeWithTheSelection)
{
    const Scene scene(kNested);
    EXPECT_TRUE(scene.GetPrim("/P").GetVariantSet("outer").SetVariantSelection("b"));
    EXPECT_EQ(2, scene.Get<int>("/P.where"));
    EXPECT_FALSE(scene.GetAttribute("/P.inside"));
    EXPECT_THAT(scene.GetPrim("/P").GetVariantSet("outer").GetVariantNames(), ElementsAre("a", "b"));
}

TEST(Variants, MayBringReferencesWithThem)
{
    const Scene scene({{"root.usda", R"(
        def "P" ( variants = { string v = "x" }; prepend variantSets = "v" ) {
            variantSet "v" = { "x" ( prepend references = @a.usda@</R> ) { over "K" { int a = 1 } } }
        })"},
                       {"a.usda", "def \"R\" { def \"K\" { int a = 2 } }"}});
    EXPECT_THAT(scene.GetPrimStack("/P/K"), ElementsAre("root /P{v=x}K", "a /R/K"));
    EXPECT_EQ(1, scene.Get<int>("/P/K.a"));
}

TEST(Variants, OfAReferencedPrimAreSelectedWhereItIsReferenced)
{
    const std::map<std::string, std::string> files{
        {"root.usda", "def \"P\" ( prepend references = @a.usda@</R>; variants = { string v = \"y\" } ) {}"},
        {"a.usda", R"(
        def "R" ( variants = { string v = "x" }; prepend variantSets = "v" ) {
            variantSet "v" = { "x" { int a = 1 } "y" { int a = 2 } }
        })"}};
    const Scene scene(files);
    EXPECT_EQ(2, scene.Get<int>("/P.a"));
    EXPECT_EQ("y", scene.GetPrim("/P").GetVariantSet("v").GetVariantSelection());
}

TEST(Variants, AreStrongerThanReferencesAndWeakerThanThePrim)
{
    const Scene scene({{"root.usda", R"(
        def "P" ( prepend references = @a.usda@</R>; variants = { string v = "x" }; prepend variantSets = "v" ) {
            int own = 1
            variantSet "v" = { "x" { int own = 2
                                     int both = 2 } }
        })"},
                       {"a.usda", "def \"R\" { int both = 3\n int own = 3 }"}});
    EXPECT_EQ(1, scene.Get<int>("/P.own"));
    EXPECT_EQ(2, scene.Get<int>("/P.both"));
}

TEST(Variants, WithoutASelectionSayNothing)
{
    const Scene scene(R"(
        def "P" ( prepend variantSets = "v" ) { variantSet "v" = { "x" { int a = 1 } }
        })");
    EXPECT_FALSE(scene.GetAttribute("/P.a"));
    EXPECT_EQ("", scene.GetPrim("/P").GetVariantSet("v").GetVariantSelection());
}

TEST(Variants, AddChildren)
{
    const Scene scene(R"(
        def "P" ( variants = { string v = "x" }; prepend variantSets = "v" ) {
            def "A" {}
            variantSet "v" = { "x" { def "B" {} over "A" { int a = 1 } } }
        })");
    EXPECT_THAT(scene.GetChildren("/P"), ElementsAre("B", "A")); // those of the variant are weaker
    EXPECT_EQ(1, scene.Get<int>("/P/A.a"));
}

TEST(VariantSets, OfStrongerPlacesComeFirst)
{
    const Scene scene({{"root.usda", R"(
        def "P" ( prepend references = @a.usda@</R>; prepend variantSets = ["z", "b"] ) {})"},
                       {"a.usda", "def \"R\" ( prepend variantSets = [\"a\", \"b\"] ) {}"}});
    EXPECT_THAT(scene.GetPrim("/P").GetVariantSets().GetNames(), ElementsAre("z", "b", "a"));
}

} // namespace
} // namespace conformance
