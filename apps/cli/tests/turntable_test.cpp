#include "run_cli.h"

#include <apps/support/image_file.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace vesk::cli::tests {
namespace {

using ::testing::HasSubstr;

class Turntable : public ::testing::Test
{
protected:
    CliResult turn(const std::filesystem::path& folder, std::vector<std::string> options = {})
    {
        std::vector<std::string> arguments{"turntable", m_scene,    "-o", folder.string(), "--size",
                                           "48x48",     "--frames", "4",  "--samples",     "1"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return runCli(arguments);
    }

    vesk::tests::TemporaryFolder m_folder;
    const std::string m_scene = m_folder.write("scene.usda", kScene).string();
    const std::filesystem::path m_out = m_folder.path() / "turn";
};

TEST_F(Turntable, WritesNumberedFramesIntoAFolderThatItMakes)
{
    const CliResult result = turn(m_out);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    std::string expected;
    for (const char* name : {"frame.0001.png", "frame.0002.png", "frame.0003.png", "frame.0004.png"}) {
        EXPECT_TRUE(std::filesystem::is_regular_file(m_out / name)) << name;
        expected += (m_out / name).string() + "\n";
    }
    EXPECT_EQ(result.out, expected);
}

TEST_F(Turntable, GoesOnceAroundTheSubject)
{
    // Four quarter turns around a cube look alike from everywhere but for the light, which follows the
    // viewer.
    const CliResult cube =
        turn(m_out, {"--path", "/World/Box", "--view", "front", "--aov", "color", "--aov", "depth"});
    ASSERT_EQ(cube.exitCode, 0) << cube.err;
    EXPECT_TRUE(std::filesystem::is_regular_file(m_out / "frame.0002.depth.exr"));
    const apps::Image first = apps::readPng(m_out / "frame.0001.color.png");
    const apps::Image third = apps::readPng(m_out / "frame.0003.color.png");
    EXPECT_NE(first.rgba, third.rgba); // the ball stands on the other side
    EXPECT_EQ(first.pixel(24, 24)[3], 255);
}

TEST_F(Turntable, BeginsWithThePictureThatShotTakes)
{
    ASSERT_EQ(turn(m_out).exitCode, 0);
    const std::string shot = (m_folder.path() / "shot.png").string();
    ASSERT_EQ(runCli({"shot", m_scene, "-o", shot, "--size", "48x48", "--samples", "1"}).exitCode, 0);
    EXPECT_EQ(apps::readPng(m_out / "frame.0001.png").rgba, apps::readPng(shot).rgba);
}

TEST_F(Turntable, TellsItsFilesAsJson)
{
    const CliResult result = turn(m_out, {"--json"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const auto json = nlohmann::ordered_json::parse(result.out);
    EXPECT_EQ(json["files"].size(), 4u);
    EXPECT_EQ(json["files"][3], (m_out / "frame.0004.png").string());
    EXPECT_TRUE(json["camera"].is_object());
}

TEST_F(Turntable, RefusesAFolderInsideOneThatIsMissing)
{
    const CliResult result = turn(m_folder.path() / "missing" / "turn");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "vesk: cannot make the folder '" + (m_folder.path() / "missing" / "turn").string() +
                              "': the folder '" + (m_folder.path() / "missing").string() +
                              "' does not exist; create it first\n");
}

TEST_F(Turntable, RefusesNoFramesAsWrongUsage)
{
    const CliResult result = turn(m_out, {"--frames", "0"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.err, HasSubstr("--frames"));
    EXPECT_FALSE(std::filesystem::exists(m_out));
}

} // namespace
} // namespace vesk::cli::tests
