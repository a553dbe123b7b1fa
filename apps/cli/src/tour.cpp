#include "program.h"

#include <apps/support/contact_sheet.h>
#include <apps/support/errors.h>
#include <apps/support/interruption.h>
#include <apps/support/progress.h>
#include <apps/support/viewport_session.h>

#include <pxr/usd/usdGeom/camera.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <functional>
#include <iomanip>
#include <memory>
#include <ostream>
#include <system_error>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::cli {
namespace {

using apps::ViewportSession;
using framework::usd_viewport::ViewDirection;
using framework::usd_viewport::ViewportModel;
using Clock = std::chrono::steady_clock;

struct TourArguments
{
    std::string scene;
    std::string folder;
    apps::ViewportArguments viewport;
};

/// One stop of the tour: what is done to the viewport before the picture is taken.
struct Stop
{
    std::string name; ///< the file's stem and the caption
    std::function<void(ViewportSession&)> go;
};

/// A drag as a host makes it: many small moves inside one interaction bracket.
void drag(ViewportModel& model, const std::function<void(ViewportModel&)>& move)
{
    constexpr int kMoves = 12;
    model.beginCameraInteraction();
    for (int i = 0; i < kMoves; ++i)
        move(model);
    model.endCameraInteraction();
}

std::vector<Stop> directionStops(const TourArguments& arguments)
{
    std::vector<Stop> stops;
    const auto& names = apps::viewNames();
    for (std::size_t i = 1; i < names.size(); ++i) {
        const auto direction = static_cast<ViewDirection>(i);
        stops.push_back({names[i], [direction, &arguments](ViewportSession& viewport) {
                             viewport.frame(direction, arguments.viewport.camera.projection, {});
                         }});
    }
    return stops;
}

/// Gestures from the last framed view; a dozen moves of 1/96 of the width orbit by 45 degrees.
std::vector<Stop> gestureStops(const TourArguments& arguments)
{
    const float width = static_cast<float>(arguments.viewport.camera.size[0]);
    const float height = static_cast<float>(arguments.viewport.camera.size[1]);
    const auto orbit = [width](ViewportModel& m) {
        m.orbitCamera(width / 96, 0, ViewportModel::m_cameraOrbitUndoLabel);
    };
    const auto pan = [width, height](ViewportModel& m) {
        m.panCamera(width / 96, height / 128, ViewportModel::m_cameraPanUndoLabel);
    };
    const auto zoom = [width](ViewportModel& m) {
        m.zoomCamera(width / 36, 0, ViewportModel::m_cameraZoomUndoLabel);
    };
    return {
        {"orbited", [orbit](ViewportSession& v) { drag(v.model(), orbit); }},
        {"panned", [pan](ViewportSession& v) { drag(v.model(), pan); }},
        {"zoomed", [zoom](ViewportSession& v) { drag(v.model(), zoom); }},
        {"orthographic",
         [](ViewportSession& v) { v.frame(ViewDirection::ThreeQuarters, "orthographic", {}); }},
    };
}

/// Sizes the picture to a camera's own window, so that it shows exactly what the camera frames.
void fitSizeTo(ViewportSession& viewport, const GfCamera& camera, const std::array<int, 2>& largest,
               float ratio)
{
    const double aspect = camera.GetAspectRatio();
    if (!std::isfinite(aspect) || aspect <= 0) return;
    const double height = std::min<double>(largest[1], largest[0] / aspect);
    const int size[2] = {std::max(1, static_cast<int>(std::lround(height * aspect))),
                         std::max(1, static_cast<int>(std::lround(height)))};
    viewport.model().setRenderSize(size, ratio);
    viewport.model().setViewportSize(size);
}

std::string fileStem(std::string path)
{
    for (char& c : path) {
        if (c == '/' || c == ':') c = '_';
    }
    return "camera" + path;
}

std::vector<Stop> cameraStops(apps::SceneSession& scene, const TourArguments& arguments)
{
    std::vector<Stop> stops;
    for (const std::string& path : scene.cameraPaths()) {
        stops.push_back({fileStem(path), [path, &arguments](ViewportSession& viewport) {
                             viewport.lookThrough(SdfPath(path));
                             fitSizeTo(viewport, viewport.model().getViewportCamera(),
                                       arguments.viewport.camera.size,
                                       arguments.viewport.camera.devicePixelRatio);
                         }});
    }
    return stops;
}

/// Where a stage is animated: the same view at its start, middle and end.
std::vector<Stop> timeStops(apps::SceneSession& scene, const TourArguments& arguments)
{
    const auto [first, last] = scene.timeRange();
    std::vector<Stop> stops;
    if (!(last > first)) return stops;
    for (const double time : {first, 0.5 * (first + last), last}) {
        std::ostringstream name;
        name << "time_" << time;
        stops.push_back({name.str(), [time, &arguments](ViewportSession& viewport) {
                             viewport.showTime(time);
                             viewport.frame(ViewDirection::ThreeQuarters,
                                            arguments.viewport.camera.projection, {});
                         }});
    }
    return stops;
}

void makeFolder(const std::string& folder)
{
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) throw apps::JobError("cannot make the folder '" + folder + "': " + error.message());
}

/// What the tour has written so far.
struct Pictures
{
    std::vector<std::filesystem::path> files;
    std::vector<apps::SheetEntry> entries;
    double firstPicture = 0; ///< seconds from opening the scene
};

Pictures visit(ViewportSession& viewport, const std::vector<Stop>& stops, const TourArguments& arguments,
               Clock::time_point start)
{
    apps::Progress progress;
    Pictures pictures;
    for (std::size_t i = 0; i < stops.size(); ++i) {
        apps::Interruption::check();
        progress.show(stops[i].name, static_cast<int>(i), static_cast<int>(stops.size()));
        stops[i].go(viewport);
        const std::filesystem::path file = std::filesystem::path(arguments.folder) / (stops[i].name + ".png");
        viewport.capture(file, "color", false, std::nullopt, 0);
        if (i == 0) pictures.firstPicture = std::chrono::duration<double>(Clock::now() - start).count();
        pictures.files.push_back(file);
        pictures.entries.push_back({apps::readPng(file), stops[i].name});
    }
    return pictures;
}

void runTour(const TourArguments& arguments, std::ostream& out)
{
    makeFolder(arguments.folder);
    const auto start = Clock::now();
    apps::SceneSession scene(arguments.scene);
    const std::size_t prims = scene.primCount();
    const double opened = std::chrono::duration<double>(Clock::now() - start).count();

    ViewportSession viewport(scene, arguments.viewport);
    viewport.showTime(arguments.viewport.camera.time.value_or(scene.startTime()));
    std::vector<Stop> stops = directionStops(arguments);
    for (auto more : {gestureStops(arguments), timeStops(scene, arguments), cameraStops(scene, arguments)}) {
        std::move(more.begin(), more.end(), std::back_inserter(stops));
    }
    const Pictures pictures = visit(viewport, stops, arguments, start);

    constexpr int kColumns = 4;
    const std::filesystem::path sheet = std::filesystem::path(arguments.folder) / "sheet.png";
    apps::writePng(sheet, apps::makeContactSheet(pictures.entries, kColumns, 480, 270));

    out << std::setprecision(3) << "scene                " << arguments.scene << "\n"
        << "prims                " << prims << "\n"
        << "bounds               "
        << apps::boundsText(scene.bounds(viewport.model().currentTime(), {}, false)) << "\n"
        << "opened after         " << opened << " s\n"
        << "first picture after  " << pictures.firstPicture << " s\n"
        << "files\n";
    for (const std::filesystem::path& file : pictures.files)
        out << "  " << file.string() << "\n";
    out << "  " << sheet.string() << "\n";
}

} // namespace

void addTourVerb(Program& program)
{
    auto arguments = std::make_shared<TourArguments>();
    arguments->viewport.camera.size = {960, 540};
    CLI::App* verb = program.app.add_subcommand("tour", "Looks at a scene from all sides, at several times "
                                                        "and through its cameras, and makes a contact sheet");
    verb->add_option("SCENE", arguments->scene, "The scene's file")->required();
    verb->add_option("-o,--output", arguments->folder, "Folder for the pictures; made when it is missing")
        ->type_name("DIR")
        ->required();
    verb->add_option_function<std::string>(
            "--size",
            [arguments](const std::string& text) { arguments->viewport.camera.size = apps::parseSize(text); },
            "Picture size in logical pixels (default 960x540)")
        ->type_name("WxH");
    verb->add_option("--renderer", arguments->viewport.renderer, "Renderer (vesk --version lists them)")
        ->type_name("ID");
    verb->footer("Example:\n  vesk tour scene.usda -o pictures");
    verb->callback([&program, arguments] {
        program.job = [arguments](std::ostream& out) { runTour(*arguments, out); };
    });
}

} // namespace vesk::cli
