#include "gate.h"

#include <pxr/base/tf/token.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

PXR_NAMESPACE_USING_DIRECTIVE

TEST(Token, OfTheSameTextIsOneHandle)
{
    const TfToken a("same text"), b(std::string("same text"));
    EXPECT_EQ(a, b);
    EXPECT_EQ(a.GetText(), b.GetText());
    EXPECT_EQ(a.Hash(), b.Hash());
    EXPECT_NE(a, TfToken("other text"));
}

TEST(Token, OfNoTextIsTheEmptyOne)
{
    EXPECT_TRUE(TfToken("").IsEmpty());
    EXPECT_TRUE(TfToken(static_cast<const char*>(nullptr)).IsEmpty());
    EXPECT_EQ(TfToken(), TfToken(""));
    EXPECT_EQ(TfToken().GetString(), "");
    EXPECT_STREQ(TfToken().GetText(), "");
    EXPECT_TRUE(TfToken().IsImmortal());
}

TEST(Token, ComparesWithStrings)
{
    const TfToken token("points");
    EXPECT_TRUE(token == "points");
    EXPECT_TRUE("points" == token);
    EXPECT_TRUE(token == std::string("points"));
    EXPECT_TRUE(token != "normals");
    EXPECT_TRUE(std::string("normals") != token);
}

TEST(Token, OrdersByItsText)
{
    // Texts that agree in their first eight bytes, contain NUL, or start with a high byte.
    std::vector<std::string> texts{"",
                                   "a",
                                   "aa",
                                   std::string("a\0", 2),
                                   std::string("a\0b", 3),
                                   "abcdefgh",
                                   "B",
                                   "abcdefghi",
                                   "abcdefgha",
                                   "\xc3\xa4",
                                   "abcdefg\x7f",
                                   "~"};
    std::vector<TfToken> tokens(texts.begin(), texts.end());
    std::sort(texts.begin(), texts.end());
    std::sort(tokens.begin(), tokens.end());
    EXPECT_EQ(TfToStringVector(tokens), texts);
}

TEST(Token, WithBytesBeyondAsciiAtItsBeginSortsLast)
{
    std::vector<TfToken> tokens{TfToken("z"), TfToken("a\xc3\xa4"), TfToken("b"),
                                TfToken("abcdefghi\xc3\xa4")};
    std::sort(tokens.begin(), tokens.end());
    EXPECT_EQ(TfToStringVector(tokens),
              (std::vector<std::string>{"abcdefghi\xc3\xa4", "b", "z", "a\xc3\xa4"}));
}

TEST(Token, FindMakesNothing)
{
    EXPECT_TRUE(TfToken::Find("a text that nobody has interned").IsEmpty());
    const TfToken made("a text that somebody has interned");
    EXPECT_EQ(TfToken::Find("a text that somebody has interned"), made);
}

TEST(Token, IsForgottenWithItsLastHandle)
{
    {
        const TfToken token("forgotten text");
        const TfToken copy = token;
        EXPECT_FALSE(copy.IsImmortal());
    }
    EXPECT_TRUE(TfToken::Find("forgotten text").IsEmpty());
}

TEST(Token, OnceImmortalStays)
{
    {
        const TfToken counted("kept text");
        const TfToken immortal("kept text", TfToken::Immortal);
        EXPECT_TRUE(counted.IsImmortal());
        EXPECT_EQ(counted, immortal);
    }
    EXPECT_EQ(TfToken::Find("kept text"), "kept text");
}

TEST(Token, MovesAndSwaps)
{
    TfToken a("first"), b("second");
    swap(a, b);
    EXPECT_EQ(a, "second");
    const TfToken moved = std::move(a);
    EXPECT_EQ(moved, "second");
    b = b;
    EXPECT_EQ(b, "first");
}

TEST(Token, StreamsItsText)
{
    std::ostringstream out;
    out << TfToken("xformOp:translate");
    EXPECT_EQ(out.str(), "xformOp:translate");
}

TEST(Token, ConvertsListsToStringsAndBack)
{
    const std::vector<std::string> texts{"a", "", "b"};
    EXPECT_EQ(TfToStringVector(TfToTokenVector(texts)), texts);
}

TEST(Token, IsInternedOnceWhateverTheThread)
{
    constexpr int kThreads = 4, kTexts = 500;
    std::vector<std::vector<TfToken>> made(kThreads);
    runTogether(kThreads, [&](int thread) {
        for (int i = 0; i != kTexts; ++i) {
            made[thread].emplace_back("threaded " + std::to_string(i));
        }
    });
    for (int thread = 1; thread != kThreads; ++thread) {
        EXPECT_EQ(made[thread], made[0]);
    }
}

TEST(Token, SurvivesThreadsThatMakeAndForgetTheSameText)
{
    constexpr int kRounds = 20000;
    std::vector<int> wrong(4, 0);
    runTogether(4, [&](int thread) {
        for (int i = 0; i != kRounds; ++i) {
            const TfToken token("made and forgotten");
            const TfToken copy = token;
            wrong[thread] += copy.GetString() != "made and forgotten";
        }
    });
    EXPECT_EQ(wrong, std::vector<int>(4, 0));
    EXPECT_TRUE(TfToken::Find("made and forgotten").IsEmpty());
}
