#include <apps/support/errors.h>
#include <apps/support/json.h>
#include <apps/support/progress.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::apps {
namespace {

TEST(OneLine, FoldsLineBreaksAndTabsIntoOneBlank)
{
    EXPECT_EQ(oneLine("first\n\n\tsecond\r\nthird\n"), "first second third");
}

TEST(ProgressLine, ShowsBarCountAndText)
{
    EXPECT_EQ(progressLine("front view", 1, 2, 80), "[============            ] 1/2 front view");
}

TEST(ProgressLine, ShowsTheTextAloneWhenTheTotalIsUnknown)
{
    EXPECT_EQ(progressLine("opening", 0, 0, 80), "opening");
}

TEST(ProgressLine, IsCutAtTheTerminalsWidth)
{
    EXPECT_EQ(progressLine("opening a scene", 0, 0, 7), "opening");
}

TEST(JsonNumber, KeepsTheShortestTextThatReadsBackEqual) { EXPECT_EQ(jsonNumber(0.1).dump(), "0.1"); }

TEST(JsonNumber, WidensAFloatBeforeItIsWritten)
{
    // The float nearest 0.1 is exactly 13421773 / 2^27 = 0.10000000149011612 (shortest double text).
    EXPECT_EQ(jsonNumber(0.1f).dump(), "0.10000000149011612");
}

TEST(JsonNumber, WritesWhatJsonCannotHoldAsText)
{
    EXPECT_EQ(jsonNumber(std::numeric_limits<double>::quiet_NaN()).dump(), "\"nan\"");
    EXPECT_EQ(jsonNumber(std::numeric_limits<double>::infinity()).dump(), "\"inf\"");
    EXPECT_EQ(jsonNumber(-std::numeric_limits<double>::infinity()).dump(), "\"-inf\"");
}

TEST(JsonBounds, HasNoCornersWhenTheRangeIsEmpty)
{
    EXPECT_EQ(jsonBounds(GfRange3f()).dump(), R"({"empty":true,"min":null,"max":null})");
}

TEST(JsonBounds, HasTheCornersOfTheRange)
{
    EXPECT_EQ(jsonBounds(GfRange3f(GfVec3f(-1, 0, 0.5f), GfVec3f(1, 2, 3))).dump(),
              R"({"empty":false,"min":[-1.0,0.0,0.5],"max":[1.0,2.0,3.0]})");
}

TEST(JsonLine, WritesEachDecimalWithAsFewDigitsAsReadBackEqual)
{
    // 2^89, and a number whose seventeen digits are not all needed.
    EXPECT_EQ(jsonLine(618970019642690137449562112.0), "6.189700196426902e+26");
    EXPECT_EQ(jsonLine(9.5e-3), "0.0095");
    EXPECT_EQ(jsonLine(5e-324), "5e-324");
    EXPECT_EQ(jsonLine(1.7976931348623157e308), "1.7976931348623157e+308");
}

TEST(JsonLine, ReadsBackEqualForManyDecimals)
{
    std::uint64_t bits = 88172645463325252u;
    for (int i = 0; i < 20000; ++i) {
        bits ^= bits << 13;
        bits ^= bits >> 7;
        bits ^= bits << 17;
        double value = 0.0;
        std::memcpy(&value, &bits, sizeof value);
        if (!std::isfinite(value)) continue;
        EXPECT_EQ(Json::parse(jsonLine(value)).get<double>(), value);
    }
}

TEST(JsonLine, KeepsDecimalsApartFromWholeNumbers)
{
    EXPECT_EQ(jsonLine(Json::array({1.0, -0.0, 100000.0, 1e20, 7})), "[1.0,-0.0,100000.0,1e+20,7]");
}

TEST(JsonLine, KeepsKeysInOrderAndEmptyThings)
{
    const Json json = {{"b", Json::array()}, {"a", Json::object()}, {"c", nullptr}, {"\"", true}};
    EXPECT_EQ(jsonLine(json), R"({"b":[],"a":{},"c":null,"\"":true})");
}

TEST(JsonLine, ReplacesBytesThatAreNoUtf8)
{
    EXPECT_EQ(jsonLine({{"text", "a\xff"}}), "{\"text\":\"a\xef\xbf\xbd\"}");
}

TEST(JsonCamera, NamesEveryFieldInOrder)
{
    GfCamera camera;
    camera.SetClippingRange(GfRange1f(0.5f, 100));
    camera.SetFocalLength(35);
    const Json json = jsonCamera(camera);

    std::vector<std::string> keys;
    for (const auto& item : json.items())
        keys.push_back(item.key());
    EXPECT_EQ(keys,
              (std::vector<std::string>{"transform", "projection", "horizontalAperture", "verticalAperture",
                                        "horizontalApertureOffset", "verticalApertureOffset", "focalLength",
                                        "fStop", "focusDistance", "clippingRange", "clippingPlanes"}));
    EXPECT_EQ(json["transform"].dump(),
              "[[1.0,0.0,0.0,0.0],[0.0,1.0,0.0,0.0],[0.0,0.0,1.0,0.0],[0.0,0.0,0.0,1.0]]");
    EXPECT_EQ(json["projection"], "perspective");
    EXPECT_EQ(json["focalLength"], 35.0);
    EXPECT_EQ(json["clippingRange"].dump(), "[0.5,100.0]");
}

} // namespace
} // namespace vesk::apps
