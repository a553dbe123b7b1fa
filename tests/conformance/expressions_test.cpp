#include "scene.h"

#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/sdf/variableExpression.h>
#include <pxr/usd/usd/variantSets.h>

#include <cstdint>

namespace conformance {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const VtDictionary kVariables{{"S", VtValue(std::string("shot"))},
                              {"N", VtValue(3)},
                              {"B", VtValue(true)},
                              {"L", VtValue(VtArray<std::string>{"a", "b"})},
                              {"E", VtValue(std::string("`\"${S}_x\"`"))},
                              {"R", VtValue(std::string("`${R}`"))},
                              {"D", VtValue(1.5)}};

VtValue evaluate(const std::string& text)
{
    return SdfVariableExpression("`" + text + "`").Evaluate(kVariables).value;
}

bool isError(const std::string& text)
{
    const SdfVariableExpression::Result result = SdfVariableExpression("`" + text + "`").Evaluate(kVariables);
    return result.value.IsEmpty() && !result.errors.empty();
}

TEST(Expressions, StandBetweenBackquotes)
{
    EXPECT_TRUE(SdfVariableExpression::IsExpression("`${S}`"));
    EXPECT_FALSE(SdfVariableExpression::IsExpression("``"));
    EXPECT_FALSE(SdfVariableExpression::IsExpression("a`b`"));
    EXPECT_FALSE(SdfVariableExpression("`${S`"));
    EXPECT_TRUE(SdfVariableExpression("`${S}`"));
}

TEST(Expressions, HaveStringsNumbersTruthListsAndNothing)
{
    EXPECT_EQ(evaluate("\"a_${S}_b\""), VtValue(std::string("a_shot_b")));
    EXPECT_EQ(evaluate("'it is'"), VtValue(std::string("it is")));
    EXPECT_EQ(evaluate("-12"), VtValue(std::int64_t(-12)));
    EXPECT_EQ(evaluate("true"), VtValue(true));
    EXPECT_EQ(evaluate("False"), VtValue(false));
    EXPECT_EQ(evaluate("[1, 2]"), VtValue(VtArray<std::int64_t>{1, 2}));
    EXPECT_TRUE(evaluate("None").IsEmpty());
    EXPECT_FALSE(isError("None"));
    EXPECT_TRUE(evaluate("[]").IsHolding<SdfVariableExpression::EmptyList>());
}

TEST(Expressions, TakeVariablesAndWhatTheirOwnExpressionsStandFor)
{
    EXPECT_EQ(evaluate("${S}"), VtValue(std::string("shot")));
    EXPECT_EQ(evaluate("${N}"), VtValue(std::int64_t(3)));
    EXPECT_EQ(evaluate("\"${E}\""), VtValue(std::string("shot_x")));
    EXPECT_EQ(evaluate("\"a${GONE}b\""), VtValue(std::string("aGONEb")));
    EXPECT_TRUE(isError("${GONE}"));
    EXPECT_TRUE(isError("${R}"));
    EXPECT_TRUE(isError("${D}"));
    EXPECT_TRUE(isError("\"${N}\""));
}

TEST(Expressions, UnescapeText)
{
    EXPECT_EQ(evaluate("\"\\${S} \\`q\\` \\\\ \\\"\""), VtValue(std::string("${S} `q` \\ \"")));
}

TEST(Expressions, CallFunctions)
{
    EXPECT_EQ(evaluate("if(${B}, 1, 2)"), VtValue(std::int64_t(1)));
    EXPECT_TRUE(evaluate("if(false, 1)").IsEmpty());
    EXPECT_EQ(evaluate("eq(${S}, \"shot\")"), VtValue(true));
    EXPECT_EQ(evaluate("neq(1, 2)"), VtValue(true));
    EXPECT_EQ(evaluate("lt(\"a\", \"b\")"), VtValue(true));
    EXPECT_EQ(evaluate("leq(2, 2)"), VtValue(true));
    EXPECT_EQ(evaluate("gt(2, 2)"), VtValue(false));
    EXPECT_EQ(evaluate("geq(2, 3)"), VtValue(false));
    EXPECT_EQ(evaluate("and(true, ${B}, false)"), VtValue(false));
    EXPECT_EQ(evaluate("or(false, true)"), VtValue(true));
    EXPECT_EQ(evaluate("not(true)"), VtValue(false));
    EXPECT_EQ(evaluate("contains(${L}, \"b\")"), VtValue(true));
    EXPECT_EQ(evaluate("contains(\"shot\", \"ho\")"), VtValue(true));
    EXPECT_EQ(evaluate("at(${L}, -1)"), VtValue(std::string("b")));
    EXPECT_EQ(evaluate("at(\"xyz\", 1)"), VtValue(std::string("y")));
    EXPECT_EQ(evaluate("len([1, 2, 3])"), VtValue(std::int64_t(3)));
    EXPECT_EQ(evaluate("len([])"), VtValue(std::int64_t(0)));
    EXPECT_EQ(evaluate("defined(\"S\", \"N\")"), VtValue(true));
    EXPECT_EQ(evaluate("defined(\"GONE\")"), VtValue(false));
}

TEST(Expressions, RefuseWhatDoesNotFit)
{
    for (const char* text :
         {"if(1, 2, 3)", "if(true, 1, \"a\")", "eq(1, \"a\")", "and(true, 1)", "not(1)", "at(${L}, 2)",
          "at(3, 0)", "len(3)", "contains(${L}, 1)", "[1, \"a\"]", "nope(1)", "if(true)", "1 2", "\"a",
          "[1, 2", "99999999999999999999", "lt(None, None)", "defined(1)", "${1}"}) {
        EXPECT_TRUE(isError(text)) << text;
    }
    EXPECT_EQ(evaluate("eq(None, None)"), VtValue(true));
}

TEST(Expressions, TellWhichVariablesTheyAskedFor)
{
    const auto result = SdfVariableExpression("`if(defined(\"S\"), \"${E}\", ${GONE})`").Evaluate(kVariables);
    EXPECT_EQ(result.usedVariables, (std::unordered_set<std::string>{"E", "S", "GONE"}));
}

TEST(Expressions, ChooseSublayersReferencesPayloadsAndVariants)
{
    const Scene scene({{"root.usda", R"((
            expressionVariables = { string N = "a"; string V = "y" }
            subLayers = [@`"./${N}_sub.usda"`@])
        def "P" (
            prepend references = @`"./${N}.usda"`@</R>
            prepend payload = @`"./${N}.usda"`@</L>
            variants = { string v = "`${V}`" }
            prepend variantSets = "v"
        ) { variantSet "v" = { "x" { double d = 1 }
            "y" { double d = 2 }
            } })"},
                       {"a_sub.usda", "over \"P\" {}"},
                       {"a.usda", "def \"R\" {}\ndef \"L\" {}"}});
    EXPECT_THAT(scene.GetPrimStack("/P"), ElementsAre("root /P", "a_sub /P", "root /P{v=y}", "a /R", "a /L"));
    EXPECT_EQ(scene.GetPrim("/P").GetVariantSet("v").GetVariantSelection(), "y");
    EXPECT_EQ(scene.Get<double>("/P.d"), 2);
}

TEST(Expressions, TakeTheVariablesOfTheReferencingLayersFirst)
{
    const Scene scene({{"root.usda", R"(( expressionVariables = { string N = "b" } )
        def "P" ( prepend references = @mid.usda@</M> ) {})"},
                       {"mid.usda", R"(( expressionVariables = { string N = "a"; string K = "Own" } )
        def "M" ( prepend references = [@`"./${N}.usda"`@</R>, @`"./${K}.usda"`@</R>] ) {})"},
                       {"a.usda", "def \"R\" {}"},
                       {"b.usda", "def \"R\" {}"},
                       {"Own.usda", "def \"R\" {}"}});
    EXPECT_THAT(scene.GetPrimStack("/P"), ElementsAre("root /P", "mid /M", "b /R", "Own /R"));
}

TEST(Expressions, ThatGiveNothingLeaveTheArcOut)
{
    const Scene scene({{"root.usda", R"(( expressionVariables = { bool B = false } )
        def "P" ( prepend references = [@`if(${B}, "./a.usda")`@</R>, @`${GONE}`@</R>, @./a.usda@</R>] ) {})"},
                       {"a.usda", "def \"R\" {}"}});
    EXPECT_THAT(scene.GetPrimStack("/P"), ElementsAre("root /P", "a /R"));
}

TEST(Expressions, InAssetValuesAreEvaluatedWhereTheyAreWritten)
{
    const Scene scene({{"root.usda", R"(( expressionVariables = { string N = "b" } )
        def "P" ( prepend references = @mid.usda@</M> ) {})"},
                       {"mid.usda", R"(( expressionVariables = { string N = "a" } )
        def "M" { asset one = @`"./${N}.usda"`@
            asset[] more = [@./b.usda@, @`"${N}"`@]
            asset bad = @`${GONE}`@ })"},
                       {"b.usda", ""}});
    const auto one = scene.Get<SdfAssetPath>("/P.one");
    EXPECT_EQ(one.GetAssetPath(), "./b.usda");
    EXPECT_EQ(one.GetResolvedPath(), scene.GetFile("b.usda"));
    EXPECT_EQ(scene.Get<VtArray<SdfAssetPath>>("/P.more")[1].GetAssetPath(), "b");
    EXPECT_EQ(scene.Get<SdfAssetPath>("/P.bad").GetAssetPath(), "`${GONE}`");
}

TEST(Expressions, FollowTheirVariables)
{
    const Scene scene({{"root.usda", R"(( expressionVariables = { string N = "a" } )
        def "P" ( prepend references = @`"./${N}.usda"`@</R> ) {})"},
                       {"a.usda", "def \"R\" {}"},
                       {"b.usda", "def \"R\" {}"}});
    scene.GetStage()->GetRootLayer()->SetExpressionVariables({{"N", VtValue(std::string("b"))}});
    EXPECT_THAT(scene.GetPrimStack("/P"), ElementsAre("root /P", "b /R"));
}

} // namespace
} // namespace conformance
