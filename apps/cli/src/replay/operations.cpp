#include "operations.h"

#include <apps/support/errors.h>

#include <pxr/usd/sdf/layer.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::cli::replay {
namespace {

using apps::Json;
using apps::jsonNumber;
using framework::usd_viewport::ViewDirection;
using framework::usd_viewport::ViewportModel;
using usd::utils::ProjectionType;
using Table = std::map<std::string, Operation>;
using A = const Arguments&;

/// An operation without arguments.
Operation plain(std::function<Json(ViewportModel&)> call)
{
    return {{}, [call](A) -> Action { return [call](Session& s) { return call(s.model()); }; }};
}

/// A setter of one boolean, called `argument` in scripts.
Operation flagSetter(void (ViewportModel::*set)(bool), const char* argument = "enabled")
{
    return {{argument}, [set, argument](A a) -> Action {
                if (!a.has(argument))
                    throw apps::UsageError(std::string("argument '") + argument + "' is missing");
                const bool value = a.flag(argument);
                return [set, value](Session& s) { return (s.model().*set)(value), Json(); };
            }};
}

Operation floatSetter(void (ViewportModel::*set)(float), const char* argument)
{
    return {{argument}, [set, argument](A a) -> Action {
                const float value = a.floatNumber(argument);
                return [set, value](Session& s) { return (s.model().*set)(value), Json(); };
            }};
}

Operation tokenSetter(void (ViewportModel::*set)(const TfToken&))
{
    return {{"mode"}, [set](A a) -> Action {
                const TfToken mode(a.text("mode"));
                return [set, mode](Session& s) { return (s.model().*set)(mode), Json(); };
            }};
}

Operation colorSetter(void (ViewportModel::*set)(const GfVec4f&))
{
    return {{"color"}, [set](A a) -> Action {
                const GfVec4f color = a.color("color");
                return [set, color](Session& s) { return (s.model().*set)(color), Json(); };
            }};
}

Operation pathsSetter(void (ViewportModel::*set)(const std::vector<SdfPath>&))
{
    return {{"paths"}, [set](A a) -> Action {
                const std::vector<SdfPath> paths = a.paths("paths");
                return [set, paths](Session& s) { return (s.model().*set)(paths), Json(); };
            }};
}

/// A gesture of two numbers and an undo label.
Operation gesture(void (ViewportModel::*move)(float, float, const std::string&), const char* first = "dx",
                  const char* second = "dy")
{
    return {{first, second, "undoLabel"}, [=](A a) -> Action {
                const float x = a.floatNumber(first);
                const float y = a.floatNumber(second);
                const std::string label = a.optionalText("undoLabel");
                return [=](Session& s) { return (s.model().*move)(x, y, label), Json(); };
            }};
}

/// A call that returns a future, made from a step's arguments.
template <class Read>
Operation future(std::vector<std::string> arguments, Read read)
{
    return {std::move(arguments), [read](A a) -> Action {
                auto call = read(a);
                return [call](Session& s) { return s.pending(call(s)); };
            }};
}

Json sizeJson(const int (&size)[2]) { return Json::array({size[0], size[1]}); }

/// The edit target of a layer: "root", "session", an identifier, or a path as the root layer would name it.
UsdEditTarget editTarget(Session& session, const std::string& layer)
{
    const UsdStagePtr stage = session.stage();
    if (layer.empty()) return UsdEditTarget();
    if (layer == "root") return UsdEditTarget(stage->GetRootLayer());
    if (layer == "session") return UsdEditTarget(stage->GetSessionLayer());
    SdfLayerHandle found = SdfLayer::Find(layer);
    if (!found) found = SdfLayer::FindRelativeToLayer(stage->GetRootLayer(), layer);
    if (!found) throw apps::JobError("no layer '" + layer + "' is open");
    return UsdEditTarget(found);
}

/// The layer by a text that names it again in every run: anonymous layers have no other.
Json layerJson(Session& session)
{
    const SdfLayerHandle& layer = session.model().getEditTarget().GetLayer();
    if (!layer) return Json();
    if (layer == session.stage()->GetSessionLayer()) return "session";
    return layer->IsAnonymous() ? layer->GetDisplayName() : layer->GetIdentifier();
}

void addLife(Table& table)
{
    table["construct"] = {{"renderSize", "viewportSize", "devicePixelRatio", "renderer"}, [](A a) -> Action {
                              Construction how;
                              if (a.has("renderSize")) how.renderSize = a.size("renderSize");
                              if (a.has("viewportSize")) how.viewportSize = a.size("viewportSize");
                              if (a.has("devicePixelRatio"))
                                  how.devicePixelRatio = a.floatNumber("devicePixelRatio");
                              if (a.has("renderer")) how.renderer = a.text("renderer");
                              return [how](Session& s) { return s.construct(how), Json(); };
                          }};
    table["setDocument"] = {{"scene"}, [](A a) -> Action {
                                const std::string scene = a.text("scene");
                                return [scene](Session& s) { return s.setDocument(scene), Json(); };
                            }};
    table["switchRenderer"] = {{"rendererId", "settings"}, [](A a) -> Action {
                                   const std::string id = a.text("rendererId");
                                   const auto settings = a.settings("settings");
                                   return [id, settings](Session& s) {
                                       return s.model().switchRenderer(id, settings), Json();
                                   };
                               }};
    table["viewportId"] = plain([](ViewportModel& m) { return Json(m.viewportId()); });
    table["runTasks"] = {{}, [](A) -> Action { return [](Session& s) { return Json(s.runTasks()); }; }};
    table["undo"] = future({}, [](A) { return [](Session& s) { return s.document().undo(); }; });
    table["redo"] = future({}, [](A) { return [](Session& s) { return s.document().redo(); }; });
    table["edit"] = {{"path", "attribute", "type", "value", "time"}, readEdit};
}

void addEventsAndTime(Table& table)
{
    table["notifyCameraChanged"] = plain([](ViewportModel& m) { return m.notifyCameraChanged(), Json(); });
    table["currentTime"] = plain([](ViewportModel& m) { return jsonNumber(m.currentTime()); });
    table["setCurrentTime"] = {{"time"}, [](A a) -> Action {
                                   const double time = a.number("time");
                                   return
                                       [time](Session& s) { return s.model().setCurrentTime(time), Json(); };
                               }};
    table["getEditTarget"] = {{}, [](A) -> Action { return layerJson; }};
    table["setEditTarget"] = {
        {"layer"}, [](A a) -> Action {
            const std::string layer =
                a.has("layer") && a.value("layer").is_null() ? std::string() : a.text("layer");
            return [layer](Session& s) { return s.model().setEditTarget(editTarget(s, layer)), Json(); };
        }};
}

void addSwitches(Table& table)
{
    table["setPresentationModeEnabled"] = flagSetter(&ViewportModel::setPresentationModeEnabled);
    table["setGridEnabled"] = flagSetter(&ViewportModel::setGridEnabled);
    table["setRenderProxyGeometry"] = flagSetter(&ViewportModel::setRenderProxyGeometry);
    table["setRenderSelectionVisualization"] = flagSetter(&ViewportModel::setRenderSelectionVisualization);
    table["setDrawMode"] = tokenSetter(&ViewportModel::setDrawMode);
    table["setColorCorrectionMode"] = tokenSetter(&ViewportModel::setColorCorrectionMode);
    table["setPostProcessingDebugMode"] = tokenSetter(&ViewportModel::setPostProcessingDebugMode);
    table["setClearColor"] = colorSetter(&ViewportModel::setClearColor);
    table["setGridAboveColor"] = colorSetter(&ViewportModel::setGridAboveColor);
    table["setGridBelowColor"] = colorSetter(&ViewportModel::setGridBelowColor);
    table["setHighlightColor"] = colorSetter(&ViewportModel::setHighlightColor);
    table["setSelectionColor"] = colorSetter(&ViewportModel::setSelectionColor);
    table["setHighlightedPaths"] = pathsSetter(&ViewportModel::setHighlightedPaths);
    table["setSelectionPaths"] = pathsSetter(&ViewportModel::setSelectionPaths);
    table["setGridThickness"] = floatSetter(&ViewportModel::setGridThickness, "thickness");
    table["setOutlineThickness"] = floatSetter(&ViewportModel::setOutlineThickness, "thickness");
    table["setTiledRenderWindow"] = {{"window"}, [](A a) -> Action {
                                         const GfVec4i window = a.window("window");
                                         return [window](Session& s) {
                                             return s.model().setTiledRenderWindow(window), Json();
                                         };
                                     }};
}

void addSizes(Table& table)
{
    table["setRenderSize"] = {{"size", "devicePixelRatio"}, [](A a) -> Action {
                                  const std::array<int, 2> size = a.size("size");
                                  const float ratio = a.floatNumber("devicePixelRatio");
                                  return [size, ratio](Session& s) {
                                      const int sides[2] = {size[0], size[1]};
                                      return s.model().setRenderSize(sides, ratio), Json();
                                  };
                              }};
    table["setViewportSize"] = {{"size"}, [](A a) -> Action {
                                    const std::array<int, 2> size = a.size("size");
                                    return [size](Session& s) {
                                        const int sides[2] = {size[0], size[1]};
                                        return s.model().setViewportSize(sides), Json();
                                    };
                                }};
    table["renderSize"] = plain([](ViewportModel& m) { return sizeJson(m.renderSize()); });
    table["viewportSize"] = plain([](ViewportModel& m) { return sizeJson(m.viewportSize()); });
    table["devicePixelRatio"] = plain([](ViewportModel& m) { return jsonNumber(m.devicePixelRatio()); });
    table["viewportToRenderCoordinates"] = {{"x", "y"}, [](A a) -> Action {
                                                const float x = a.floatNumber("x");
                                                const float y = a.floatNumber("y");
                                                return [x, y](Session& s) {
                                                    const auto p =
                                                        s.model().viewportToRenderCoordinates(x, y);
                                                    return Json::array({jsonNumber(p[0]), jsonNumber(p[1])});
                                                };
                                            }};
}

void addFrames(Table& table)
{
    table["renderHydraFrame"] = future({"parameters"}, [](A a) {
        const auto parameters = a.renderParameters("parameters");
        return [parameters](Session& s) { return s.model().renderHydraFrame(parameters); };
    });
    table["captureHydraFrame"] =
        future({"path", "aov", "transparentBackground", "clearColor", "samples"}, [](A a) {
            const std::string path = a.text("path");
            const TfToken aov(a.text("aov"));
            const bool transparent = a.flag("transparentBackground");
            const auto clearColor = a.optionalColor("clearColor");
            const int samples = a.has("samples") ? a.integer("samples") : 0;
            return [=](Session& s) {
                return s.model().captureHydraFrame(path, aov, transparent, clearColor, samples);
            };
        });
    table["captureHydraFrames"] = future({"requests", "transparentBackground"}, [](A a) {
        const auto requests = a.captureRequests("requests");
        const bool transparent = a.flag("transparentBackground");
        return [=](Session& s) { return s.model().captureHydraFrames(requests, transparent); };
    });
}

void addCameraDefaults(Table& table)
{
    table["defaultVerticalFieldOfView"] =
        plain([](ViewportModel&) { return jsonNumber(ViewportModel::defaultVerticalFieldOfView()); });
    table["setDefaultVerticalFieldOfView"] = {
        {"degrees"}, [](A a) -> Action {
            const float degrees = a.floatNumber("degrees");
            return
                [degrees](Session&) { return ViewportModel::setDefaultVerticalFieldOfView(degrees), Json(); };
        }};
    table["defaultCameraFitPolicy"] =
        plain([](ViewportModel&) { return Json(static_cast<int>(ViewportModel::defaultCameraFitPolicy())); });
    table["setDefaultCameraFitPolicy"] = {
        {"policy"}, [](A a) -> Action {
            const auto policy = static_cast<CameraUtilConformWindowPolicy>(a.integer("policy"));
            return [policy](Session&) { return ViewportModel::setDefaultCameraFitPolicy(policy), Json(); };
        }};
    table["setCameraFitPolicy"] = {
        {"policy"}, [](A a) -> Action {
            const auto policy = static_cast<CameraUtilConformWindowPolicy>(a.integer("policy"));
            return [policy](Session& s) { return s.model().setCameraFitPolicy(policy), Json(); };
        }};
}

void addCamera(Table& table)
{
    table["getGfCamera"] = plain([](ViewportModel& m) { return apps::jsonCamera(m.getGfCamera()); });
    table["getViewportCamera"] =
        plain([](ViewportModel& m) { return apps::jsonCamera(m.getViewportCamera()); });
    table["getViewMatrix"] = plain([](ViewportModel& m) { return toJson(m.getViewMatrix()); });
    table["setGfCamera"] = {{"camera", "undoLabel"}, [](A a) -> Action {
                                const GfCamera camera = a.camera("camera");
                                const std::string label = a.optionalText("undoLabel");
                                return [camera, label](Session& s) {
                                    return s.model().setGfCamera(camera, label), Json();
                                };
                            }};
    table["setViewportCamera"] = {{"camera", "withStage"}, [](A a) -> Action {
                                      const GfCamera camera = a.camera("camera");
                                      const bool withStage = a.flag("withStage");
                                      return [camera, withStage](Session& s) {
                                          const UsdStagePtr stage = withStage ? s.stage() : UsdStagePtr();
                                          return s.model().setViewportCamera(stage, camera), Json();
                                      };
                                  }};
    table["adjustGfCamera"] = {{"camera"}, [](A a) -> Action {
                                   const GfCamera camera = a.camera("camera");
                                   return [camera](Session& s) {
                                       return apps::jsonCamera(s.model().adjustGfCamera(camera));
                                   };
                               }};
    table["setRackFocus"] = {{"camera", "focalLength"}, [](A a) -> Action {
                                 const GfCamera given = a.camera("camera");
                                 const float focalLength = a.floatNumber("focalLength");
                                 return [given, focalLength](Session&) {
                                     GfCamera camera = given;
                                     framework::usd_viewport::setRackFocus(camera, focalLength);
                                     return apps::jsonCamera(camera);
                                 };
                             }};
    table["zUp"] = plain([](ViewportModel& m) { return Json(m.zUp()); });
    table["setZUp"] = flagSetter(&ViewportModel::setZUp, "zUp");
}

void addNavigation(Table& table)
{
    table["beginCameraInteraction"] =
        plain([](ViewportModel& m) { return m.beginCameraInteraction(), Json(); });
    table["endCameraInteraction"] = plain([](ViewportModel& m) { return m.endCameraInteraction(), Json(); });
    table["orbitCamera"] = gesture(&ViewportModel::orbitCamera);
    table["rotateCamera"] = gesture(&ViewportModel::rotateCamera);
    table["panCamera"] = gesture(&ViewportModel::panCamera);
    table["zoomCamera"] = gesture(&ViewportModel::zoomCamera);
    table["orbitCameraUsingDeltaAngles"] =
        gesture(&ViewportModel::orbitCameraUsingDeltaAngles, "yaw", "pitch");
    table["moveCamera"] = {{"du", "dv", "dw", "undoLabel"}, [](A a) -> Action {
                               const float du = a.floatNumber("du");
                               const float dv = a.floatNumber("dv");
                               const float dw = a.floatNumber("dw");
                               const std::string label = a.optionalText("undoLabel");
                               return [=](Session& s) {
                                   return s.model().moveCamera(du, dv, dw, label), Json();
                               };
                           }};
    table["distanceToCenter"] = plain([](ViewportModel& m) { return jsonNumber(m.distanceToCenter()); });
    table["setDistanceToCenter"] = floatSetter(&ViewportModel::setDistanceToCenter, "distanceToCenter");
    table["gizmoScaleMultiplier"] =
        plain([](ViewportModel& m) { return jsonNumber(m.gizmoScaleMultiplier()); });
    table["setGizmoScaleMultiplier"] = floatSetter(&ViewportModel::setGizmoScaleMultiplier, "value");
}

void addStageCameras(Table& table)
{
    table["frameScene"] = future({"projection", "direction", "paths"}, [](A a) {
        const auto projection = static_cast<ProjectionType>(a.integer("projection"));
        const auto direction = static_cast<ViewDirection>(a.integer("direction"));
        const std::vector<SdfPath> paths = a.paths("paths");
        return [=](Session& s) { return s.model().frameScene(projection, direction, paths); };
    });
    table["copyCameraFromPath"] = future({"cameraPath", "updateDistanceToCenter", "label"}, [](A a) {
        const std::string path = a.text("cameraPath");
        const bool update = a.flag("updateDistanceToCenter");
        const std::string label = a.optionalText("label");
        return [=](Session& s) { return s.model().copyCameraFromPath(path, update, label); };
    });
    table["setActiveCameraPath"] = future({"cameraPath"}, [](A a) {
        const std::string path = a.text("cameraPath");
        return [path](Session& s) { return s.model().setActiveCameraPath(path); };
    });
    table["activeCameraPath"] = plain([](ViewportModel& m) { return Json(m.activeCameraPath()); });
    table["checkCameraUpAxis"] =
        future({}, [](A) { return [](Session& s) { return s.model().checkCameraUpAxis(); }; });
    table["getSceneBounds"] =
        future({}, [](A) { return [](Session& s) { return s.model().getSceneBounds(); }; });
    table["recomputeCachedSceneBounds"] =
        plain([](ViewportModel& m) { return m.recomputeCachedSceneBounds(), Json(); });
}

void addPicking(Table& table)
{
    table["singlePointPicking"] = future({"x", "y", "pickRadius"}, [](A a) {
        const float x = a.floatNumber("x");
        const float y = a.floatNumber("y");
        const float radius = a.floatNumber("pickRadius");
        return [=](Session& s) { return s.model().singlePointPicking(x, y, radius); };
    });
    table["getPrimPathsFromPointPicking"] =
        future({"x", "y", "pickRadius", "preferTertiaryPath", "preferSecondaryPath", "expandToSelectors",
                "selectors"},
               [](A a) {
                   const float x = a.floatNumber("x");
                   const float y = a.floatNumber("y");
                   const float radius = a.floatNumber("pickRadius");
                   const bool tertiary = a.flag("preferTertiaryPath");
                   const bool secondary = a.flag("preferSecondaryPath");
                   const bool expand = a.flag("expandToSelectors");
                   const auto selectors = a.selectors("selectors");
                   return [=](Session& s) {
                       return s.model().getPrimPathsFromPointPicking(x, y, radius, tertiary, secondary,
                                                                     expand, selectors);
                   };
               });
    table["colorPicking"] = future({"x", "y", "aovName"}, [](A a) {
        const float x = a.floatNumber("x");
        const float y = a.floatNumber("y");
        const TfToken aov(a.text("aovName"));
        return [=](Session& s) { return s.model().colorPicking(x, y, aov); };
    });
}

void addLighting(Table& table)
{
    table["lighting"] = plain([](ViewportModel& m) { return toJson(m.lighting()); });
    table["setLighting"] = {{"lighting"}, [](A a) -> Action {
                                const auto lighting = a.lighting("lighting");
                                return [lighting](Session& s) {
                                    return s.model().setLighting(lighting), Json();
                                };
                            }};
    table["resetLighting"] = plain([](ViewportModel& m) { return m.resetLighting(), Json(); });
}

Table makeTable()
{
    Table table;
    for (const auto add : {addLife, addEventsAndTime, addSwitches, addSizes, addFrames, addCameraDefaults,
                           addCamera, addNavigation, addStageCameras, addPicking, addLighting}) {
        add(table);
    }
    return table;
}

} // namespace

const Table& operations()
{
    static const Table table = makeTable();
    return table;
}

} // namespace vesk::cli::replay
