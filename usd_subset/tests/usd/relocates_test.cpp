#include "scene.h"

#include <gmock/gmock.h>

using namespace usd_tests;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A stage whose prim P refers to a prim with children A, B and C, and what it warned of.
struct Relocated
{
    explicit Relocated(const std::string& relocates, const std::string& body = "")
    {
        const std::string model = "def \"M\" { def \"A\" { def \"X\" {} }\n def \"B\" {}\n def \"C\" {} }";
        stage = usd_tests::stage("(relocates = { " + relocates + " })\n def \"P\" (references = </M>) {" +
                                 body + "}\n" + model);
        root = "@" + stage->GetRootLayer()->GetIdentifier() + "@";
    }
    std::vector<std::string> children(const char* path = "/P") const
    {
        return texts(prim(stage, path).GetAllChildrenNames());
    }
    Warnings warnings;
    UsdStageRefPtr stage;
    std::string root;
};

} // namespace

TEST(Relocates, MoveAndRenameWithoutAWord)
{
    const Relocated scene("</P/A>: </P/D>, </P/D/X>: </P/Y>");
    EXPECT_THAT(scene.children(), ElementsAre("D", "B", "C", "Y"));
    EXPECT_THAT(scene.children("/P/D"), IsEmpty());
    EXPECT_THAT(scene.warnings.texts, IsEmpty());
}

TEST(Relocates, OfRootPrimsAreOneWarning)
{
    const Relocated scene("</P>: </Q>");
    EXPECT_THAT(scene.warnings.texts, ElementsAre("The relocate from </P> to </Q> in " + scene.root +
                                                  " was left out: a root prim cannot be moved."));
}

TEST(Relocates, BelowThemselvesAreOneWarning)
{
    const Relocated scene("</P/A>: </P/A/Z>");
    EXPECT_THAT(scene.children(), ElementsAre("A", "B", "C"));
    EXPECT_THAT(scene.warnings.texts, ElementsAre("The relocate from </P/A> to </P/A/Z> in " + scene.root +
                                                  " was left out: one of the paths lies below the other."));
}

TEST(Relocates, ToOnePlaceAreOneWarning)
{
    const Relocated scene("</P/A>: </P/D>, </P/B>: </P/D>");
    EXPECT_THAT(scene.children(), ElementsAre("A", "B", "C"));
    EXPECT_THAT(scene.warnings.texts,
                ElementsAre("The relocates from </P/A>, </P/B> were left out: they all lead to </P/D>."));
}

TEST(Relocates, OfWhatOthersMoveAreOneWarningForEach)
{
    const Relocated scene("</P/A>: </P/D>, </P/A/X>: </P/Y>, </P/B>: </P/E>, </P/E>: </P/F>");
    EXPECT_THAT(scene.children(), ElementsAre("D", "B", "C"));
    const std::string end = " in " + scene.root + ".";
    EXPECT_THAT(scene.warnings.texts,
                ElementsAre("The relocate from </P/A/X> to </P/Y> in " + scene.root +
                                " was left out: its source lies below the source of the relocate from </P/A> "
                                "to </P/D>" +
                                end,
                            "The relocate from </P/B> to </P/E> in " + scene.root +
                                " was left out: its target is the source of the relocate from </P/E> to "
                                "</P/F>" +
                                end,
                            "The relocate from </P/E> to </P/F> in " + scene.root +
                                " was left out: its source is the target of the relocate from </P/B> to "
                                "</P/E>" +
                                end));
}

TEST(Relocates, WarnOfOpinionsAtTheOldPlace)
{
    const Relocated scene("</P/A>: </P/D>", "over \"A\" {}");
    EXPECT_THAT(scene.children(), ElementsAre("D", "B", "C"));
    EXPECT_THAT(scene.warnings.texts,
                ElementsAre("The opinions on </P/A> in " + scene.root +
                            " were left out: the prim is moved to </P/D>. Write them there."));
}

TEST(Relocates, LeaveNothingForArcsToTheOldPlace)
{
    const Relocated scene("</P/A>: </P/D>", "def \"E\" (references = </P/A>) {}");
    EXPECT_THAT(scene.children("/P/E"), IsEmpty());
    ASSERT_EQ(scene.warnings.texts.size(), 1u);
    EXPECT_THAT(scene.warnings.texts[0],
                testing::StartsWith("The arc to </P/A> was left out: the prim is moved elsewhere by the "
                                    "relocates of the layers."));
}

TEST(Expressions, ThatFailAreOneWarningAndLeaveTheRest)
{
    Warnings warnings;
    const UsdStageRefPtr scene =
        stage("def \"P\" (\n references = @`\"${A}\" `@\n variants = { string v = \"`${B}`\" }\n"
              " prepend variantSets = \"v\" ) { variantSet \"v\" = { \"x\" { double d = 1 } } }");
    const std::string where = " It is written on </P> in @" + scene->GetRootLayer()->GetIdentifier() + "@.";
    EXPECT_THAT(
        warnings.texts,
        ElementsAre("The expression `\"${A}\" ` was left out: The expression is wrong at character 7: its "
                    "closing backquote is missing." +
                        where,
                    "The expression `${B}` was left out: Variable 'B' has no value." + where));
    EXPECT_TRUE(prim(scene, "/P"));
}
