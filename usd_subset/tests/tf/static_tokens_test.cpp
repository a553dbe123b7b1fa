#include <pxr/base/tf/staticTokens.h>

#include <gtest/gtest.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace {

#define TEST_TOKENS (plain)((named, "ui:named"))(last)

} // namespace

TF_DECLARE_PUBLIC_TOKENS(TestTokens, TEST_TOKENS);
TF_DEFINE_PUBLIC_TOKENS(TestTokens, TEST_TOKENS);

TF_DEFINE_PRIVATE_TOKENS(_tokens, (only)((another, "an other")));

TEST(StaticTokens, HaveTheirNameAsText)
{
    EXPECT_EQ(TestTokens->plain, "plain");
    EXPECT_EQ(_tokens->only, "only");
}

TEST(StaticTokens, HaveTheGivenText)
{
    EXPECT_EQ(TestTokens->named, "ui:named");
    EXPECT_EQ(_tokens->another, "an other");
}

TEST(StaticTokens, AreListedInTheirOrder)
{
    EXPECT_EQ(TestTokens->allTokens, (TfTokenVector{TfToken("plain"), TfToken("ui:named"), TfToken("last")}));
}

TEST(StaticTokens, AreImmortal) { EXPECT_TRUE(TestTokens->last.IsImmortal()); }
