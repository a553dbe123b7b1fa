#include <pxr/base/tf/pathUtils.h>
#include <pxr/base/tf/stringUtils.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

PXR_NAMESPACE_USING_DIRECTIVE

namespace {

using Parts = std::vector<std::string>;

} // namespace

TEST(Strings, PrintLongerThanAnyBuffer)
{
    const std::string longText(5000, 'x');
    EXPECT_EQ(TfStringPrintf("<%s>%d", longText.c_str(), 7), "<" + longText + ">7");
}

TEST(Strings, SplitAtEverySeparator)
{
    EXPECT_EQ(TfStringSplit("a::b", ":"), (Parts{"a", "", "b"}));
    EXPECT_EQ(TfStringSplit(":a:", ":"), (Parts{"", "a", ""}));
    EXPECT_EQ(TfStringSplit("a", ":"), (Parts{"a"}));
    EXPECT_EQ(TfStringSplit("", ":"), Parts{});
}

TEST(Strings, TokenizeAtRunsOfDelimiters)
{
    EXPECT_EQ(TfStringTokenize("  a \t b\n"), (Parts{"a", "b"}));
    EXPECT_EQ(TfStringTokenize("a,;b", ",;"), (Parts{"a", "b"}));
    EXPECT_EQ(TfStringTokenize(""), Parts{});
}

TEST(Strings, JoinWithASeparator)
{
    EXPECT_EQ(TfStringJoin(Parts{"a", "b", ""}, ","), "a,b,");
    EXPECT_EQ(TfStringJoin(Parts{}), "");
}

TEST(Strings, ReplaceEveryOccurrence)
{
    EXPECT_EQ(TfStringReplace("aXbX", "X", "XX"), "aXXbXX");
    EXPECT_EQ(TfStringReplace("abc", "", "x"), "abc");
}

TEST(Strings, KnowTheirEnds)
{
    EXPECT_TRUE(TfStringStartsWith("primvars:st", "primvars:"));
    EXPECT_FALSE(TfStringStartsWith("prim", "primvars:"));
    EXPECT_TRUE(TfStringEndsWith("scene.usda", ".usda"));
    EXPECT_FALSE(TfStringEndsWith("a", "usda"));
    EXPECT_EQ(TfStringGetSuffix("a:b:c", ':'), "c");
    EXPECT_EQ(TfStringGetSuffix("abc", ':'), "");
    EXPECT_EQ(TfStringGetBeforeSuffix("a.b.c"), "a.b");
    EXPECT_EQ(TfStringGetBeforeSuffix("abc"), "abc");
}

TEST(Strings, TrimAndChangeCase)
{
    EXPECT_EQ(TfStringTrim(" \ta b\n"), "a b");
    EXPECT_EQ(TfStringTrim("   "), "");
    EXPECT_EQ(TfStringToLower("AbZ9"), "abz9");
    EXPECT_EQ(TfStringToUpper("AbZ9"), "ABZ9");
    EXPECT_EQ(TfStringCapitalize("usd"), "Usd");
}

TEST(Strings, BecomeIdentifiers)
{
    EXPECT_EQ(TfMakeValidIdentifier("9 lives!"), "__lives_");
    EXPECT_EQ(TfMakeValidIdentifier(""), "_");
    EXPECT_TRUE(TfIsValidIdentifier("_a9"));
    EXPECT_FALSE(TfIsValidIdentifier("9a"));
    EXPECT_FALSE(TfIsValidIdentifier(""));
}

TEST(NumberText, IsTheShortestThatReadsBack)
{
    EXPECT_EQ(TfStringify(0.1f), "0.1");
    EXPECT_EQ(TfStringify(0.1), "0.1");
    EXPECT_EQ(TfStringify(1.0 / 3), "0.3333333333333333");
    EXPECT_EQ(TfStringify(16777216.0f), "16777216");
    EXPECT_EQ(TfStringify(-0.0), "-0");
}

TEST(NumberText, GetsAnExponentOutsideOfThePlainRange)
{
    EXPECT_EQ(TfStringify(1e14), "100000000000000");
    EXPECT_EQ(TfStringify(1e15), "1e15");
    EXPECT_EQ(TfStringify(1.5e300), "1.5e300");
    EXPECT_EQ(TfStringify(0.000001), "0.000001");
    EXPECT_EQ(TfStringify(0.0000001), "1e-7");
}

TEST(NumberText, NamesInfinityAndNan)
{
    EXPECT_EQ(TfStringify(std::numeric_limits<double>::infinity()), "inf");
    EXPECT_EQ(TfStringify(-std::numeric_limits<float>::infinity()), "-inf");
    EXPECT_EQ(TfStringify(std::nan("")), "nan");
}

TEST(NumberText, ReadsBackBitByBit)
{
    // Neighbours of powers of two, where shortest texts are most easily wrong.
    for (int exponent = -1070; exponent != 1023; exponent += 7) {
        const double power = std::ldexp(1.0, exponent);
        for (double number : {power, std::nextafter(power, 0.0), std::nextafter(power, 1e308)}) {
            EXPECT_EQ(TfStringToDouble(TfStringify(number)), number);
        }
    }
}

TEST(NumberText, CanShowThatAWholeNumberIsADouble)
{
    char text[128];
    ASSERT_TRUE(TfDoubleToString(3.0, text, sizeof(text), true));
    EXPECT_STREQ(text, "3.0");
    ASSERT_TRUE(TfDoubleToString(3.0, text, sizeof(text), false));
    EXPECT_STREQ(text, "3");
    EXPECT_FALSE(TfDoubleToString(3.0, text, 8, false));
}

TEST(NumberText, OutOfRangeReadsAsTheLimit)
{
    EXPECT_EQ(TfStringToDouble("1e999"), std::numeric_limits<double>::infinity());
    EXPECT_EQ(TfStringToDouble("-1e999"), -std::numeric_limits<double>::infinity());
    EXPECT_EQ(TfStringToDouble("1e-999"), 0.0);
    bool outOfRange = false;
    EXPECT_EQ(TfStringToInt64("9223372036854775808", &outOfRange), std::numeric_limits<int64_t>::max());
    EXPECT_TRUE(outOfRange);
    EXPECT_EQ(TfStringToInt64(" 7"), 0);
    EXPECT_EQ(TfStringToInt64("-7", &outOfRange), -7);
    EXPECT_FALSE(outOfRange);
}

TEST(NumberText, MayHaveASign)
{
    EXPECT_EQ(TfStringToDouble("+1.5"), 1.5);
    EXPECT_EQ(TfStringToDouble("-.5"), -0.5);
    EXPECT_EQ(TfStringToDouble("-inf"), -std::numeric_limits<double>::infinity());
}

TEST(NumberText, ThatIsNoNumberReadsAsZero)
{
    EXPECT_EQ(TfStringToDouble(""), 0.0);
    EXPECT_EQ(TfStringToDouble("abc"), 0.0);
    EXPECT_EQ(TfStringToDouble("1.5m"), 0.0);
    EXPECT_EQ(TfStringToDouble("--1"), 0.0);
    EXPECT_EQ(TfStringToDouble("infinity"), 0.0);
}

TEST(DictionaryOrder, PutsNumbersInTheirValuesOrder)
{
    Parts names{"a10", "a9", "a1", "b", "A2", "a02"};
    std::sort(names.begin(), names.end(), TfDictionaryLessThan());
    EXPECT_EQ(names, (Parts{"a1", "A2", "a02", "a9", "a10", "b"}));
}

TEST(DictionaryOrder, IgnoresCaseUntilTheEnd)
{
    const TfDictionaryLessThan less;
    EXPECT_TRUE(less("abacus", "Albert"));
    EXPECT_TRUE(less("Albert", "albert"));
    EXPECT_FALSE(less("albert", "Albert"));
    EXPECT_TRUE(less("Abc", "abcd"));
    EXPECT_FALSE(less("same", "same"));
}

TEST(DictionaryOrder, PutsUnderscoresBeforeLetters) { EXPECT_TRUE(TfDictionaryLessThan()("a_b", "aab")); }

TEST(FilePaths, Normalize)
{
    EXPECT_EQ(TfNormPath("a//b/./c/../d/"), "a/b/d");
    EXPECT_EQ(TfNormPath("../a/../.."), "../..");
    EXPECT_EQ(TfNormPath("/../a"), "/a");
    EXPECT_EQ(TfNormPath("///a"), "/a");
    EXPECT_EQ(TfNormPath("//a"), "//a");
    EXPECT_EQ(TfNormPath(""), ".");
}

TEST(FilePaths, ComeApart)
{
    EXPECT_EQ(TfGetBaseName("/a/b.usd"), "b.usd");
    EXPECT_EQ(TfGetBaseName("/a/b/"), "b");
    EXPECT_EQ(TfGetBaseName("//"), "");
    EXPECT_EQ(TfGetPathName("/a/b.usd"), "/a/");
    EXPECT_EQ(TfGetPathName("b.usd"), "");
    EXPECT_EQ(TfGetExtension("/a.x/b.usd"), "usd");
    EXPECT_EQ(TfGetExtension("/a/.hidden"), "");
    EXPECT_EQ(TfGetExtension("/a/b"), "");
    EXPECT_EQ(TfStringCatPaths("/a/b", "../c"), "/a/c");
}

TEST(FilePaths, OfWhatDoesNotExistHaveARealPathOnlyWhenAllowed)
{
    std::string error;
    EXPECT_EQ(TfRealPath("/no such folder/x", false, &error), "");
    EXPECT_FALSE(error.empty());
    EXPECT_EQ(TfRealPath("/no such folder/x", true), "/no such folder/x");
}
