#include <apps/support/shot_arguments.h>

#include <apps/support/errors.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

namespace vesk::apps {
namespace {

using ::testing::ElementsAre;

std::string usageErrorOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const UsageError& error) {
        return error.what();
    }
    return "";
}

TEST(ParseSize, ReadsWidthAndHeight) { EXPECT_THAT(parseSize("640x360"), ElementsAre(640, 360)); }

TEST(ParseSize, TakesTheSmallestAndTheLargestSide)
{
    EXPECT_THAT(parseSize("1x16384"), ElementsAre(1, 16384));
}

class BadSizeText : public ::testing::TestWithParam<const char*>
{};

TEST_P(BadSizeText, IsRefusedWithTheFormThatIsMeant)
{
    const std::string text = GetParam();
    EXPECT_EQ(usageErrorOf([&] { parseSize(text); }),
              "--size '" + text + "' is not of the form WIDTHxHEIGHT, for example 1280x720");
}

INSTANTIATE_TEST_SUITE_P(Texts, BadSizeText,
                         ::testing::Values("", "x", "640", "640x", "x360", "640*360", "640x360x2", " 640x360",
                                           "640x360 ", "6.4x360", "99999999999x1", "axb"));

class SizeOutOfRange : public ::testing::TestWithParam<const char*>
{};

TEST_P(SizeOutOfRange, IsRefusedWithTheRange)
{
    const std::string text = GetParam();
    EXPECT_EQ(usageErrorOf([&] { parseSize(text); }),
              "--size '" + text + "' is out of range: each side must be from 1 to 16384 pixels");
}

INSTANTIATE_TEST_SUITE_P(Texts, SizeOutOfRange,
                         ::testing::Values("0x0", "0x360", "640x0", "-1x5", "16385x1"));

TEST(ParseColor, ReadsFourNumbers)
{
    EXPECT_THAT(parseColor("0.25,0.5,1,0"), ElementsAre(0.25f, 0.5f, 1.0f, 0.0f));
}

TEST(ParseColor, GivesAMissingOpacityOne)
{
    EXPECT_THAT(parseColor("0,0.5,1"), ElementsAre(0.0f, 0.5f, 1.0f, 1.0f));
}

class BadColorText : public ::testing::TestWithParam<const char*>
{};

TEST_P(BadColorText, IsRefusedWithTheFormThatIsMeant)
{
    const std::string text = GetParam();
    EXPECT_EQ(usageErrorOf([&] { parseColor(text); }),
              "the colour '" + text + "' is not of the form R,G,B or R,G,B,A, for example 0.2,0.2,0.25,1");
}

INSTANTIATE_TEST_SUITE_P(Texts, BadColorText,
                         ::testing::Values("", "1", "1,2", "1,2,3,4,5", "1,,3", "red", "1,2,nan", "1,2,inf",
                                           "1,2,3,"));

TEST(ViewNames, StandAtTheValuesOfTheViewDirections)
{
    EXPECT_THAT(viewNames(),
                ElementsAre("current", "front", "back", "left", "right", "top", "bottom", "three-quarters"));
}

} // namespace
} // namespace vesk::apps
