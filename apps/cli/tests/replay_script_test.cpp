#include "replay_fixture.h"

#include "replay/session.h"

#include <apps/support/errors.h>
#include <apps/support/interruption.h>
#include <apps/support/renderers.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>

namespace vesk::cli::tests {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

TEST_F(Replay, WritesItsLinesToAFileAndNothingToStdout)
{
    const std::string script = m_folder.write("script.json", R"([{"op": "zUp"}])").string();
    const std::string out = (m_folder.path() / "lines.txt").string();
    const CliResult result = runCli({"replay", m_scene, script, "-o", out});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "");
    std::ifstream file(out);
    std::string line;
    std::getline(file, line);
    EXPECT_EQ(Json::parse(line)["op"], "zUp");
    std::size_t files = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(m_folder.path()))
        ++files;
    EXPECT_EQ(files, 3u);
}

TEST_F(Replay, LeavesTheFileAloneWhenTheSceneCannotBeOpened)
{
    const std::string script = m_folder.write("script.json", "[]").string();
    const std::string out = m_folder.write("lines.txt", "former").string();
    const CliResult result = runCli({"replay", "nowhere.usda", script, "-o", out});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1);
    std::ifstream file(out);
    std::string text;
    std::getline(file, text);
    EXPECT_EQ(text, "former");
}

TEST_F(Replay, TakesWholeNumbersThatAreWrittenWithAPoint)
{
    EXPECT_EQ(
        replay(R"([{"op": "setViewportSize", "size": [640.0, -2]}, {"op": "viewportSize"}])")[1]["result"]
            .dump(),
        "[640,-2]");
}

TEST_F(Replay, EndsBetweenTwoTasksWhenTheUserInterrupts)
{
    apps::registerRenderers();
    const apps::Interruption interruption;
    replay::Session session(m_scene);
    session.constructUnseen({});
    session.model().getSceneBounds();
    session.model().getSceneBounds();
    std::raise(SIGINT);
    EXPECT_THROW(session.runTasks(), apps::JobError);
    EXPECT_EQ(session.document().pendingTaskCount(), 1u);
}

TEST_F(Replay, RefusesAFileInAMissingFolder)
{
    const std::string script = m_folder.write("script.json", "[]").string();
    const CliResult result = runCli({"replay", m_scene, script, "-o", "/nowhere/at/all.txt"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              "vesk: cannot write '/nowhere/at/all.txt': the folder '/nowhere/at' does not exist; "
              "create it first\n");
}

TEST_F(Replay, RefusesAScriptThatIsNotThere)
{
    const CliResult result = runCli({"replay", m_scene, "nowhere.json"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "vesk: cannot read the script 'nowhere.json'\n");
}

TEST_F(Replay, RefusesARendererThatIsNotThere)
{
    const std::string script = m_folder.write("script.json", "[]").string();
    const CliResult result = runCli({"replay", m_scene, script, "--renderer", "pencil"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.err,
              "vesk: there is no renderer 'pencil'; vesk --version lists them; see vesk replay --help\n");
}

TEST_F(Replay, GivesAConstructionWithoutARendererTheOneOfTheCommandLine)
{
    const std::string script = m_folder
                                   .write("script.json", R"([{"op": "construct", "renderSize": [4, 4]},
        {"op": "captureHydraFrame", "path": "", "aov": "color"}])")
                                   .string();
    const CliResult recording = runCli({"replay", m_scene, script});
    const CliResult embree = runCli({"replay", m_scene, script, "--renderer", "embree"});
    // The recording renderer says yes to every capture, a real one needs a path.
    EXPECT_THAT(recording.out, HasSubstr(R"("completed":[{"step":1,"value":null}])"));
    EXPECT_THAT(embree.out, Not(HasSubstr(R"("completed":[{"step":1,"value":null}])")));
}

struct WrittenValue
{
    const char* type;
    const char* value;
};

class ReplayedEdit : public Replay, public ::testing::WithParamInterface<WrittenValue>
{};

TEST_P(ReplayedEdit, TakesValuesOfItsType)
{
    const auto lines =
        replay(std::string(R"([{"op": "edit", "path": "/World/Box", "attribute": "extra", "type": ")") +
               GetParam().type + R"(", "value": )" + GetParam().value + R"(, "time": 3}])");
    EXPECT_EQ(lines[1]["completed"].dump(), R"([{"step":0,"value":null}])");
    EXPECT_EQ(lines[1]["log"].dump(), "[]");
    EXPECT_EQ(lines[1]["events"].size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(
    Types, ReplayedEdit,
    ::testing::Values(WrittenValue{"bool", "true"}, WrittenValue{"uchar", "255"}, WrittenValue{"int", "-1"},
                      WrittenValue{"uint", "4294967295"}, WrittenValue{"int64", "-9223372036854775808"},
                      WrittenValue{"uint64", "18446744073709551615"}, WrittenValue{"half", "0.5"},
                      WrittenValue{"float", R"("nan")"}, WrittenValue{"double", "1e300"},
                      WrittenValue{"timecode", "2"}, WrittenValue{"string", R"("a")"},
                      WrittenValue{"token", R"("b")"}, WrittenValue{"asset", R"("c.exr")"},
                      WrittenValue{"int2", "[1, 2]"}, WrittenValue{"half3", "[1, 2, 3]"},
                      WrittenValue{"color4f", "[1, 2, 3, 4]"}, WrittenValue{"double3", "[1, 2, 3]"},
                      WrittenValue{"quath", "[1, 0, 0, 0]"}, WrittenValue{"quatd", "[1, 0, 0, 0]"},
                      WrittenValue{"matrix2d", "[[1, 0], [0, 1]]"},
                      WrittenValue{"matrix4d", "[[1, 0, 0, 0], [0, 1, 0, 0], [0, 0, 1, 0], [0, 0, 0, 1]]"},
                      WrittenValue{"point3f[]", "[[1, 2, 3], [4, 5, 6]]"},
                      WrittenValue{"token[]", R"(["a", "b"])"}, WrittenValue{"int[]", "[]"}));

TEST_F(Replay, ShowsAnEditOfAPrimThatIsNotThere)
{
    const auto lines =
        replay(R"([{"op": "edit", "path": "/Nowhere", "attribute": "a", "type": "int", "value": 1}])");
    EXPECT_EQ(lines[1]["completed"].dump(), R"([{"step":0,"error":{"category":"","code":0,)"
                                            R"("message":"there is no prim '/Nowhere'"}}])");
    EXPECT_EQ(lines[1]["events"].dump(), "[]");
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
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, BadReplay,
    ::testing::Values(
        BadScript{"NotJson", "[", "is not JSON: "}, BadScript{"NoArray", "{}", "must be an array of steps"},
        BadScript{"UnknownOperation", R"([{"op": "zUp"}, {"op": "fly"}])",
                  "step 1: there is no operation 'fly'"},
        BadScript{"UnknownArgument", R"([{"op": "zUp", "speed": 1}])",
                  "step 0: 'zUp' has no argument 'speed'"},
        BadScript{"MissingArgument", R"([{"op": "orbitCamera", "dx": 1}])",
                  "step 0: 'orbitCamera': argument 'dy' is missing"},
        BadScript{"WrongType", R"([{"op": "setZUp", "zUp": 1}])",
                  "step 0: 'setZUp': argument 'zUp' must be true or false"},
        BadScript{"NoCameraField", R"([{"op": "adjustGfCamera", "camera": {"lens": 1}}])",
                  "step 0: 'adjustGfCamera': a camera has no field 'lens'"},
        BadScript{"NoLightingField", R"([{"op": "setLighting", "lighting": {"sun": 1}}])",
                  "step 0: 'setLighting': the lighting has no field 'sun'"},
        BadScript{"NoParameter", R"([{"op": "renderHydraFrame", "parameters": {"speed": 1}}])",
                  "step 0: 'renderHydraFrame': a set of render parameters has no field 'speed'"},
        BadScript{"NoRequestField",
                  R"([{"op": "captureHydraFrames", "requests": [{"path": "a", "aov": "b", "c": 1}]}])",
                  "step 0: 'captureHydraFrames': a capture request has no field 'c'"},
        BadScript{"NoStep", R"([{"op": "zUp"}, 7])",
                  "step 1: must be an object with the operation's name under \"op\""},
        BadScript{"NotForScripts", R"([{"op": "end"}])", "step 0: there is no operation 'end'"},
        BadScript{"TooBig",
                  R"([{"op": "edit", "path": "/A", "attribute": "a", "type": "uchar", "value": 256}])",
                  "step 0: 'edit': argument 'value' must be a whole number from 0 to 255"},
        BadScript{"NoType", R"([{"op": "edit", "path": "/A", "attribute": "a", "type": "car", "value": 1}])",
                  "step 0: 'edit': argument 'type': there is no value type 'car'"}),
    [](const auto& example) { return example.param.name; });

} // namespace
} // namespace vesk::cli::tests
