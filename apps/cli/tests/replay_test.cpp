#include "run_cli.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>

namespace vesk::cli::tests {
namespace {

using ::testing::HasSubstr;
using Json = nlohmann::ordered_json;

class Replay : public ::testing::Test
{
protected:
    /// Replays a script and returns its lines.
    std::vector<Json> replay(const std::string& script)
    {
        const CliResult result = runScript(script);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        std::vector<Json> lines;
        std::istringstream text(result.out);
        for (std::string line; std::getline(text, line);)
            lines.push_back(Json::parse(line));
        return lines;
    }

    CliResult runScript(const std::string& script)
    {
        return runCli({"replay", m_scene, m_folder.write("script.json", script).string()});
    }

    vesk::tests::TemporaryFolder m_folder;
    const std::string m_scene = m_folder.write("scene.usda", kScene).string();
};

TEST_F(Replay, OfNoStepsShowsTheEndAlone)
{
    const auto lines = replay("[]");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0]["step"], 0);
    EXPECT_EQ(lines[0]["op"], "end");
}

TEST_F(Replay, PrintsALineAStepWithItsKeysInOrder)
{
    const auto lines = replay(R"([{"op": "zUp"}])");
    ASSERT_EQ(lines.size(), 2u);
    std::string keys;
    for (const auto& item : lines[0].items())
        keys += item.key() + " ";
    EXPECT_EQ(keys, "step op result camera distanceToCenter activeCameraPath zUp calls events tasks log ");
    EXPECT_EQ(lines[0]["result"], false);
}

TEST_F(Replay, ShowsRendererCallsAndEventsOfAGesture)
{
    const auto lines = replay(R"([{"op": "setDistanceToCenter", "distanceToCenter": 4},
                                  {"op": "moveCamera", "du": 3, "dv": 0, "dw": 0, "undoLabel": ""}])");
    const Json& line = lines[1];
    ASSERT_EQ(line["calls"].size(), 1u);
    EXPECT_EQ(line["calls"][0]["op"], "setCamera");
    EXPECT_EQ(line["calls"][0]["args"][0], line["camera"]);
    EXPECT_EQ(line["camera"]["transform"][3].dump(), "[3.0,0.0,0.0,1.0]");
    ASSERT_EQ(line["events"].size(), 1u);
    EXPECT_EQ(line["events"][0]["type"], "ViewportCameraChangedEvent");
    EXPECT_EQ(line["result"], nullptr);
}

TEST_F(Replay, ShowsAFutureAsPendingUntilTheTasksRun)
{
    const auto lines = replay(R"([{"op": "getSceneBounds"}, {"op": "runTasks"}])");
    EXPECT_EQ(lines[0]["result"], "pending");
    EXPECT_EQ(lines[0]["tasks"].dump(), R"([{"type":0,"label":"computeBBox"}])");
    EXPECT_EQ(lines[1]["result"], 1);
    ASSERT_EQ(lines[1]["completed"].size(), 1u);
    EXPECT_EQ(lines[1]["completed"][0]["step"], 0);
    // At time 0 the ball is where its first sample is, at x = 5.
    EXPECT_EQ(lines[1]["completed"][0]["value"]["max"].dump(), "[6.0,1.0,1.0]");
}

TEST_F(Replay, RunsWhatIsStillQueuedAtTheEnd)
{
    const auto lines = replay(R"([{"op": "getSceneBounds"}])");
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1]["op"], "end");
    EXPECT_EQ(lines[1]["completed"][0]["step"], 0);
}

TEST_F(Replay, ShowsAFailedTaskWithItsCode)
{
    const auto lines = replay(R"([{"op": "copyCameraFromPath", "cameraPath": "/World/Box",
                                   "updateDistanceToCenter": false, "label": ""}, {"op": "runTasks"}])");
    EXPECT_EQ(lines[1]["completed"][0]["error"].dump(),
              R"({"category":"ErrEnum","code":3,"message":"Invalid camera"})");
    EXPECT_EQ(
        lines[1]["log"].dump(),
        R"([{"level":"error","text":"Camera path /World/Box for copying to viewport camera is not a valid )"
        R"(UsdGeomCamera"}])");
}

TEST_F(Replay, ShowsWarningsOfTheModel)
{
    const auto lines = replay(R"([{"op": "endCameraInteraction"}])");
    EXPECT_EQ(lines[0]["log"].dump(),
              R"([{"level":"warn","text":"ViewportModel endCameraInteraction: already inactive"}])");
}

TEST_F(Replay, TakesAndPrintsWhatJsonHasNoNumberFor)
{
    const auto lines = replay(R"([{"op": "setCurrentTime", "time": "nan"}, {"op": "currentTime"},
                                  {"op": "setDistanceToCenter", "distanceToCenter": "-inf"}])");
    EXPECT_EQ(lines[1]["result"], "nan");
    EXPECT_EQ(lines[2]["distanceToCenter"], "-inf");
}

TEST_F(Replay, BeginsWithTheConstructionThatTheScriptAsksFor)
{
    const auto lines = replay(R"([{"op": "construct", "renderSize": [101, 33], "viewportSize": [10, 5],
                                   "devicePixelRatio": 1.5, "renderer": "recording"}, {"op": "renderSize"}])");
    EXPECT_EQ(lines[0]["calls"].dump(), R"([{"op":"setCameraFitPolicy","args":[2]}])");
    EXPECT_EQ(lines[1]["result"].dump(), "[101,33]");
}

TEST_F(Replay, EditsTheStageAndTakesItBack)
{
    const auto lines = replay(R"([{"op": "edit", "path": "/World/Box", "attribute": "size", "type": "double",
                                   "value": 30},
                                  {"op": "runTasks"}, {"op": "getSceneBounds"}, {"op": "runTasks"},
                                  {"op": "undo"}, {"op": "runTasks"}, {"op": "getSceneBounds"}, {"op": "runTasks"}])");
    EXPECT_EQ(lines[0]["tasks"].dump(), R"([{"type":1,"label":"edit"}])");
    EXPECT_EQ(lines[1]["events"][0]["type"], "StageChangesEvent");
    EXPECT_EQ(lines[1]["events"][0]["changedPropertyPaths"].dump(), R"(["/World/Box.size"])");
    EXPECT_EQ(lines[3]["completed"][0]["value"]["max"].dump(), "[15.0,15.0,15.0]");
    EXPECT_EQ(lines[7]["completed"][0]["value"]["max"].dump(), "[6.0,1.0,1.0]");
}

TEST_F(Replay, WritesFollowedCamerasOnceForADrag)
{
    const auto lines =
        replay(R"([{"op": "setActiveCameraPath", "cameraPath": "/World/Front"}, {"op": "runTasks"},
                                  {"op": "beginCameraInteraction"},
                                  {"op": "panCamera", "dx": 10, "dy": 0, "undoLabel": "drag"},
                                  {"op": "panCamera", "dx": 10, "dy": 0, "undoLabel": "later"},
                                  {"op": "endCameraInteraction"}])");
    EXPECT_EQ(lines[1]["activeCameraPath"], "/World/Front");
    EXPECT_EQ(lines[3]["tasks"].dump(), R"([{"type":1,"label":"drag"}])");
    EXPECT_EQ(lines[4]["tasks"].dump(), "[]");
    EXPECT_EQ(lines[5]["events"].size(), 1u);
}

TEST_F(Replay, PrintsRackFocusOfAGivenCamera)
{
    const auto lines =
        replay(R"([{"op": "setRackFocus", "camera": {"focusDistance": 0}, "focalLength": 35}])");
    EXPECT_EQ(lines[0]["result"]["focusDistance"], 0.0);
    EXPECT_EQ(lines[0]["result"]["transform"][3].dump(), "[0.0,0.0,0.0,1.0]");
}

struct BadScript
{
    const char* name;
    const char* script;
    const char* error;
};

class BadReplay : public Replay, public ::testing::WithParamInterface<BadScript>
{};

TEST_P(BadReplay, IsExitTwoBeforeAnythingRuns)
{
    const CliResult result = runScript(GetParam().script);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr(GetParam().error));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, BadReplay,
    ::testing::Values(BadScript{"NotJson", "[", "is not JSON: "},
                      BadScript{"NoArray", "{}", "must be an array of steps"},
                      BadScript{"UnknownOperation", R"([{"op": "zUp"}, {"op": "fly"}])",
                                "step 1: there is no operation 'fly'"},
                      BadScript{"UnknownArgument", R"([{"op": "zUp", "speed": 1}])",
                                "step 0: 'zUp' has no argument 'speed'"},
                      BadScript{"MissingArgument", R"([{"op": "orbitCamera", "dx": 1}])",
                                "step 0: 'orbitCamera': argument 'dy' is missing"},
                      BadScript{"WrongType", R"([{"op": "setZUp", "zUp": 1}])",
                                "step 0: 'setZUp': argument 'zUp' must be true or false"},
                      BadScript{"NoCameraField", R"([{"op": "adjustGfCamera", "camera": {"lens": 1}}])",
                                "step 0: 'adjustGfCamera': a camera has no field 'lens'"}),
    [](const auto& example) { return example.param.name; });

} // namespace
} // namespace vesk::cli::tests
