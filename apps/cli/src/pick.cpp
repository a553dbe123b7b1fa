#include "picture_options.h"
#include "program.h"

#include <apps/support/errors.h>

#include <array>
#include <memory>
#include <ostream>

namespace vesk::cli {
namespace {

using framework::hydra_renderer::PickingResult;

struct PickArguments
{
    std::string scene;
    apps::ViewportArguments viewport;
    std::array<float, 2> at{0.0f, 0.0f};
    float radius = 0.0f;
    bool json = false;
};

apps::Json asJson(const PickingResult& result)
{
    return {{"hit", result.hit},
            {"primPath", result.primPath},
            {"secondaryPath", result.secondaryPath},
            {"instanceIndex", result.instanceIndex},
            {"tertiaryPath", result.tertiaryPath},
            {"point", apps::jsonVector(result.point)},
            {"normal", apps::jsonVector(result.normal)},
            {"depth", apps::jsonNumber(result.depth)}};
}

void print(std::ostream& out, const PickingResult& result)
{
    if (!result.hit) {
        out << "nothing\n";
        return;
    }
    out << "prim      " << result.primPath << "\n";
    if (!result.secondaryPath.empty()) {
        out << "instance  " << result.secondaryPath;
        if (result.instanceIndex >= 0) out << " [" << result.instanceIndex << "]";
        out << "\nprototype " << result.tertiaryPath << "\n";
    }
    out << "point     " << result.point << "\n"
        << "normal    " << result.normal << "\n"
        << "depth     " << result.depth << "\n";
}

void runPick(const PickArguments& arguments, std::ostream& out)
{
    apps::SceneSession scene(arguments.scene);
    apps::ViewportSession viewport(scene, arguments.viewport);
    viewport.applyCamera(arguments.viewport.camera);
    const PickingResult result = viewport.pick(arguments.at, arguments.radius);
    if (arguments.json) {
        out << asJson(result).dump(2) << "\n";
    } else {
        print(out, result);
    }
}

} // namespace

void addPickVerb(Program& program)
{
    auto arguments = std::make_shared<PickArguments>();
    CLI::App* verb = program.app.add_subcommand("pick", "Says what lies under a point of the picture");
    addSceneArgument(*verb, arguments->scene);
    verb->add_option_function<std::string>(
            "--at", [arguments](const std::string& text) { arguments->at = apps::parsePoint(text); },
            "Point in logical pixels, 0,0 at the top left, a pixel's centre at +0.5")
        ->type_name("X,Y")
        ->required();
    verb->add_option("--radius", arguments->radius, "How far around it to look, in logical pixels")
        ->check(CLI::NonNegativeNumber)
        ->type_name("R")
        ->capture_default_str();
    apps::addCameraOptions(*verb, arguments->viewport.camera);
    verb->add_option("--renderer", arguments->viewport.renderer, "Renderer (vesk --version lists them)")
        ->type_name("ID");
    verb->add_flag("--json", arguments->json, "Print the answer as JSON");
    verb->footer("Example:\n  vesk pick scene.usda --at 640.5,360.5 --view front --json");
    verb->callback([&program, arguments] {
        program.job = [arguments](std::ostream& out) { runPick(*arguments, out); };
    });
}

} // namespace vesk::cli
