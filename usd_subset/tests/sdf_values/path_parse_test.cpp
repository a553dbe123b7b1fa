#include "../tf/recording_delegate.h"

#include <pxr/usd/sdf/path.h>

#include <gtest/gtest.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace {

std::string repeat(const std::string& part, int times)
{
    std::string text;
    for (int i = 0; i != times; ++i) {
        text += part;
    }
    return text;
}

class WellFormed : public testing::TestWithParam<const char*>
{};

class IllFormed : public testing::TestWithParam<std::string>
{};

} // namespace

TEST_P(WellFormed, PathTextReadsBackAsItself)
{
    EXPECT_TRUE(SdfPath::IsValidPathString(GetParam()));
    EXPECT_EQ(SdfPath(GetParam()).GetAsString(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(SdfPath, WellFormed,
                         testing::Values("/", "/World", "/World/Cube", "/_x/y_1", ".", "..", "../..",
                                         "../../a", "a", "a/b", ".size", "../.size", "a.size", "/a.b:c:d",
                                         "/A{set=variant}", "/A{set=}", "/A{set=.v|1-a}B", "/A{a=b}{c=d}E.f",
                                         "/A{my-set=9}B", "/A.rel[/B]", "/A.rel[../B.attr]", "/A.rel[.]",
                                         "/A.rel[/B].attr", "/A.rel[/B].attr[/C]", "/A.rel[/B.r[/C]].a:b",
                                         "/A.attr.mapper[/B.a]", "/A.attr.mapper[/B.a].arg",
                                         "/A.attr.expression", "/A.rel[/B].a.expression", "/mapper.mapper",
                                         "/\xc3\x84rger/\xe7\x8c\xab.\xce\xb1\xce\xb2"));

TEST_P(IllFormed, PathTextIsRefused)
{
    std::string error;
    EXPECT_FALSE(SdfPath::IsValidPathString(GetParam(), &error));
    EXPECT_EQ(error.rfind("Ill-formed SdfPath <", 0), 0u) << error;
}

TEST_P(IllFormed, PathTextGivesTheEmptyPathAndOneWarning)
{
    RecordingDelegate diagnostics;
    EXPECT_TRUE(SdfPath(GetParam()).IsEmpty());
    EXPECT_EQ(diagnostics.texts.size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(SdfPath, IllFormed,
                         testing::Values("", " ", "//", "/a/", "/a//b", "/a/../b", "/1a", "a b", "/a-b",
                                         "/.a", "/a.", "/a..b", "/a.b.c", "...", "../", "..a",
                                         "/a.b:", "/a.:b", "/a.1", "/a{", "/a{v", "/a{v=", "/a{v=x", "/a{=x}",
                                         "/a{v}", "/a{v=x}/b", "/a{v=x}}", "{v=x}", "/{v=x}", "/a.b{v=x}",
                                         "/a.r[", "/a.r[/b", "/a.r[]", "/a.r[/b]c", "/a.r[/b].",
                                         "/a.r[/b][/c]", "/a[/b]", "/a.b.mapper", "/a.b.mapper[]",
                                         "/a.b.mapper[/c].1", "/a.b.expressions", "/a#", "/a\xff", "/\xc3",
                                         "/a\xed\xa0\x80", std::string("/a\0b", 4), std::string("\0", 1),
                                         "/a:b", "/\xe2\x82\xac"));

TEST(PathText, MayHaveBlanksAroundVariantSelections)
{
    EXPECT_EQ(SdfPath("/A {\tset = variant } B").GetAsString(), "/A{set=variant}B");
}

TEST(PathText, EndsAtALinesEnd) { EXPECT_EQ(SdfPath("/a\n").GetAsString(), "/a"); }

TEST(PathText, ErrorSaysWhatWasExpectedAndWhere)
{
    RecordingDelegate diagnostics;
    SdfPath("/World/Cube{set");
    SdfPath("/World/9");
    EXPECT_EQ(diagnostics.texts,
              (std::vector<std::string>{
                  "warning: Ill-formed SdfPath </World/Cube{set>: '=' expected after the variant set's name "
                  "at byte 15",
                  "warning: Ill-formed SdfPath </World/9>: end of the path expected at byte 6"}));
}

TEST(PathText, OfAnyLengthIsQuotedShortly)
{
    RecordingDelegate diagnostics;
    SdfPath("/" + std::string(1 << 20, 'a') + "!");
    ASSERT_EQ(diagnostics.texts.size(), 1u);
    EXPECT_LT(diagnostics.texts[0].size(), 300u);
}

TEST(PathText, MayBeAMegabyteLong)
{
    const std::string name(1 << 20, 'n');
    const SdfPath path("/" + name);
    EXPECT_EQ(path.GetName(), name);
    EXPECT_EQ(path.GetAsString().size(), name.size() + 1);
}

TEST(PathText, MayBeAHundredThousandElementsDeep)
{
    constexpr int kDepth = 100000;
    const std::string text = repeat("/p", kDepth);
    const SdfPath path(text);
    EXPECT_EQ(path.GetPathElementCount(), size_t(kDepth));
    EXPECT_EQ(path.GetAsString(), text);
    EXPECT_EQ(path.GetPrefixes().front(), SdfPath("/p"));
    EXPECT_TRUE(path.HasPrefix(SdfPath("/p/p")));
    const SdfPath moved = path.ReplacePrefix(SdfPath("/p"), SdfPath("/q"));
    EXPECT_EQ(moved.GetAsString(), "/q" + repeat("/p", kDepth - 1));
    EXPECT_TRUE(path < moved);
    EXPECT_EQ(SdfPath(repeat("../", kDepth) + "a").GetPathElementCount(), size_t(kDepth) + 1);
}

TEST(PathText, MayNestTargetsWithinReason)
{
    const std::string deep = repeat("/a.r[", 200) + "/b" + repeat("]", 200);
    EXPECT_EQ(SdfPath(deep).GetAsString(), deep);
    EXPECT_FALSE(SdfPath::IsValidPathString(repeat("/a.r[", 100000) + "/b" + repeat("]", 100000)));
}

TEST(PathText, IsKeptWithThePath)
{
    const SdfPath path("/a/b.c");
    EXPECT_EQ(path.GetToken(), "/a/b.c");
    EXPECT_STREQ(path.GetText(), "/a/b.c");
    EXPECT_EQ(path.GetText(), SdfPath("/a/b.c").GetText());
    EXPECT_EQ(SdfPath().GetString(), "");
}
