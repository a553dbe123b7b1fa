#include "picture_options.h"
#include "program.h"

#include <apps/support/progress.h>

#include <memory>
#include <ostream>

namespace vesk::cli {
namespace {

struct ShotArguments
{
    PictureArguments picture;
    std::string file;
};

void runShot(const ShotArguments& arguments, std::ostream& out)
{
    const std::vector<apps::Output> outputs = apps::planOutputs(arguments.file, arguments.picture.aovs);
    for (const apps::Output& output : outputs)
        apps::requireWritable(output.file);

    Timings timings;
    apps::SceneSession scene(arguments.picture.scene);
    timings.end("open");
    apps::ViewportSession viewport(scene, arguments.picture.viewport);
    preparePictures(viewport, arguments.picture);
    timings.end("frame");
    {
        apps::Progress progress;
        viewport.setProgress([&](int, float fraction) {
            progress.show("rendering " + arguments.file, static_cast<int>(fraction * 100), 100);
        });
        takePicture(viewport, arguments.picture, outputs);
        viewport.setProgress(nullptr);
    }
    timings.end("render");
    printPictures(out, arguments.picture, outputs, viewport.model().getViewportCamera(), timings);
}

} // namespace

void addShotVerb(Program& program)
{
    auto arguments = std::make_shared<ShotArguments>();
    CLI::App* verb = program.app.add_subcommand("shot", "Takes a picture of a scene");
    addSceneArgument(*verb, arguments->picture.scene);
    verb->add_option("-o,--output", arguments->file, "Picture to write: .png, or .exr for decimals")
        ->type_name("FILE")
        ->required();
    apps::addCameraOptions(*verb, arguments->picture.viewport.camera);
    addAovOption(*verb, arguments->picture);
    addPictureOptions(*verb, arguments->picture);
    addPictureJson(*verb, arguments->picture);
    verb->footer("Examples:\n"
                 "  vesk shot scene.usda -o picture.png --view front --size 1920x1080\n"
                 "  vesk shot scene.usda -o depth.exr --aov depth --camera /World/Camera --time 24");
    verb->callback([&program, arguments] {
        program.job = [arguments](std::ostream& out) { runShot(*arguments, out); };
    });
}

} // namespace vesk::cli
