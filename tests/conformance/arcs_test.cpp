#include "scene.h"

namespace conformance {
namespace {

using ::testing::ElementsAre;

TEST(Arcs, OfOnePrimAreStrongInTheOrderOfTheirKinds)
{
    const Scene scene({{"root.usda", R"(
        def "P" (
            prepend inherits = </C>
            prepend specializes = </S>
            prepend references = @a.usda@</R>
            prepend payload = @a.usda@</L>
            variants = { string v = "x" }
            prepend variantSets = "v"
        ) { variantSet "v" = { "x" { } }
        }
        class "C" {}
        class "S" {})"},
                       {"a.usda", "def \"R\" {}\ndef \"L\" {}"}});
    EXPECT_THAT(scene.GetPrimStack("/P"),
                ElementsAre("root /P", "root /C", "root /P{v=x}", "a /R", "a /L", "root /S"));
}

TEST(Arcs, ReachWhatIsBelow)
{
    const Scene scene({{"root.usda", "def \"P\" ( prepend references = @a.usda@</R> ) { over \"K\" {} }"},
                       {"a.usda", "def \"R\" { def \"K\" { def \"L\" {} } }"}});
    EXPECT_THAT(scene.GetPrimStack("/P/K"), ElementsAre("root /P/K", "a /R/K"));
    EXPECT_THAT(scene.GetPrimStack("/P/K/L"), ElementsAre("a /R/K/L"));
}

TEST(Arcs, OfAPrimAreStrongerThanThoseOfTheOneAbove)
{
    const Scene scene({{"root.usda", R"(
        def "P" ( prepend references = @a.usda@</R> ) { over "K" ( prepend references = @a.usda@</Own> ) {} }
        )"},
                       {"a.usda", "def \"R\" { def \"K\" {} }\ndef \"Own\" {}"}});
    EXPECT_THAT(scene.GetPrimStack("/P/K"), ElementsAre("root /P/K", "a /Own", "a /R/K"));
}

TEST(Arcs, OfAReferencedPrimAreWeakerThanIt)
{
    const Scene scene({{"root.usda", "def \"P\" ( prepend references = @a.usda@</R> ) {}"},
                       {"a.usda", R"(
        def "R" ( prepend inherits = </C>; prepend references = @b.usda@</B> ) {}
        class "C" {})"},
                       {"b.usda", "def \"B\" {}"}});
    EXPECT_THAT(scene.GetPrimStack("/P"), ElementsAre("root /P", "a /R", "a /C", "b /B"));
}

TEST(References, TakeTheDefaultPrimWhereNoneIsNamed)
{
    const Scene scene({{"root.usda", "def \"P\" ( prepend references = @a.usda@ ) {}"},
                       {"a.usda", "( defaultPrim = \"Y\" )\ndef \"X\" {}\ndef \"Y\" {}"}});
    EXPECT_THAT(scene.GetPrimStack("/P"), ElementsAre("root /P", "a /Y"));
}

TEST(References, LeadIntoTheirOwnLayerWhereNoFileIsNamed)
{
    const Scene scene("def \"P\" ( prepend references = </Q> ) {}\ndef \"Q\" { def \"K\" {} }");
    EXPECT_THAT(scene.GetPrimStack("/P/K"), ElementsAre("root /Q/K"));
}

TEST(References, ThatLeadToNothingLeaveTheRestAsItIs)
{
    const Scene scene(
        {{"root.usda", "def \"P\" ( prepend references = [@gone.usda@, @a.usda@</No>, @a.usda@</R>] ) {}"},
         {"a.usda", "def \"R\" { def \"K\" {} }"}});
    EXPECT_THAT(scene.GetPrimStack("/P"), ElementsAre("root /P", "a /R"));
    EXPECT_THAT(scene.GetChildren("/P"), ElementsAre("K"));
}

TEST(References, ThatLeadBackAreLeftOut)
{
    const Scene scene(
        "def \"P\" ( prepend references = </Q> ) {}\ndef \"Q\" ( prepend references = </P> ) {}");
    EXPECT_THAT(scene.GetPrimStack("/P"), ElementsAre("root /P", "root /Q"));
}

TEST(ListEdits, OfReferencesAreAppliedFromTheWeakestLayerOn)
{
    const Scene scene(
        {{"root.usda", R"(
        ( subLayers = [@top.usda@, @base.usda@] ))"},
         {"top.usda", R"(
        over "P" ( prepend references = @r.usda@</A>; append references = @r.usda@</B>
                   delete references = @r.usda@</D> ) {})"},
         {"base.usda", "def \"P\" ( references = [@r.usda@</C>, @r.usda@</D>, @r.usda@</B>] ) {}"},
         {"r.usda", "def \"A\" {}\ndef \"B\" {}\ndef \"C\" {}\ndef \"D\" {}"}});
    EXPECT_THAT(scene.GetPrimStack("/P"), ElementsAre("top /P", "base /P", "r /A", "r /C", "r /B"));
}

TEST(Sublayers, AreWeakerThanTheLayerAndStrongInTheirOrder)
{
    const Scene scene({{"root.usda", "( subLayers = [@a.usda@, @b.usda@] )\nover \"P\" {}"},
                       {"a.usda", "( subLayers = [@c.usda@] )\nover \"P\" {}"},
                       {"b.usda", "def \"P\" {}"},
                       {"c.usda", "over \"P\" {}"}});
    EXPECT_THAT(scene.GetPrimStack("/P"), ElementsAre("root /P", "a /P", "c /P", "b /P"));
}

TEST(Sublayers, IncludedTwiceCountTwiceWithTheStrongestPlacesOffset)
{
    const Scene scene(
        {{"root.usda", "( subLayers = [@a.usda@ ( offset = 5 ), @b.usda@] )\ndef \"Q\" {}"},
         {"a.usda", "( subLayers = [@b.usda@] )"},
         {"b.usda", "def \"P\" ( prepend references = </Q> ) { double d.timeSamples = { 1: 1 } }"}});
    EXPECT_THAT(scene.GetPrimStack("/P"), ElementsAre("b /P", "b /P", "root /Q"));
    std::vector<double> offsets;
    for (const auto& [spec, offset] : scene.GetPrim("/P").GetPrimStackWithLayerOffsets()) {
        offsets.push_back(offset.GetOffset());
    }
    EXPECT_THAT(offsets, ElementsAre(5, 5, 5));
}

TEST(Sublayers, ThatIncludeEachOtherOrAreMissingAreLeftOut)
{
    const Scene scene({{"root.usda", "( subLayers = [@a.usda@, @gone.usda@] )\nover \"P\" {}"},
                       {"a.usda", "( subLayers = [@root.usda@] )\ndef \"P\" {}"}});
    EXPECT_THAT(scene.GetPrimStack("/P"), ElementsAre("root /P", "a /P"));
}

TEST(Inherits, AreImpliedWhereTheirPrimIsReferenced)
{
    const Scene scene(
        {{"root.usda", R"(
        def "P" ( prepend references = @a.usda@</R> ) {}
        class "C" { int strong = 1 })"},
         {"a.usda", "def \"R\" ( prepend inherits = </C> ) { int strong = 2 }\nclass \"C\" {}"}});
    EXPECT_THAT(scene.GetPrimStack("/P"), ElementsAre("root /P", "root /C", "a /R", "a /C"));
    EXPECT_EQ(1, scene.Get<int>("/P.strong"));
}

TEST(Inherits, OfASiblingInsideAModelFollowTheModel)
{
    const Scene scene({{"root.usda", R"(
        def "P" ( prepend references = @a.usda@</R> ) { over "C" { int strong = 1 } })"},
                       {"a.usda", R"(
        def "R" { class "C" { int strong = 2 }  def "K" ( prepend inherits = </R/C> ) {} })"}});
    EXPECT_THAT(scene.GetPrimStack("/P/K"), ElementsAre("root /P/C", "a /R/K", "a /R/C"));
    EXPECT_EQ(1, scene.Get<int>("/P/K.strong"));
}

TEST(Inherits, ChainUp)
{
    const Scene scene(R"(
        def "P" ( prepend inherits = </C> ) {}
        class "C" ( prepend inherits = </D> ) {}
        class "D" { def "K" {} })");
    EXPECT_THAT(scene.GetPrimStack("/P"), ElementsAre("root /P", "root /C", "root /D"));
    EXPECT_THAT(scene.GetPrimStack("/P/K"), ElementsAre("root /D/K"));
}

TEST(Specializes, AreWeakerThanAllThatTheReferencingPrimSays)
{
    const Scene scene({{"root.usda", R"(
        def "P" ( prepend references = @a.usda@</R> ) {}
        def "S" { int a = 1 })"},
                       {"a.usda", R"(
        def "R" ( prepend specializes = </S>; prepend references = </Q> ) {}
        def "Q" { int a = 2 }
        def "S" { int a = 3 })"}});
    EXPECT_EQ(2, scene.Get<int>("/P.a"));
    EXPECT_THAT(scene.GetPrimStack("/P"), ElementsAre("root /P", "a /R", "a /Q", "root /S", "a /S"));
}

TEST(Payloads, AreLoadedAsTheStageIsTold)
{
    const Scene scene({{"root.usda", R"(
        def "P" ( prepend payload = @a.usda@</R> ) {}
        def "Q" ( prepend payload = @a.usda@</R> ) {})"},
                       {"a.usda", "def \"R\" { def \"K\" {} }"}},
                      UsdStage::LoadNone);
    EXPECT_TRUE(scene.GetChildren("/P").empty());
    EXPECT_FALSE(scene.GetPrim("/P").IsLoaded());
    EXPECT_TRUE(scene.GetPrim("/P").HasPayload());
    scene.GetStage()->Load(SdfPath("/P"));
    EXPECT_THAT(scene.GetChildren("/P"), ElementsAre("K"));
    EXPECT_TRUE(scene.GetChildren("/Q").empty());
    scene.GetStage()->Unload(SdfPath("/P"));
    EXPECT_TRUE(scene.GetChildren("/P").empty());
}

TEST(Payloads, InsideOfPayloadsComeWithThemUnlessOnlyThePrimIsAsked)
{
    const std::map<std::string, std::string> files{
        {"root.usda", "def \"P\" ( prepend payload = @a.usda@</R> ) {}"},
        {"a.usda", "def \"R\" { def \"K\" ( prepend payload = @b.usda@</B> ) {} }"},
        {"b.usda", "def \"B\" { def \"L\" {} }"}};
    const Scene scene(files, UsdStage::LoadNone);
    scene.GetStage()->Load(SdfPath("/P"), UsdLoadWithoutDescendants);
    EXPECT_TRUE(scene.GetChildren("/P/K").empty());
    scene.GetStage()->Load(SdfPath("/P"), UsdLoadWithDescendants);
    EXPECT_THAT(scene.GetChildren("/P/K"), ElementsAre("L"));
}

TEST(Children, OfStrongerPlacesComeAfterThoseOfWeakerOnes)
{
    const Scene scene(
        {{"root.usda", "def \"P\" ( prepend references = @a.usda@</R> ) { def \"X\" {} def \"K\" {} }"},
         {"a.usda", "def \"R\" { def \"K\" {} def \"L\" {} }"}});
    EXPECT_THAT(scene.GetChildren("/P"), ElementsAre("K", "L", "X"));
}

TEST(Children, AreReordered)
{
    const Scene scene(R"(
        def "P" { reorder nameChildren = ["C", "A"]
            def "A" {} def "B" {} def "C" {} })");
    EXPECT_THAT(scene.GetChildren("/P"), ElementsAre("C", "A", "B"));
}

TEST(Prims, AreWhatTheirStrongestDefiningSpecSays)
{
    const Scene scene({{"root.usda", R"(
        over "O" {}
        over "D" ( prepend references = @a.usda@</R> ) {}
        class "C" ( prepend references = @a.usda@</R> ) { def "K" {} }
        def "I" ( prepend inherits = </C> ) {})"},
                       {"a.usda", "def Xform \"R\" {}"}});
    EXPECT_FALSE(scene.GetPrim("/O").IsDefined());
    EXPECT_EQ(SdfSpecifierDef, scene.GetPrim("/D").GetSpecifier());
    EXPECT_EQ("Xform", scene.GetPrim("/D").GetTypeName());
    EXPECT_TRUE(scene.GetPrim("/C").IsAbstract());
    EXPECT_TRUE(scene.GetPrim("/C/K").IsAbstract());
    EXPECT_FALSE(scene.GetPrim("/I").IsAbstract());
}

TEST(Prims, ThatAreInactiveHaveNoChildren)
{
    const Scene scene("def \"P\" ( active = false ) { def \"K\" {} }");
    EXPECT_FALSE(scene.GetPrim("/P").IsActive());
    EXPECT_FALSE(scene.GetPrim("/P/K"));
}

} // namespace
} // namespace conformance
