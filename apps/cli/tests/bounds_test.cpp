#include "run_cli.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace vesk::cli::tests {
namespace {

using ::testing::HasSubstr;

class Bounds : public ::testing::Test
{
protected:
    std::string json(std::vector<std::string> options)
    {
        std::vector<std::string> arguments{"bounds", m_scene, "--json"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const CliResult result = runCli(arguments);
        EXPECT_EQ(result.err, "");
        return result.out;
    }

    vesk::tests::TemporaryFolder m_folder;
    const std::string m_scene = m_folder.write("scene.usda", kScene).string();
};

TEST_F(Bounds, CountDefaultAndRenderPurpose)
{
    EXPECT_EQ(json({}), R"({"empty":false,"min":[-1.0,-1.0,-1.0],"max":[6.0,1.0,1.0]})"
                        "\n");
}

TEST_F(Bounds, FollowTheTime)
{
    // Halfway from (5, 0, 0) at 1 to (9, 0, 0) at 5.
    EXPECT_EQ(json({"--time", "3"}), R"({"empty":false,"min":[-1.0,-1.0,-1.0],"max":[8.0,1.0,1.0]})"
                                     "\n");
}

TEST_F(Bounds, CountProxyInPlaceOfRenderWhenAsked)
{
    EXPECT_EQ(json({"--proxy"}), R"({"empty":false,"min":[-10.0,-10.0,-10.0],"max":[10.0,10.0,10.0]})"
                                 "\n");
}

TEST_F(Bounds, OfSomePrimsAreThoseOfAllOfThem)
{
    EXPECT_EQ(json({"--path", "/World/Ball", "--path", "/World/Sheet"}),
              R"({"empty":false,"min":[-1.0,-1.0,-1.0],"max":[6.0,1.0,1.0]})"
              "\n");
}

TEST_F(Bounds, OfOnePrimLeaveTheOthersOut)
{
    EXPECT_EQ(json({"--path", "/World/Ball"}), R"({"empty":false,"min":[4.0,-1.0,-1.0],"max":[6.0,1.0,1.0]})"
                                               "\n");
}

TEST_F(Bounds, OfASceneWithoutGeometryAreEmpty)
{
    const std::string scene = m_folder.write("empty.usda", kEmptyScene).string();
    const CliResult result = runCli({"bounds", scene, "--json"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, R"({"empty":true,"min":null,"max":null})"
                          "\n");
}

TEST_F(Bounds, ForPeopleAreTwoCorners)
{
    EXPECT_EQ(runCli({"bounds", m_scene}).out, "(-1, -1, -1) to (6, 1, 1)\n");
}

struct BadPath
{
    const char* name;
    const char* path;
    const char* error;
};

class BadBoundsPath : public Bounds, public ::testing::WithParamInterface<BadPath>
{};

TEST_P(BadBoundsPath, IsExitOneWithOneLine)
{
    const CliResult result = runCli({"bounds", m_scene, "--path", GetParam().path});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr(GetParam().error));
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, BadBoundsPath,
    ::testing::Values(BadPath{"Malformed", "/World//Ball",
                              "vesk: the path '/World//Ball' is not a well-formed prim path; write it as "
                              "/Name/Name\n"},
                      BadPath{"Relative", "World", "'World' is not a well-formed prim path"},
                      BadPath{"Property", "/World.visibility",
                              "'/World.visibility' is not a well-formed prim path"},
                      BadPath{"Unknown", "/World/Nothing", "has no prim '/World/Nothing'"}),
    [](const auto& example) { return example.param.name; });

} // namespace
} // namespace vesk::cli::tests
