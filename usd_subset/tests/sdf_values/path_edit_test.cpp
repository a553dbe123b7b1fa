#include "../tf/recording_delegate.h"

#include <pxr/usd/sdf/path.h>

#include <gtest/gtest.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace {

SdfPath p(const char* text) { return *text ? SdfPath(text) : SdfPath(); }

} // namespace

TEST(PathAppend, MakesEachKind)
{
    EXPECT_EQ(p("/A").AppendChild(TfToken("B")), p("/A/B"));
    EXPECT_EQ(p("/A{s=v}").AppendChild(TfToken("B")), p("/A{s=v}B"));
    EXPECT_EQ(p(".").AppendChild(TfToken("B")), p("B"));
    EXPECT_EQ(p("/A").AppendProperty(TfToken("a:b")), p("/A.a:b"));
    EXPECT_EQ(p("/A").AppendVariantSelection("s", "v"), p("/A{s=v}"));
    EXPECT_EQ(p("/A.r").AppendTarget(p("/T")), p("/A.r[/T]"));
    EXPECT_EQ(p("/A.r[/T]").AppendRelationalAttribute(TfToken("b")), p("/A.r[/T].b"));
    EXPECT_EQ(p("/A.b").AppendMapper(p("/T.c")), p("/A.b.mapper[/T.c]"));
    EXPECT_EQ(p("/A.b.mapper[/T]").AppendMapperArg(TfToken("g")), p("/A.b.mapper[/T].g"));
    EXPECT_EQ(p("/A.b").AppendExpression(), p("/A.b.expression"));
}

TEST(PathAppend, OfTheParentElementGoesUp)
{
    EXPECT_EQ(p("/A/B").AppendChild(TfToken("..")), p("/A"));
    EXPECT_EQ(p("..").AppendChild(TfToken("..")), p("../.."));
    EXPECT_EQ(p(".").AppendChild(TfToken("..")), p(".."));
}

TEST(PathAppend, RefusesWhatDoesNotFitWithOneDiagnostic)
{
    RecordingDelegate diagnostics;
    EXPECT_TRUE(p("/A").AppendChild(TfToken("9")).IsEmpty());
    EXPECT_TRUE(p("/A.b").AppendChild(TfToken("B")).IsEmpty());
    EXPECT_TRUE(p("/").AppendProperty(TfToken("b")).IsEmpty());
    EXPECT_TRUE(p("/A").AppendTarget(p("/T")).IsEmpty());
    EXPECT_TRUE(p("/A.r").AppendTarget(SdfPath()).IsEmpty());
    EXPECT_TRUE(p("/A.r").AppendRelationalAttribute(TfToken("b")).IsEmpty());
    EXPECT_TRUE(p("/A").AppendExpression().IsEmpty());
    EXPECT_TRUE(p("/A.b").AppendVariantSelection("s", "v").IsEmpty());
    EXPECT_EQ(diagnostics.texts.size(), 8u);
    EXPECT_EQ(diagnostics.texts[0], "warning: Invalid prim name '9'");
    EXPECT_EQ(diagnostics.texts[1], "warning: Cannot append child 'B' to path '/A.b'.");
}

TEST(PathAppend, OfAnIllFormedPropertyNameIsEmptyWithoutAWord)
{
    RecordingDelegate diagnostics;
    EXPECT_TRUE(p("/A").AppendProperty(TfToken("9")).IsEmpty());
    EXPECT_TRUE(diagnostics.texts.empty());
}

TEST(PathAppend, JoinsRelativePaths)
{
    EXPECT_EQ(p("/A/B").AppendPath(p("C/D.e")), p("/A/B/C/D.e"));
    EXPECT_EQ(p("/A/B").AppendPath(p("../C")), p("/A/C"));
    EXPECT_EQ(p("/A").AppendPath(p(".b")), p("/A.b"));
    EXPECT_EQ(p("/A").AppendPath(p(".")), p("/A"));
    EXPECT_EQ(p("/").AppendPath(p("A")), p("/A"));
}

TEST(PathAppend, RefusesAbsoluteAndEmptySuffixes)
{
    RecordingDelegate diagnostics;
    EXPECT_TRUE(p("/A").AppendPath(p("/B")).IsEmpty());
    EXPECT_TRUE(p("/A").AppendPath(SdfPath()).IsEmpty());
    EXPECT_TRUE(SdfPath().AppendPath(p("B")).IsEmpty());
    EXPECT_TRUE(p("/A.b").AppendPath(p("C")).IsEmpty());
    EXPECT_TRUE(p("/").AppendPath(p(".b")).IsEmpty());
    EXPECT_EQ(diagnostics.texts.size(), 5u);
}

TEST(PathAppend, TakesElementTexts)
{
    EXPECT_EQ(p("/A").AppendElementString("B"), p("/A/B"));
    EXPECT_EQ(p("/A").AppendElementString(".b"), p("/A.b"));
    EXPECT_EQ(p("/A").AppendElementString("{s=v}"), p("/A{s=v}"));
    EXPECT_EQ(p("/A").AppendElementString("{s=}"), p("/A{s=}"));
    EXPECT_EQ(p("/A.r").AppendElementString("[/T]"), p("/A.r[/T]"));
    EXPECT_EQ(p("/A.r[/T]").AppendElementString(".b"), p("/A.r[/T].b"));
    EXPECT_EQ(p("/A.b").AppendElementString(".mapper[/T]"), p("/A.b.mapper[/T]"));
    EXPECT_EQ(p("/A.b").AppendElementToken(TfToken(".expression")), p("/A.b.expression"));
}

TEST(PathElements, BuildEveryPathAgain)
{
    for (const char* text :
         {"/A/B{s=v}C.d", "A/B.b:c", "/A.r[/T.x[/V]].b.expression", "/A.b.mapper[/T].g", ".b"}) {
        const SdfPath whole(text);
        SdfPath built = whole.IsAbsolutePath() ? p("/") : p(".");
        for (const SdfPath& prefix : whole.GetPrefixes()) {
            built = built.AppendElementString(prefix.GetElementString());
        }
        EXPECT_EQ(built, whole);
    }
}

TEST(PathReplace, ChangesTheName)
{
    EXPECT_EQ(p("/A/B").ReplaceName(TfToken("C")), p("/A/C"));
    EXPECT_EQ(p("/A.b").ReplaceName(TfToken("c")), p("/A.c"));
    EXPECT_EQ(p("/A.r[/T].b").ReplaceName(TfToken("c")), p("/A.r[/T].c"));
    RecordingDelegate diagnostics;
    EXPECT_TRUE(p("/").ReplaceName(TfToken("c")).IsEmpty());
    EXPECT_EQ(diagnostics.texts.size(), 1u);
}

TEST(PathReplace, ChangesAPrefix)
{
    EXPECT_EQ(p("/A/B/C.d").ReplacePrefix(p("/A/B"), p("/X")), p("/X/C.d"));
    EXPECT_EQ(p("/A/B").ReplacePrefix(p("/A/B"), p("/X/Y")), p("/X/Y"));
    EXPECT_EQ(p("/A/B").ReplacePrefix(p("/"), p("/X")), p("/X/A/B"));
    EXPECT_EQ(p("/A/B").ReplacePrefix(p("/Q"), p("/X")), p("/A/B"));
    EXPECT_EQ(p("/A.b").ReplacePrefix(p("/A.b"), p("/X.c")), p("/X.c"));
    EXPECT_EQ(p("/A{s=v}B").ReplacePrefix(p("/A{s=v}"), p("/A{s=w}")), p("/A{s=w}B"));
    EXPECT_TRUE(p("/A").ReplacePrefix(SdfPath(), p("/X")).IsEmpty());
}

TEST(PathReplace, ChangesPrefixesInTargets)
{
    EXPECT_EQ(p("/A.r[/A/T]").ReplacePrefix(p("/A"), p("/X")), p("/X.r[/X/T]"));
    EXPECT_EQ(p("/A.r[/A/T]").ReplacePrefix(p("/A"), p("/X"), false), p("/X.r[/A/T]"));
    EXPECT_EQ(p("/B.r[/A/T].b").ReplacePrefix(p("/A"), p("/X")), p("/B.r[/X/T].b"));
    EXPECT_EQ(p("/B.r[/C.r[/A]]").ReplacePrefix(p("/A"), p("/X")), p("/B.r[/C.r[/X]]"));
}

TEST(PathReplace, ChangesTheTarget)
{
    EXPECT_EQ(p("/A.r[/T].b").ReplaceTargetPath(p("/U")), p("/A.r[/U].b"));
    EXPECT_EQ(p("/A.b.mapper[/T].g").ReplaceTargetPath(p("/U")), p("/A.b.mapper[/U].g"));
    EXPECT_EQ(p("/A.b").ReplaceTargetPath(p("/U")), p("/A.b"));
}

TEST(PathCommon, PrefixIsTheLongestShared)
{
    EXPECT_EQ(p("/A/B/C").GetCommonPrefix(p("/A/B/D")), p("/A/B"));
    EXPECT_EQ(p("/A/B").GetCommonPrefix(p("/A")), p("/A"));
    EXPECT_EQ(p("/A").GetCommonPrefix(p("/B")), p("/"));
    EXPECT_EQ(p("/A.b").GetCommonPrefix(p("/A.c")), p("/A"));
    EXPECT_TRUE(p("/A").GetCommonPrefix(p("B")).IsEmpty());
}

TEST(PathCommon, SuffixIsTakenOffBoth)
{
    const auto removed = [](const char* a, const char* b, bool stop) {
        const auto [x, y] = p(a).RemoveCommonSuffix(p(b), stop);
        return x.GetAsString() + " " + y.GetAsString();
    };
    EXPECT_EQ(removed("/A/B/C", "/X/B/C", false), "/A /X");
    EXPECT_EQ(removed("/A/B", "/Q/A/B", false), "/ /Q");
    EXPECT_EQ(removed("/A/B", "/Q/A/B", true), "/A /Q/A");
    EXPECT_EQ(removed("/A/B.c", "/X/B.c", false), "/A /X");
    EXPECT_EQ(removed("/A/B.c", "/X/B", false), "/A/B.c /X/B");
    EXPECT_EQ(removed("/A/B", "/A/C", false), "/A/B /A/C");
}

TEST(PathAbsolute, IsAnchoredAtAPrim)
{
    EXPECT_EQ(p("C.d").MakeAbsolutePath(p("/A/B")), p("/A/B/C.d"));
    EXPECT_EQ(p("../C").MakeAbsolutePath(p("/A/B")), p("/A/C"));
    EXPECT_EQ(p(".").MakeAbsolutePath(p("/A")), p("/A"));
    EXPECT_EQ(p("/Z").MakeAbsolutePath(p("/A")), p("/Z"));
    EXPECT_EQ(p(".r[../T]").MakeAbsolutePath(p("/A/B")), p("/A/B.r[/A/T]"));
}

TEST(PathAbsolute, AboveTheRootIsNone) { EXPECT_TRUE(p("../../..").MakeAbsolutePath(p("/A")).IsEmpty()); }

TEST(PathAbsolute, NeedsAnAbsolutePrimAsAnchor)
{
    RecordingDelegate diagnostics;
    EXPECT_TRUE(p("C").MakeAbsolutePath(SdfPath()).IsEmpty());
    EXPECT_TRUE(p("C").MakeAbsolutePath(p("A")).IsEmpty());
    EXPECT_TRUE(p("C").MakeAbsolutePath(p("/A.b")).IsEmpty());
    EXPECT_TRUE(p("/C").MakeRelativePath(p("A")).IsEmpty());
    EXPECT_EQ(diagnostics.texts.size(), 4u);
}

TEST(PathRelative, GoesUpToTheCommonPrimAndDown)
{
    EXPECT_EQ(p("/A/B/C").MakeRelativePath(p("/A")), p("B/C"));
    EXPECT_EQ(p("/A/B").MakeRelativePath(p("/A/C/D")), p("../../B"));
    EXPECT_EQ(p("/A").MakeRelativePath(p("/A")), p("."));
    EXPECT_EQ(p("/A.b").MakeRelativePath(p("/A")), p(".b"));
    EXPECT_EQ(p("/A.b").MakeRelativePath(p("/A/C")), p("../.b"));
    EXPECT_EQ(p("/A").MakeRelativePath(p("/")), p("A"));
    EXPECT_EQ(p("../C").MakeRelativePath(p("/A/B")), p("../C"));
}

TEST(PathRelative, AndAbsoluteAreInverse)
{
    for (const char* text : {"/", "/A", "/A/B/C", "/X/Y.z", "/A{s=v}B.c"}) {
        for (const char* anchor : {"/", "/A", "/A/B", "/Q/R/S"}) {
            if (std::string(text) != "/A{s=v}B.c") {
                EXPECT_EQ(p(text).MakeRelativePath(p(anchor)).MakeAbsolutePath(p(anchor)), p(text))
                    << text << anchor;
            }
        }
    }
}
