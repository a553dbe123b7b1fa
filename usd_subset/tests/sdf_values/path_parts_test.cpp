#include <pxr/usd/sdf/path.h>

#include <gtest/gtest.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace {

/// What a path is and how it comes apart.
struct Row
{
    const char* text;
    const char* kinds; // a: absolute, p: prim, v: variant selection, y: property, t: target, ...
    const char* name;
    const char* element;
    const char* parent;
    const char* primPath;
    size_t prefixes;
};

std::string kindsOf(const SdfPath& path)
{
    std::string kinds;
    const auto add = [&](bool is, char kind) { kinds += is ? std::string(1, kind) : std::string(); };
    add(path.IsAbsolutePath(), 'a');
    add(path.IsAbsoluteRootPath(), '/');
    add(path.IsRootPrimPath(), 'r');
    add(path.IsPrimPath(), 'p');
    add(path.IsPrimVariantSelectionPath(), 'v');
    add(path.IsPrimPropertyPath(), 'y');
    add(path.IsRelationalAttributePath(), 'l');
    add(path.IsNamespacedPropertyPath(), 'n');
    add(path.IsTargetPath(), 't');
    add(path.IsMapperPath(), 'm');
    add(path.IsMapperArgPath(), 'g');
    add(path.IsExpressionPath(), 'e');
    return kinds;
}

class Parts : public testing::TestWithParam<Row>
{};

SdfPathVector paths(std::initializer_list<const char*> texts)
{
    return SdfPathVector(texts.begin(), texts.end());
}

} // namespace

TEST_P(Parts, AreAsTheTableSays)
{
    const Row& row = GetParam();
    const SdfPath path(row.text);
    EXPECT_EQ(kindsOf(path), row.kinds);
    EXPECT_EQ(path.GetName(), row.name);
    EXPECT_EQ(path.GetElementString(), row.element);
    EXPECT_EQ(path.GetParentPath().GetAsString(), row.parent);
    EXPECT_EQ(path.GetPrimPath().GetAsString(), row.primPath);
    EXPECT_EQ(path.GetPrefixes().size(), row.prefixes);
    EXPECT_EQ(path.GetPathElementCount(), row.prefixes);
}

INSTANTIATE_TEST_SUITE_P(
    SdfPath, Parts,
    testing::Values(Row{"/", "a/", "/", "", "", "", 0}, Row{".", "p", ".", "", "..", "", 0},
                    Row{"..", "p", "..", "..", "../..", "..", 1}, Row{"/A", "arp", "A", "A", "/", "/A", 1},
                    Row{"/A/B", "ap", "B", "B", "/A", "/A/B", 2}, Row{"A", "p", "A", "A", ".", "A", 1},
                    Row{"../A", "p", "A", "A", "..", "../A", 2}, Row{"/A.b", "ay", "b", ".b", "/A", "/A", 2},
                    Row{"/A.b:c", "ayn", "b:c", ".b:c", "/A", "/A", 2}, Row{".b", "y", "b", ".b", ".", "", 1},
                    Row{"/A{s=v}", "av", "v", "{s=v}", "/A", "/A", 2},
                    Row{"/A{s=}", "av", "s", "{s=}", "/A", "/A", 2},
                    Row{"/A{s=v}B", "ap", "B", "B", "/A{s=v}", "/A{s=v}B", 3},
                    Row{"/A{s=v}.b", "ay", "b", ".b", "/A{s=v}", "/A", 3},
                    Row{"/A.r[/T]", "at", "", "[/T]", "/A.r", "/A", 3},
                    Row{"/A.r[/T].b", "al", "b", ".b", "/A.r[/T]", "/A", 4},
                    Row{"/A.b.mapper[/T]", "am", "", ".mapper[/T]", "/A.b", "/A", 3},
                    Row{"/A.b.mapper[/T].g", "ag", "g", ".g", "/A.b.mapper[/T]", "/A", 4},
                    Row{"/A.b.expression", "ae", "expression", ".expression", "/A.b", "/A", 3}));

TEST(EmptyPath, HasNoParts)
{
    const SdfPath empty;
    EXPECT_EQ(kindsOf(empty), "");
    EXPECT_EQ(empty.GetName(), "");
    EXPECT_TRUE(empty.GetParentPath().IsEmpty());
    EXPECT_TRUE(empty.GetPrefixes().empty());
    EXPECT_EQ(empty, SdfPath::EmptyPath());
}

TEST(PathPrefixes, AreShortestFirst)
{
    EXPECT_EQ(SdfPath("/A/B{s=v}C.d").GetPrefixes(),
              paths({"/A", "/A/B", "/A/B{s=v}", "/A/B{s=v}C", "/A/B{s=v}C.d"}));
    EXPECT_EQ(SdfPath("/A/B/C").GetPrefixes(2), paths({"/A/B", "/A/B/C"}));
    EXPECT_EQ(SdfPath("../A").GetPrefixes(), paths({"..", "../A"}));
}

TEST(PathAncestors, AreThePathFirstAndNotTheRoot)
{
    SdfPathVector ancestors;
    for (const SdfPath& path : SdfPath("/A/B.c").GetAncestorsRange()) {
        ancestors.push_back(path);
    }
    EXPECT_EQ(ancestors, paths({"/A/B.c", "/A/B", "/A"}));
    const SdfPathAncestorsRange none = SdfPath().GetAncestorsRange();
    EXPECT_EQ(none.begin(), none.end());
}

TEST(PathPrefix, IsFoundByWholeElements)
{
    EXPECT_TRUE(SdfPath("/A/B").HasPrefix(SdfPath("/A")));
    EXPECT_TRUE(SdfPath("/A/B").HasPrefix(SdfPath("/A/B")));
    EXPECT_TRUE(SdfPath("/A/B").HasPrefix(SdfPath::AbsoluteRootPath()));
    EXPECT_TRUE(SdfPath("/A.b").HasPrefix(SdfPath("/A")));
    EXPECT_TRUE(SdfPath("/A{s=v}B").HasPrefix(SdfPath("/A")));
    EXPECT_FALSE(SdfPath("/AB").HasPrefix(SdfPath("/A")));
    EXPECT_FALSE(SdfPath("/A").HasPrefix(SdfPath("/A/B")));
    EXPECT_FALSE(SdfPath("A").HasPrefix(SdfPath("/")));
    EXPECT_FALSE(SdfPath("/A").HasPrefix(SdfPath()));
}

TEST(PathVariants, AreReadAndStripped)
{
    EXPECT_EQ(SdfPath("/A{s=v}").GetVariantSelection(), (std::pair<std::string, std::string>("s", "v")));
    EXPECT_EQ(SdfPath("/A{s=v}B").GetVariantSelection(), (std::pair<std::string, std::string>()));
    EXPECT_EQ(SdfPath("/A{s=v}B{t=w}C.d[/E]").StripAllVariantSelections(), SdfPath("/A/B/C.d[/E]"));
    EXPECT_TRUE(SdfPath("/A{s=v}B.c").ContainsPrimVariantSelection());
    EXPECT_EQ(SdfPath("/A{s=v}.b").GetPrimOrPrimVariantSelectionPath(), SdfPath("/A{s=v}"));
}

TEST(PathTargets, AreFoundFromTheInnermost)
{
    EXPECT_EQ(SdfPath("/A.r[/T].b").GetTargetPath(), SdfPath("/T"));
    EXPECT_EQ(SdfPath("/A.r[/T].b[/U]").GetTargetPath(), SdfPath("/U"));
    EXPECT_TRUE(SdfPath("/A.r").GetTargetPath().IsEmpty());
    SdfPathVector all;
    SdfPath("/A.r[/T.x[/V]].b[/U]").GetAllTargetPathsRecursively(&all);
    EXPECT_EQ(all, paths({"/U", "/T.x[/V]", "/V"}));
}

TEST(PathRoot, IsItsOwnPrimOrRoot)
{
    EXPECT_EQ(SdfPath("/").GetAbsoluteRootOrPrimPath(), SdfPath("/"));
    EXPECT_EQ(SdfPath("/A.b").GetAbsoluteRootOrPrimPath(), SdfPath("/A"));
    EXPECT_TRUE(SdfPath("/").IsAbsoluteRootOrPrimPath());
}
