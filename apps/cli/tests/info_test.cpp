#include "run_cli.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace vesk::cli::tests {
namespace {

using ::testing::HasSubstr;

class Info : public ::testing::Test
{
protected:
    vesk::tests::TemporaryFolder m_folder;
    const std::string m_scene = m_folder.write("scene.usda", kScene).string();
};

TEST_F(Info, TellsWhatTheSceneHoldsAsJson)
{
    const CliResult result = runCli({"info", m_scene, "--json"});

    ASSERT_EQ(result.exitCode, 0) << result.err;
    const auto json = nlohmann::ordered_json::parse(result.out);
    EXPECT_EQ(json["path"], m_scene);
    EXPECT_EQ(json["prims"], 7);
    EXPECT_EQ(json["meshes"], 1);
    EXPECT_EQ(json["cameras"].dump(), R"(["/World/Front","/World/Side"])");
    EXPECT_EQ(json["upAxis"], "Y");
    EXPECT_EQ(json["metersPerUnit"], 0.01);
    EXPECT_EQ(json["startTimeCode"], 1.0);
    EXPECT_EQ(json["endTimeCode"], 5.0);
    EXPECT_EQ(json["timeCodesPerSecond"], 24.0);
}

TEST_F(Info, BoundsAreThoseAtTheStartTime)
{
    // The box spans -1 to 1; the ball of radius 1 is at x = 5 at time 1.
    const CliResult result = runCli({"info", m_scene, "--json"});
    const auto json = nlohmann::ordered_json::parse(result.out);
    EXPECT_EQ(json["bounds"]["empty"], false);
    EXPECT_EQ(json["bounds"]["min"].dump(), "[-1.0,-1.0,-1.0]");
    EXPECT_EQ(json["bounds"]["max"].dump(), "[6.0,1.0,1.0]");
}

TEST_F(Info, KeysStandInTheirOrder)
{
    const CliResult result = runCli({"info", m_scene, "--json"});
    std::string keys;
    const auto json = nlohmann::ordered_json::parse(result.out);
    for (const auto& item : json.items())
        keys += item.key() + " ";
    EXPECT_EQ(keys,
              "path prims meshes cameras upAxis metersPerUnit startTimeCode endTimeCode timeCodesPerSecond "
              "bounds ");
}

TEST_F(Info, PrintsTheSameForPeople)
{
    const CliResult result = runCli({"info", m_scene});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("prims              7\n"));
    EXPECT_THAT(result.out, HasSubstr("bounds             (-1, -1, -1) to (6, 1, 1)\n"));
    EXPECT_THAT(result.out, HasSubstr("  /World/Front\n"));
}

TEST_F(Info, OfASceneWithoutGeometryIsNoError)
{
    const std::string scene = m_folder.write("empty.usda", kEmptyScene).string();
    const CliResult result = runCli({"info", scene, "--json"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(nlohmann::ordered_json::parse(result.out)["bounds"]["empty"], true);
}

TEST_F(Info, OfAMissingFileIsOneLine)
{
    const CliResult result = runCli({"info", "/no/such/scene.usda"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr("/no/such/scene.usda"));
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1);
}

TEST_F(Info, OfAFolderIsOneLine)
{
    const CliResult result = runCli({"info", m_folder.path().string()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr(m_folder.path().string()));
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1);
}

TEST_F(Info, OfASyntaxErrorNamesFileAndLine)
{
    const std::string text = "#usda 1.0\n\ndef Xform \"World\"\n{\n    double x = = 3\n}\n";
    const std::string scene = m_folder.write("bad.usda", text).string();
    const CliResult result = runCli({"info", scene});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr(scene + ":5"));
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1);
}

} // namespace
} // namespace vesk::cli::tests
