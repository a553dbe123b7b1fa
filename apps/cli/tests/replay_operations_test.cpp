#include "replay/operations.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vesk::cli::tests {
namespace {

std::vector<std::string> spelled()
{
    std::vector<std::string> lines;
    for (const auto& [name, operation] : replay::operations()) {
        std::string line = name + " {";
        for (const std::string& argument : operation.arguments)
            line += (line.back() == '{' ? "" : ", ") + argument;
        lines.push_back(line + "}");
    }
    return lines;
}

TEST(ReplayOperations, AreThoseOfTheModelUnderTheirNamesWithTheNamesOfTheirParameters)
{
    const std::vector<std::string> expected{
        "activeCameraPath {}",
        "adjustGfCamera {camera}",
        "beginCameraInteraction {}",
        "captureHydraFrame {path, aov, transparentBackground, clearColor, samples}",
        "captureHydraFrames {requests, transparentBackground}",
        "checkCameraUpAxis {}",
        "colorPicking {x, y, aovName}",
        "construct {renderSize, viewportSize, devicePixelRatio, renderer}",
        "copyCameraFromPath {cameraPath, updateDistanceToCenter, label}",
        "currentTime {}",
        "defaultCameraFitPolicy {}",
        "defaultVerticalFieldOfView {}",
        "devicePixelRatio {}",
        "distanceToCenter {}",
        "edit {path, attribute, type, value, time}",
        "endCameraInteraction {}",
        "frameScene {projection, direction, paths}",
        "getEditTarget {}",
        "getGfCamera {}",
        "getPrimPathsFromPointPicking {x, y, pickRadius, preferTertiaryPath, preferSecondaryPath, "
        "expandToSelectors, selectors}",
        "getSceneBounds {}",
        "getViewMatrix {}",
        "getViewportCamera {}",
        "gizmoScaleMultiplier {}",
        "lighting {}",
        "moveCamera {du, dv, dw, undoLabel}",
        "notifyCameraChanged {}",
        "orbitCamera {dx, dy, undoLabel}",
        "orbitCameraUsingDeltaAngles {yaw, pitch, undoLabel}",
        "panCamera {dx, dy, undoLabel}",
        "recomputeCachedSceneBounds {}",
        "redo {}",
        "renderHydraFrame {parameters}",
        "renderSize {}",
        "resetLighting {}",
        "rotateCamera {dx, dy, undoLabel}",
        "runTasks {}",
        "setActiveCameraPath {cameraPath}",
        "setCameraFitPolicy {policy}",
        "setClearColor {color}",
        "setColorCorrectionMode {mode}",
        "setCurrentTime {time}",
        "setDefaultCameraFitPolicy {policy}",
        "setDefaultVerticalFieldOfView {degrees}",
        "setDistanceToCenter {distanceToCenter}",
        "setDocument {scene}",
        "setDrawMode {mode}",
        "setEditTarget {layer}",
        "setGfCamera {camera, undoLabel}",
        "setGizmoScaleMultiplier {value}",
        "setGridAboveColor {color}",
        "setGridBelowColor {color}",
        "setGridEnabled {enabled}",
        "setGridThickness {thickness}",
        "setHighlightColor {color}",
        "setHighlightedPaths {paths}",
        "setLighting {lighting}",
        "setOutlineThickness {thickness}",
        "setPostProcessingDebugMode {mode}",
        "setPresentationModeEnabled {enabled}",
        "setRackFocus {camera, focalLength}",
        "setRenderProxyGeometry {enabled}",
        "setRenderSelectionVisualization {enabled}",
        "setRenderSize {size, devicePixelRatio}",
        "setSelectionColor {color}",
        "setSelectionPaths {paths}",
        "setTiledRenderWindow {window}",
        "setViewportCamera {camera, withStage}",
        "setViewportSize {size}",
        "setZUp {zUp}",
        "singlePointPicking {x, y, pickRadius}",
        "switchRenderer {rendererId, settings}",
        "undo {}",
        "viewportId {}",
        "viewportSize {}",
        "viewportToRenderCoordinates {x, y}",
        "zUp {}",
        "zoomCamera {dx, dy, undoLabel}",
    };
    EXPECT_EQ(spelled(), expected);
}

} // namespace
} // namespace vesk::cli::tests
