#include "replay_fixture.h"

#include <gmock/gmock.h>

#include <regex>

namespace vesk::cli::tests {
namespace {

using ::testing::HasSubstr;

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

TEST_F(Replay, NamesTheTasksThatRanAtTheEnd)
{
    const auto lines = replay(R"([{"op": "getSceneBounds"}, {"op": "undo"}])");
    EXPECT_EQ(lines[2]["ran"].dump(), R"([{"type":0,"label":"computeBBox"},{"type":0,"label":"undo"}])");
    EXPECT_EQ(lines[2]["tasks"].dump(), "[]");
}

TEST_F(Replay, ShowsTasksThatOtherTasksQueueAsQueuedAndAsRun)
{
    const auto lines =
        replay(R"([{"op": "setActiveCameraPath", "cameraPath": "/World/Front"}, {"op": "runTasks"},
        {"op": "edit", "path": "/World/Front", "attribute": "focalLength", "type": "float", "value": 35},
        {"op": "runTasks"}])");
    // The first copy writes the focus distance that it had to correct, the second finds nothing to write.
    EXPECT_EQ(lines[3]["tasks"].dump(),
              R"([{"type":1,"label":"camera copy from path"},{"type":1,"label":"camera copy from path"}])");
    EXPECT_EQ(lines[3]["ran"].dump(),
              R"([{"type":1,"label":"edit"},{"type":1,"label":"camera copy from path"},)"
              R"({"type":1,"label":"camera copy from path"}])");
    EXPECT_EQ(lines[3]["camera"]["focalLength"], 35.0);
}

TEST_F(Replay, FinishesTheContinuationsOfATaskBeforeTheNextTask)
{
    // The bounds are kept and the camera refitted before the frame is computed.
    const auto lines = replay(R"([{"op": "recomputeCachedSceneBounds"},
        {"op": "copyCameraFromPath", "cameraPath": "/World/Front", "updateDistanceToCenter": true, "label": ""},
        {"op": "runTasks"}])");
    ASSERT_EQ(lines[2]["calls"].size(), 2u);
    // The refitted camera is still the one at the origin, the copied one stands where the scene says.
    EXPECT_EQ(lines[2]["calls"][0]["args"][0]["transform"][3].dump(), "[0.0,0.0,0.0,1.0]");
    EXPECT_EQ(lines[2]["calls"][1]["args"][0]["transform"][3].dump(), "[0.0,0.0,10.0,1.0]");
}

TEST_F(Replay, ShowsAFailedConstructionAndGoesOn)
{
    const auto lines = replay(R"([{"op": "construct", "renderSize": [4, 2], "viewportSize": [4, 2],
                                   "devicePixelRatio": 1, "renderer": "pencil"}, {"op": "renderSize"}])");
    EXPECT_EQ(lines[0]["result"], nullptr);
    EXPECT_EQ(lines[0]["error"]["category"], "generic");
    EXPECT_EQ(lines[0]["error"]["code"], 22);
    EXPECT_THAT(lines[0]["error"]["message"].get<std::string>(), HasSubstr("unknown renderer 'pencil'"));
    EXPECT_EQ(lines[0]["calls"].dump(), "[]");
    EXPECT_EQ(lines[1]["result"].dump(), "[1280,720]");
}

TEST_F(Replay, KeepsTheFormerModelWhenAConstructionFails)
{
    const auto lines = replay(R"([{"op": "construct", "renderSize": [4, 2]}, {"op": "viewportId"},
                                  {"op": "construct", "renderer": "observed"}, {"op": "renderSize"},
                                  {"op": "construct"}, {"op": "viewportId"}])");
    EXPECT_EQ(lines[3]["result"].dump(), "[4,2]");
    EXPECT_EQ(lines[5]["result"].get<int>(), lines[1]["result"].get<int>() + 2);
}

TEST_F(Replay, BreaksThePromisesOfAModelThatIsMadeAnew)
{
    const auto lines = replay(R"([{"op": "getSceneBounds"}, {"op": "construct"}, {"op": "runTasks"}])");
    EXPECT_EQ(lines[2]["completed"].dump(),
              R"([{"step":0,"error":{"category":"FutureErrorCode","code":1,"message":"broken promise"}}])");
}

TEST_F(Replay, HandsEverySettingToTheRendererUnderItsOwnName)
{
    const auto lines = replay(R"([
        {"op": "setDrawMode", "mode": "points"},
        {"op": "setColorCorrectionMode", "mode": "sRGB"},
        {"op": "setPostProcessingDebugMode", "mode": "depth"},
        {"op": "setClearColor", "color": [0, 0.25, 0.5, 1]},
        {"op": "setGridAboveColor", "color": [1, 0, 0, 0]},
        {"op": "setGridBelowColor", "color": [0, 1, 0, 0]},
        {"op": "setHighlightColor", "color": [0, 0, 1, 0]},
        {"op": "setSelectionColor", "color": [0, 0, 0, "nan"]},
        {"op": "setPresentationModeEnabled", "enabled": true},
        {"op": "setGridEnabled", "enabled": false},
        {"op": "setRenderProxyGeometry", "enabled": true},
        {"op": "setRenderSelectionVisualization", "enabled": false},
        {"op": "setTiledRenderWindow", "window": [1, 2, 3, -4]},
        {"op": "setGridThickness", "thickness": 0.5},
        {"op": "setOutlineThickness", "thickness": "inf"},
        {"op": "setHighlightedPaths", "paths": ["/World", "/World/Box"]},
        {"op": "setSelectionPaths", "paths": []},
        {"op": "setCameraFitPolicy", "policy": 3},
        {"op": "setCurrentTime", "time": 2.5},
        {"op": "setRenderSize", "size": [101, 33], "devicePixelRatio": 1.5},
        {"op": "switchRenderer", "rendererId": "other", "settings": [{"name": "samples", "value": 4}]}])");
    const std::vector<std::string> expected{
        R"([{"op":"setDrawMode","args":["points"]}])", R"([{"op":"setColorCorrectionMode","args":["sRGB"]}])",
        R"([{"op":"setPostProcessingDebugMode","args":["depth"]}])",
        R"([{"op":"setClearColor","args":[[0.0,0.25,0.5,1.0]]}])",
        R"([{"op":"setGridAboveColor","args":[[1.0,0.0,0.0,0.0]]}])",
        R"([{"op":"setGridBelowColor","args":[[0.0,1.0,0.0,0.0]]}])",
        R"([{"op":"setHighlightColor","args":[[0.0,0.0,1.0,0.0]]}])",
        R"([{"op":"setSelectionColor","args":[[0.0,0.0,0.0,"nan"]]}])",
        R"([{"op":"setPresentationModeEnabled","args":[true]}])",
        R"([{"op":"setGridEnabled","args":[false]}])", R"([{"op":"setRenderProxyGeometry","args":[true]}])",
        R"([{"op":"setRenderSelectionVisualization","args":[false]}])",
        R"([{"op":"setTiledRenderWindow","args":[[1,2,3,-4]]}])",
        R"([{"op":"setGridThickness","args":[0.5]}])", R"([{"op":"setOutlineThickness","args":["inf"]}])",
        R"([{"op":"setHighlightedPaths","args":[["/World","/World/Box"]]}])",
        R"([{"op":"setSelectionPaths","args":[[]]}])", R"([{"op":"setCameraFitPolicy","args":[3]}])",
        R"([{"op":"setCurrentTime","args":[2.5]}])",
        // 101 * 1.5 = 151.5 and 33 * 1.5 = 49.5, cut.
        R"([{"op":"setRenderSize","args":[151,49]}])",
        R"([{"op":"switchRenderer","args":["other",[{"name":"samples","value":4}]]}])"};
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ(lines[i]["calls"].dump(), expected[i]);
}

TEST_F(Replay, HandsPicksFramesAndCapturesToTheRendererUnderTheirOwnNames)
{
    const auto lines = replay(R"([
        {"op": "construct", "renderSize": [1600, 1200], "viewportSize": [800, 600], "devicePixelRatio": 2},
        {"op": "singlePointPicking", "x": 100, "y": 50, "pickRadius": 3},
        {"op": "colorPicking", "x": 100, "y": 50, "aovName": "depth"},
        {"op": "getPrimPathsFromPointPicking", "x": 0, "y": "-inf", "pickRadius": 1, "preferTertiaryPath": true,
         "preferSecondaryPath": true, "expandToSelectors": true, "selectors": ["/World"]},
        {"op": "captureHydraFrame", "path": "a.png", "aov": "color", "transparentBackground": true,
         "clearColor": [0, 0, 0, 1], "samples": 4},
        {"op": "captureHydraFrames", "requests": [{"path": "b.exr", "aov": "depth"}],
         "transparentBackground": false},
        {"op": "renderHydraFrame", "parameters": {"samples": 2, "untilConverged": false, "aovs": ["color"]}},
        {"op": "renderHydraFrame"}])");
    const std::vector<std::string> expected{
        R"([{"op":"setCameraFitPolicy","args":[2]}])",
        R"([{"op":"singlePointPicking","args":[400.0,200.0,6.0]}])",
        R"([{"op":"colorPicking","args":[[400.0,200.0],"depth"]}])",
        R"([{"op":"singlePointPicking","args":[0.0,"-inf",2.0]}])",
        R"([{"op":"captureFrame","args":["a.png","color",true,[0.0,0.0,0.0,1.0],4]}])",
        R"([{"op":"captureFrames","args":[[{"path":"b.exr","aov":"depth","clearColor":null,"samples":0}],false]}])",
        R"([{"op":"renderFrame","args":[{"samples":2,"untilConverged":false,"aovs":["color"]}]}])",
        R"([{"op":"renderFrame","args":[{"samples":0,"untilConverged":true,"aovs":[]}]}])"};
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ(lines[i]["calls"].dump(), expected[i]);
    EXPECT_EQ(lines[3]["result"], "pending");
    EXPECT_EQ(lines[3]["completed"][0]["value"]["primPaths"].dump(), "[]");
    EXPECT_EQ(lines[3]["completed"][0]["value"]["pickingResult"]["hit"], false);
}

TEST_F(Replay, HandsTheLightingToTheRenderer)
{
    const auto lines = replay(R"([{"op": "setLighting", "lighting": {"sceneLightingEnabled": false,
                                   "lightingExposure": 1.5, "lightingRotationDegrees": 90,
                                   "domeLightTexturePath": "a.exr", "defaultLightingEnabled": false}},
                                  {"op": "lighting"}, {"op": "resetLighting"}])");
    const Json& args = lines[0]["calls"][0]["args"][0];
    EXPECT_EQ(lines[0]["calls"][0]["op"], "setLighting");
    EXPECT_EQ(args["lights"].dump(), "[]");
    EXPECT_EQ(args["sceneAmbient"].dump(), "[0.0,0.0,0.0,1.0]");
    EXPECT_EQ(args["sceneLightsEnabled"], false);
    EXPECT_EQ(lines[1]["result"].dump(),
              R"({"domeLightTexturePath":"a.exr","lightingRotationDegrees":90.0,"lightingExposure":1.5,)"
              R"("defaultLightingEnabled":false,"sceneLightingEnabled":false})");
    EXPECT_EQ(lines[2]["calls"], lines[0]["calls"]);
}

TEST_F(Replay, HandsAFollowedCameraToTheRendererAsItsPath)
{
    const auto lines =
        replay(R"([{"op": "setActiveCameraPath", "cameraPath": "/World/Front"}, {"op": "runTasks"}])");
    EXPECT_EQ(lines[1]["calls"].dump(), R"([{"op":"setCamera","args":["/World/Front"]}])");
}

TEST_F(Replay, ShowsAnotherDocument)
{
    const std::string other = m_folder.write("other.usda", kEmptyScene).string();
    const auto lines = replay(R"([{"op": "setDocument", "scene": ")" + other + R"("}, {"op": "runTasks"},
                                  {"op": "setDocument", "scene": "nowhere.usda"}])");
    EXPECT_EQ(lines[0]["calls"][0]["op"], "setDocument");
    EXPECT_EQ(lines[0]["tasks"].dump(), R"([{"type":0,"label":"computeBBox"}])");
    EXPECT_EQ(lines[1]["ran"].dump(), R"([{"type":0,"label":"computeBBox"}])");
    EXPECT_THAT(lines[2]["error"]["message"].get<std::string>(), HasSubstr("nowhere.usda"));
}

TEST_F(Replay, NamesEditTargetsByTextsThatHoldInEveryRun)
{
    const auto lines = replay(R"([{"op": "getEditTarget"}, {"op": "setEditTarget", "layer": "session"},
                                  {"op": "getEditTarget"}, {"op": "setEditTarget", "layer": "root"},
                                  {"op": "getEditTarget"}, {"op": "setEditTarget", "layer": ""},
                                  {"op": "getEditTarget"}, {"op": "setEditTarget", "layer": "none.usda"}])");
    EXPECT_EQ(lines[0]["result"], nullptr);
    EXPECT_EQ(lines[2]["result"], "session");
    EXPECT_EQ(lines[4]["result"], m_scene);
    EXPECT_EQ(lines[6]["result"], nullptr);
    EXPECT_EQ(lines[7]["error"].dump(),
              R"({"category":"","code":0,"message":"no layer 'none.usda' is open"})");
}

TEST_F(Replay, FillsWhatACameraLeavesOutWithTheDefaults)
{
    const auto lines = replay(R"([{"op": "setGfCamera", "camera": {"projection": "orthographic",
                                   "clippingPlanes": [[1, 2, 3, "inf"]]}, "undoLabel": ""}])");
    const Json& camera = lines[0]["camera"];
    EXPECT_EQ(camera["projection"], "orthographic");
    EXPECT_EQ(camera["clippingPlanes"].dump(), R"([[1.0,2.0,3.0,"inf"]])");
    // What the argument leaves out: GfCamera's own values, floats widened.
    EXPECT_EQ(camera["horizontalAperture"].dump(), "20.954999923706055");
    EXPECT_EQ(camera["verticalAperture"].dump(), "15.290800094604492");
    EXPECT_EQ(camera["focalLength"], 50.0);
    EXPECT_EQ(camera["clippingRange"].dump(), "[1.0,1000000.0]");
}

TEST_F(Replay, PrintsTheSameBytesEachTime)
{
    std::string script = "[";
    for (int i = 0; i < 200; ++i) {
        script += R"({"op": "orbitCamera", "dx": )" + std::to_string(i % 17 - 8) +
                  R"(, "dy": 1, "undoLabel": ""},)"
                  R"({"op": "setCurrentTime", "time": )" +
                  std::to_string(i) +
                  R"(},)"
                  R"({"op": "frameScene", "projection": )" +
                  std::to_string(i % 3) + R"(, "direction": )" + std::to_string(i % 8) +
                  R"(, "paths": []},{"op": "runTasks"},)";
    }
    script += R"({"op": "zUp"}])";
    const std::string first = runScript(script).out;
    std::string second = runScript(script).out;
    // Ids count up within a process.
    const std::regex ids(R"re("(documentId":"[^"]*"|viewportId":[0-9]+))re");
    EXPECT_EQ(std::regex_replace(first, ids, ""), std::regex_replace(second, ids, ""));
    EXPECT_GT(first.size(), 200000u);
}

} // namespace
} // namespace vesk::cli::tests
