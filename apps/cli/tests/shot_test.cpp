#include "run_cli.h"

#include <apps/support/image_file.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace vesk::cli::tests {
namespace {

using ::testing::HasSubstr;

class Shot : public ::testing::Test
{
protected:
    std::string file(const char* name) const { return (m_folder.path() / name).string(); }

    /// Takes a small picture with few samples.
    CliResult shoot(const std::string& output, std::vector<std::string> options = {})
    {
        std::vector<std::string> arguments{"shot",   m_scene, "-o",        output,
                                           "--size", "64x48", "--samples", "2"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return runCli(arguments);
    }

    bool folderHolds(const std::vector<std::string>& names) const
    {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(m_folder.path())) {
            found.push_back(entry.path().filename().string());
        }
        std::sort(found.begin(), found.end());
        return found == names;
    }

    vesk::tests::TemporaryFolder m_folder;
    const std::string m_scene = m_folder.write("scene.usda", kScene).string();
};

TEST_F(Shot, WritesAPictureOfTheGivenSizeAndPrintsItsName)
{
    const CliResult result = shoot(file("a.png"));

    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, file("a.png") + "\n");
    EXPECT_EQ(result.err, "");
    const apps::Image image = apps::readPng(file("a.png"));
    EXPECT_EQ(image.width, 64);
    EXPECT_EQ(image.height, 48);
}

TEST_F(Shot, HasAsManyPixelsAsTheDevicePixelRatioSays)
{
    ASSERT_EQ(shoot(file("a.png"), {"--device-pixel-ratio", "1.5"}).exitCode, 0);
    const apps::Image image = apps::readPng(file("a.png"));
    EXPECT_EQ(image.width, 96);
    EXPECT_EQ(image.height, 72);
}

TEST_F(Shot, IsTheSameFromRunToRun)
{
    ASSERT_EQ(shoot(file("a.png")).exitCode, 0);
    ASSERT_EQ(shoot(file("b.png")).exitCode, 0);
    EXPECT_EQ(vesk::tests::readFile(file("a.png")), vesk::tests::readFile(file("b.png")));
}

TEST_F(Shot, ShowsTheSubjectInFrontOfTheBackground)
{
    ASSERT_EQ(
        shoot(file("a.png"), {"--view", "front", "--path", "/World/Box", "--background", "1,0,0,1"}).exitCode,
        0);
    const apps::Image image = apps::readPng(file("a.png"));
    // The box is framed in the middle; its grey has as much green as red, the background has none.
    EXPECT_GT(image.pixel(32, 24)[1], 40);
    EXPECT_EQ(image.pixel(1, 1)[0], 255);
    EXPECT_EQ(image.pixel(1, 1)[1], 0);
}

TEST_F(Shot, LeavesTheBackgroundTransparentWhenAsked)
{
    ASSERT_EQ(shoot(file("a.png"), {"--view", "front", "--path", "/World/Box", "--transparent"}).exitCode, 0);
    const apps::Image image = apps::readPng(file("a.png"));
    EXPECT_EQ(image.pixel(1, 1)[3], 0);
    EXPECT_EQ(image.pixel(32, 24)[3], 255);
}

TEST_F(Shot, DiffersFromOneViewToAnother)
{
    ASSERT_EQ(shoot(file("a.png"), {"--view", "front"}).exitCode, 0);
    ASSERT_EQ(shoot(file("b.png"), {"--view", "right"}).exitCode, 0);
    EXPECT_NE(apps::readPng(file("a.png")).rgba, apps::readPng(file("b.png")).rgba);
}

TEST_F(Shot, TellsFilesCameraAndTimingsAsJson)
{
    const CliResult result = shoot(file("a.png"), {"--camera", "/World/Front", "--json"});

    ASSERT_EQ(result.exitCode, 0) << result.err;
    const auto json = nlohmann::ordered_json::parse(result.out);
    EXPECT_EQ(json["files"], nlohmann::ordered_json::array({file("a.png")}));
    EXPECT_EQ(json["camera"]["transform"][3].dump(), "[0.0,0.0,10.0,1.0]");
    EXPECT_EQ(json["camera"]["projection"], "perspective");
    EXPECT_TRUE(json["timings"].is_object());
}

TEST_F(Shot, OfASceneWithoutGeometryIsAPicture)
{
    const std::string scene = m_folder.write("empty.usda", kEmptyScene).string();
    const CliResult result =
        runCli({"shot", scene, "-o", file("a.png"), "--size", "16x16", "--samples", "1"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(apps::readPng(file("a.png")).width, 16);
}

struct FailingShot
{
    const char* name;
    std::vector<std::string> options;
    int exitCode;
    const char* error;
};

class BadShot : public Shot, public ::testing::WithParamInterface<FailingShot>
{};

TEST_P(BadShot, IsOneLineAndLeavesNoFile)
{
    const CliResult result = shoot(file("a.png"), GetParam().options);
    EXPECT_EQ(result.exitCode, GetParam().exitCode);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr(GetParam().error));
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    EXPECT_TRUE(folderHolds({"scene.usda"}));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, BadShot,
    ::testing::Values(
        FailingShot{"UnknownRenderer",
                    {"--renderer", "teapot"},
                    2,
                    "vesk: there is no renderer 'teapot'; this build has: embree, recording"},
        FailingShot{"UnknownCamera", {"--camera", "/World/Nothing"}, 1, "has no prim '/World/Nothing'"},
        FailingShot{
            "MalformedCamera",
            {"--camera", "World Front"},
            1,
            "'World Front' is not a well-formed prim path; write it as /Name/Name, vesk info lists the "
            "cameras\n"},
        FailingShot{"MeshAsCamera", {"--camera", "/World/Sheet"}, 1, "'/World/Sheet' is not a camera"},
        FailingShot{"UnknownPath", {"--path", "/Nothing"}, 1, "has no prim '/Nothing'"}),
    [](const auto& example) { return example.param.name; });

TEST_F(Shot, IntoAMissingFolderIsExitOne)
{
    const CliResult result = shoot(file("missing/a.png"));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "vesk: cannot write '" + file("missing/a.png") + "': the folder '" +
                              file("missing") + "' does not exist; create it first\n");
}

} // namespace
} // namespace vesk::cli::tests
