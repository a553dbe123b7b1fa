#include <pxr/usd/sdf/path.h>

#include <gtest/gtest.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace {

using Parts = std::vector<std::string>;

} // namespace

TEST(Identifier, StartsWithALetterOrUnderscore)
{
    for (const char* name : {"a", "_", "_9", "Cube_1", "\xc3\xa4", "\xe7\x8c\xab\xe7\x8c\xab", "a\xcc\x88"}) {
        EXPECT_TRUE(SdfPath::IsValidIdentifier(name)) << name;
    }
    for (const char* name :
         {"", "9", "a b", "a-b", "a:b", "a.b", "\xcc\x88", "a\xff", "\xf0\x9f\x98\x80", " a"}) {
        EXPECT_FALSE(SdfPath::IsValidIdentifier(name)) << name;
    }
}

TEST(Identifier, MayHaveNamespaces)
{
    for (const char* name : {"a", "a:b", "primvars:st:indices", "_:_"}) {
        EXPECT_TRUE(SdfPath::IsValidNamespacedIdentifier(name)) << name;
    }
    for (const char* name : {"", ":", "a:", ":a", "a::b", "a:9", "a b:c"}) {
        EXPECT_FALSE(SdfPath::IsValidNamespacedIdentifier(name)) << name;
    }
}

TEST(Identifier, IsCutAtItsNamespaces)
{
    EXPECT_EQ(SdfPath::TokenizeIdentifier("a:b:c"), (Parts{"a", "b", "c"}));
    EXPECT_EQ(SdfPath::TokenizeIdentifier("a"), (Parts{"a"}));
    EXPECT_EQ(SdfPath::TokenizeIdentifierAsTokens("a:b"), (TfTokenVector{TfToken("a"), TfToken("b")}));
    for (const char* name : {"", ":", "a:", ":a", "a::b", "a:9"}) {
        EXPECT_TRUE(SdfPath::TokenizeIdentifier(name).empty()) << name;
    }
}

TEST(Identifier, IsJoinedFromItsNamespaces)
{
    EXPECT_EQ(SdfPath::JoinIdentifier(Parts{"a", "", "b"}), "a:b");
    EXPECT_EQ(SdfPath::JoinIdentifier("a", "b"), "a:b");
    EXPECT_EQ(SdfPath::JoinIdentifier("", "b"), "b");
    EXPECT_EQ(SdfPath::JoinIdentifier(TfToken("a"), TfToken()), "a");
    EXPECT_EQ(SdfPath::JoinIdentifier(TfTokenVector{TfToken("a"), TfToken("b")}), "a:b");
}

TEST(Identifier, LosesItsNamespaces)
{
    EXPECT_EQ(SdfPath::StripNamespace(std::string("a:b:c")), "c");
    EXPECT_EQ(SdfPath::StripNamespace(TfToken("c")), "c");
    EXPECT_EQ(SdfPath::StripPrefixNamespace("xformOp:translate", "xformOp"),
              std::make_pair(std::string("translate"), true));
    EXPECT_EQ(SdfPath::StripPrefixNamespace("xformOp:translate", "xformOp:"),
              std::make_pair(std::string("translate"), true));
    EXPECT_EQ(SdfPath::StripPrefixNamespace("xformOps", "xformOp"),
              std::make_pair(std::string("xformOps"), false));
    EXPECT_EQ(SdfPath::StripPrefixNamespace("a:b", ""), std::make_pair(std::string("a:b"), false));
}
