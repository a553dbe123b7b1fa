#include "program.h"

#include <apps/support/json.h>
#include <apps/support/outputs.h>
#include <apps/support/progress.h>
#include <apps/support/viewport_session.h>

#include <chrono>
#include <map>
#include <memory>
#include <ostream>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::cli {
namespace {

struct ShotArguments
{
    std::string scene;
    std::string file;
    apps::ViewportArguments viewport;
    std::vector<std::string> aovs;
    int samples = 0;
    std::optional<GfVec4f> background;
    std::string drawMode;
    bool transparent = false;
    bool json = false;
};

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

void write(apps::ViewportSession& viewport, const ShotArguments& arguments,
           const std::vector<apps::Output>& outputs)
{
    apps::Progress progress;
    viewport.setProgress([&progress, &arguments](int, float fraction) {
        progress.show("rendering " + arguments.file, static_cast<int>(fraction * 100), 100);
    });
    for (const apps::Output& output : outputs) {
        viewport.capture(output.file, output.aov, arguments.transparent, arguments.background,
                         arguments.samples);
    }
    viewport.setProgress(nullptr);
}

apps::Json asJson(const std::vector<apps::Output>& outputs, const GfCamera& camera, double open, double frame,
                  double render)
{
    apps::Json files = apps::Json::array();
    for (const apps::Output& output : outputs)
        files.push_back(output.file.string());
    return {{"files", std::move(files)},
            {"camera", apps::jsonCamera(camera)},
            {"timings", {{"open", open}, {"frame", frame}, {"render", render}}}};
}

void runShot(const ShotArguments& arguments, std::ostream& out)
{
    const std::vector<apps::Output> outputs = apps::planOutputs(arguments.file, arguments.aovs);
    for (const apps::Output& output : outputs)
        apps::requireWritable(output.file);

    const auto start = Clock::now();
    apps::SceneSession scene(arguments.scene);
    const double open = secondsSince(start);

    const auto framing = Clock::now();
    apps::ViewportSession viewport(scene, arguments.viewport);
    if (!arguments.drawMode.empty()) viewport.model().setDrawMode(TfToken(arguments.drawMode));
    viewport.applyCamera(arguments.viewport.camera);
    const double frame = secondsSince(framing);

    const auto rendering = Clock::now();
    write(viewport, arguments, outputs);
    const double render = secondsSince(rendering);

    if (arguments.json) {
        out << asJson(outputs, viewport.model().getViewportCamera(), open, frame, render).dump(2) << "\n";
    } else {
        for (const apps::Output& output : outputs)
            out << output.file.string() << "\n";
    }
}

void addPictureOptions(CLI::App& verb, ShotArguments& arguments)
{
    const char* const group = "Picture";
    verb.add_option("--aov", arguments.aovs, "Render output; may be given several times (default color)")
        ->check(CLI::IsMember(apps::aovNames()))
        ->type_name("NAME")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->group(group);
    verb.add_option("--samples", arguments.samples, "Samples per pixel (default: the renderer's)")
        ->check(CLI::Range(1, 65536))
        ->type_name("N")
        ->group(group);
    static const std::map<std::string, apps::Lights> lights{
        {"default", apps::Lights::Default}, {"scene", apps::Lights::Scene}, {"none", apps::Lights::None}};
    verb.add_option("--lights", arguments.viewport.lights,
                    "default (a built-in rig), scene (the stage's own) or none")
        ->transform(CLI::CheckedTransformer(lights))
        ->type_name("NAME")
        ->group(group);
    verb.add_option("--dome", arguments.viewport.domeTexture, "Image around the scene that lights it")
        ->type_name("FILE")
        ->group(group);
    verb.add_option_function<std::string>(
            "--background",
            [&arguments](const std::string& text) {
                const auto color = apps::parseColor(text);
                arguments.background = GfVec4f(color[0], color[1], color[2], color[3]);
            },
            "Colour and opacity behind the scene, each from 0 to 1")
        ->type_name("R,G,B,A")
        ->group(group);
    verb.add_option("--draw-mode", arguments.drawMode, "How surfaces are drawn")
        ->check(CLI::IsMember({"points", "wireframe", "wireframeOnSurface", "shadedFlat", "shadedSmooth",
                               "geomOnly", "geomFlat", "geomSmooth"}))
        ->type_name("NAME")
        ->group(group);
    verb.add_flag("--transparent", arguments.transparent, "Leave the background transparent")->group(group);
    verb.add_option("--renderer", arguments.viewport.renderer, "Renderer (vesk --version lists them)")
        ->type_name("ID")
        ->group(group);
}

} // namespace

void addShotVerb(Program& program)
{
    auto arguments = std::make_shared<ShotArguments>();
    CLI::App* verb = program.app.add_subcommand("shot", "Takes a picture of a scene");
    verb->add_option("SCENE", arguments->scene, "The scene's file")->required();
    verb->add_option("-o,--output", arguments->file, "Picture to write: .png, or .exr for decimals")
        ->type_name("FILE")
        ->required();
    apps::addCameraOptions(*verb, arguments->viewport.camera);
    addPictureOptions(*verb, *arguments);
    verb->add_flag("--json", arguments->json, "Print files, camera and timings as JSON");
    verb->footer("Examples:\n"
                 "  vesk shot scene.usda -o picture.png --view front --size 1920x1080\n"
                 "  vesk shot scene.usda -o depth.exr --aov depth --camera /World/Camera --time 24");
    verb->callback([&program, arguments] {
        program.job = [arguments](std::ostream& out) { runShot(*arguments, out); };
    });
}

} // namespace vesk::cli
