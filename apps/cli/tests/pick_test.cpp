#include "run_cli.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>

namespace vesk::cli::tests {
namespace {

using Json = nlohmann::ordered_json;

class Pick : public ::testing::Test
{
protected:
    CliResult pick(std::vector<std::string> options)
    {
        std::vector<std::string> arguments{"pick", m_scene, "--size", "200x100", "--json"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return runCli(arguments);
    }
    Json picked(const std::vector<std::string>& options)
    {
        const CliResult result = pick(options);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        return Json::parse(result.out);
    }

    vesk::tests::TemporaryFolder m_folder;
    const std::string m_scene = m_folder.write("scene.usda", kScene).string();
};

// The camera stands at z = 10 and looks along -z at the box whose front lies at z = 1.
TEST_F(Pick, TellsThePrimUnderThePointWithAllItsKeys)
{
    const Json json = picked({"--camera", "/World/Front", "--at", "100,50"});
    std::vector<std::string> keys;
    for (const auto& item : json.items())
        keys.push_back(item.key());
    EXPECT_EQ(keys, (std::vector<std::string>{"hit", "primPath", "secondaryPath", "instanceIndex",
                                              "tertiaryPath", "point", "normal", "depth"}));
    EXPECT_EQ(json["hit"], true);
    EXPECT_EQ(json["primPath"], "/World/Box");
    EXPECT_EQ(json["secondaryPath"], "");
    EXPECT_EQ(json["instanceIndex"], -1);
    EXPECT_NEAR(json["depth"].get<double>(), 9.0, 1e-5);
    EXPECT_NEAR(json["point"][2].get<double>(), 1.0, 1e-5);
    EXPECT_NEAR(json["normal"][2].get<double>(), 1.0, 1e-6);
}

TEST_F(Pick, OfNothingIsAMissAndNoError)
{
    const Json json = picked({"--camera", "/World/Front", "--at", "1,1"});
    EXPECT_EQ(json["hit"], false);
}

// The camera shows 20.955 across 50, its window's height is fitted: 50 pixels are 15.2908 / 50 * 9 / 2
// = 1.376 units at the box's front, which ends 36.3 pixels from the middle.
TEST_F(Pick, LooksAroundWithinTheRadiusInLogicalPixels)
{
    EXPECT_EQ(picked({"--camera", "/World/Front", "--at", "140,50"})["hit"], false);
    EXPECT_EQ(picked({"--camera", "/World/Front", "--at", "140,50", "--radius", "2"})["hit"], false);
    EXPECT_EQ(picked({"--camera", "/World/Front", "--at", "140,50", "--radius", "6"})["primPath"],
              "/World/Box");
    EXPECT_EQ(picked({"--camera", "/World/Front", "--at", "140,50", "--radius", "6", "--device-pixel-ratio",
                      "2.5"})["primPath"],
              "/World/Box");
}

TEST_F(Pick, AnswersInWordsWithoutJson)
{
    const CliResult hit =
        runCli({"pick", m_scene, "--camera", "/World/Front", "--size", "200x100", "--at", "100,50"});
    EXPECT_EQ(hit.exitCode, 0);
    EXPECT_EQ(hit.out.substr(0, hit.out.find('\n')), "prim      /World/Box");
    const CliResult miss =
        runCli({"pick", m_scene, "--camera", "/World/Front", "--size", "200x100", "--at", "1,1"});
    EXPECT_EQ(miss.exitCode, 0);
    EXPECT_EQ(miss.out, "nothing\n");
}

TEST_F(Pick, RefusesAPointThatIsNoneAsWrongUsage)
{
    for (const char* at : {"12", "a,b", "1,2,3", "nan,1", ""}) {
        const CliResult result = pick({"--at", at});
        EXPECT_EQ(result.exitCode, 2) << at;
        EXPECT_EQ(result.out, "");
    }
    EXPECT_EQ(pick({"--at", "1,x"}).err,
              "vesk: --at '1,x' is not of the form X,Y, for example 640.5,360.5; see vesk pick --help\n");
    EXPECT_EQ(pick({}).err, "vesk: --at is required; see vesk pick --help\n");
    EXPECT_EQ(pick({"--at", "1,1", "--radius", "-1"}).exitCode, 2);
}

} // namespace
} // namespace vesk::cli::tests
