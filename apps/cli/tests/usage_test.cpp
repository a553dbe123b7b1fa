#include "run_cli.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace vesk::cli::tests {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;
using Arguments = std::vector<std::string>;

TEST(Version, NamesVersionOpenUsdAndRenderers)
{
    const CliResult result = runCli({"--version"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, StartsWith("vesk 0."));
    EXPECT_THAT(result.out, HasSubstr("\nOpenUSD: "));
    EXPECT_THAT(result.out, HasSubstr("\nrenderers: embree (default), recording"));
    EXPECT_EQ(result.err, "");
}

class HelpOfVerb : public ::testing::TestWithParam<const char*>
{};

TEST_P(HelpOfVerb, ShowsAnExample)
{
    const CliResult result = runCli({GetParam(), "--help"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, HasSubstr("Example"));
    EXPECT_THAT(result.out, HasSubstr(std::string("vesk ") + GetParam() + " scene.usda"));
}

INSTANTIATE_TEST_SUITE_P(Verbs, HelpOfVerb,
                         ::testing::Values("info", "bounds", "shot", "turntable", "sheet", "pick", "tour",
                                           "replay"));

struct WrongUsage
{
    const char* name;
    Arguments arguments;
    const char* error; ///< the whole line, without its end
};

class WrongCommandLine : public ::testing::TestWithParam<WrongUsage>
{};

TEST_P(WrongCommandLine, IsExitTwoWithOneLine)
{
    const CliResult result = runCli(GetParam().arguments);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, std::string(GetParam().error) + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    Cases, WrongCommandLine,
    ::testing::Values(
        WrongUsage{"NoVerb", {}, "vesk: A subcommand is required; see vesk --help"},
        WrongUsage{"UnknownVerb", {"fly"}, "vesk: there is no verb 'fly'; see vesk --help"},
        WrongUsage{"UnknownVerbAfterTheLog",
                   {"--log", "-", "fly", "high"},
                   "vesk: there is no verb 'fly'; see vesk --help"},
        WrongUsage{"NoScene", {"info"}, "vesk: SCENE is required; see vesk info --help"},
        WrongUsage{"NoOutput", {"shot", "a.usda"}, "vesk: --output is required; see vesk shot --help"},
        WrongUsage{"UnknownOption",
                   {"info", "a.usda", "--colour"},
                   "vesk: The following argument was not expected: --colour; see vesk info --help"},
        WrongUsage{
            "ZeroSize",
            {"shot", "a.usda", "-o", "a.png", "--size", "0x0"},
            "vesk: --size '0x0' is out of range: each side must be from 1 to 16384 pixels; see vesk shot "
            "--help"},
        WrongUsage{"LightsByNumber",
                   {"shot", "a.usda", "-o", "a.png", "--lights", "1"},
                   "vesk: --lights: 1 not in {default,none,scene}; see vesk shot --help"},
        WrongUsage{"PictureFormat",
                   {"shot", "a.usda", "-o", "a.jpg"},
                   "vesk: 'a.jpg' must end in .png or .exr; see vesk shot --help"}),
    [](const auto& example) { return example.param.name; });

TEST(Log, InAMissingFolderIsRefusedAndMakesNoFolder)
{
    const vesk::tests::TemporaryFolder folder;
    const std::string scene = folder.write("scene.usda", kScene).string();
    const std::string log = (folder.path() / "none" / "log.txt").string();
    const CliResult result = runCli({"info", scene, "--log", log});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "vesk: cannot write '" + log + "': the folder '" +
                              (folder.path() / "none").string() + "' does not exist; create it first\n");
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "none"));
}

TEST(Log, GetsTheRecordsAndStdoutTheResultAlone)
{
    const vesk::tests::TemporaryFolder folder;
    const std::string scene = folder.write("scene.usda", kScene).string();
    const std::string script = folder.write("s.json", R"([{"op": "endCameraInteraction"}])").string();
    const std::string log = (folder.path() / "log.txt").string();
    const CliResult result = runCli({"replay", scene, script, "--log", log});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 2);
    EXPECT_THAT(vesk::tests::readFile(log),
                HasSubstr("ViewportModel endCameraInteraction: already inactive"));
}

TEST(WrongCommandLine, NamesTheViewsForAnUnknownOne)
{
    const CliResult result = runCli({"shot", "a.usda", "-o", "a.png", "--view", "inside"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.err, HasSubstr("inside"));
    EXPECT_THAT(result.err, HasSubstr("three-quarters"));
}

} // namespace
} // namespace vesk::cli::tests
