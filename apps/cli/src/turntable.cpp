#include "picture_options.h"
#include "program.h"

#include <apps/support/errors.h>
#include <apps/support/interruption.h>
#include <apps/support/progress.h>

#include <pxr/base/gf/rotation.h>

#include <cstdio>
#include <memory>
#include <ostream>
#include <system_error>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::cli {
namespace {

struct TurntableArguments
{
    PictureArguments picture;
    std::string folder;
    int frames = 36;
};

// The folder may be new, the one that it lies in may not.
void requireFolder(const std::filesystem::path& folder)
{
    std::error_code error;
    if (std::filesystem::is_directory(folder, error)) return;
    if (std::filesystem::exists(folder, error)) {
        throw apps::JobError("cannot write to '" + folder.string() + "': it is no folder; name another one");
    }
    std::filesystem::path parent =
        folder.has_filename() ? folder.parent_path() : folder.parent_path().parent_path();
    if (parent.empty()) parent = ".";
    if (!std::filesystem::is_directory(parent, error)) {
        throw apps::JobError("cannot make the folder '" + folder.string() + "': the folder '" +
                             parent.string() + "' does not exist; create it first");
    }
    std::filesystem::create_directory(folder, error);
    if (error) throw apps::JobError("cannot make the folder '" + folder.string() + "': " + error.message());
}

std::vector<apps::Output> outputsOf(const TurntableArguments& arguments, int frame)
{
    const std::vector<std::string>& aovs = arguments.picture.aovs;
    const bool isFloat = aovs.size() == 1 && aovs.front() != "color";
    char name[32];
    std::snprintf(name, sizeof(name), "frame.%04d.%s", frame, isFloat ? "exr" : "png");
    return apps::planOutputs(std::filesystem::path(arguments.folder) / name, aovs);
}

/// A camera that goes around what it looks at.
class Orbit
{
public:
    explicit Orbit(const framework::usd_viewport::ViewportModel& model)
        : m_camera(model.getViewportCamera()),
          m_up(model.zUp() ? GfVec3d(0, 0, 1) : GfVec3d(0, 1, 0)),
          m_pivot(m_camera.GetTransform().Transform(
              GfVec3d(0, 0, -static_cast<double>(model.distanceToCenter()))))
    {}

    GfCamera at(double turn) const
    {
        GfMatrix4d rotation(1.0);
        rotation.SetRotate(GfRotation(m_up, 360.0 * turn));
        const GfMatrix4d around =
            GfMatrix4d(1.0).SetTranslate(-m_pivot) * rotation * GfMatrix4d(1.0).SetTranslate(m_pivot);
        GfCamera camera = m_camera;
        camera.SetTransform(m_camera.GetTransform() * around);
        return camera;
    }

private:
    GfCamera m_camera;
    GfVec3d m_up;
    GfVec3d m_pivot;
};

void runTurntable(const TurntableArguments& arguments, std::ostream& out)
{
    outputsOf(arguments, 1); // wrong usage shows before any work is done
    requireFolder(arguments.folder);
    Timings timings;
    apps::SceneSession scene(arguments.picture.scene);
    timings.end("open");
    apps::ViewportSession viewport(scene, arguments.picture.viewport);
    preparePictures(viewport, arguments.picture);
    timings.end("frame");
    const Orbit orbit(viewport.model());
    const GfCamera first = viewport.model().getViewportCamera();
    std::vector<apps::Output> written;
    {
        apps::Progress progress;
        for (int frame = 1; frame <= arguments.frames; ++frame) {
            apps::Interruption::check();
            progress.show("frame " + std::to_string(frame), frame - 1, arguments.frames);
            viewport.model().setViewportCamera({},
                                               orbit.at(static_cast<double>(frame - 1) / arguments.frames));
            const std::vector<apps::Output> outputs = outputsOf(arguments, frame);
            takePicture(viewport, arguments.picture, outputs);
            written.insert(written.end(), outputs.begin(), outputs.end());
        }
    }
    timings.end("render");
    printPictures(out, arguments.picture, written, first, timings);
}

} // namespace

void addTurntableVerb(Program& program)
{
    auto arguments = std::make_shared<TurntableArguments>();
    CLI::App* verb =
        program.app.add_subcommand("turntable", "Takes pictures from all around, once around the up axis");
    addSceneArgument(*verb, arguments->picture.scene);
    verb->add_option("-o,--output", arguments->folder,
                     "Folder for frame.0001.png and so on; made when it is missing")
        ->type_name("DIR")
        ->required();
    verb->add_option("--frames", arguments->frames, "Pictures of one turn")
        ->check(CLI::Range(1, 9999))
        ->type_name("N")
        ->capture_default_str();
    apps::addCameraOptions(*verb, arguments->picture.viewport.camera);
    addAovOption(*verb, arguments->picture);
    addPictureOptions(*verb, arguments->picture);
    addPictureJson(*verb, arguments->picture);
    verb->footer("Example:\n  vesk turntable scene.usda -o turn --frames 72 --size 640x360");
    verb->callback([&program, arguments] {
        program.job = [arguments](std::ostream& out) { runTurntable(*arguments, out); };
    });
}

} // namespace vesk::cli
