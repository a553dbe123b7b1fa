#include "picture_options.h"

#include <map>
#include <ostream>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::cli {
namespace {

const char* const kGroup = "Picture";

const std::map<std::string, apps::Lights>& lightsByName()
{
    static const std::map<std::string, apps::Lights> lights{
        {"default", apps::Lights::Default}, {"scene", apps::Lights::Scene}, {"none", apps::Lights::None}};
    return lights;
}

void addLightOptions(CLI::App& verb, PictureArguments& arguments)
{
    // By name alone: CLI11 would take the enumeration's numbers too.
    verb.add_option_function<std::string>(
            "--lights",
            [&arguments](const std::string& name) { arguments.viewport.lights = lightsByName().at(name); },
            "default (a built-in rig), scene (the stage's own) or none")
        ->check(CLI::IsMember(lightsByName()))
        ->type_name("NAME")
        ->group(kGroup);
    verb.add_option("--dome", arguments.viewport.domeTexture, "Image around the scene that lights it")
        ->type_name("FILE")
        ->group(kGroup);
}

void addBackgroundOptions(CLI::App& verb, PictureArguments& arguments)
{
    verb.add_option_function<std::string>(
            "--background",
            [&arguments](const std::string& text) {
                const auto color = apps::parseColor(text);
                arguments.background = GfVec4f(color[0], color[1], color[2], color[3]);
            },
            "Colour and opacity behind the scene, each from 0 to 1")
        ->type_name("R,G,B,A")
        ->group(kGroup);
    verb.add_flag("--transparent", arguments.transparent, "Leave the background transparent")->group(kGroup);
}

} // namespace

void addSceneArgument(CLI::App& verb, std::string& scene)
{
    verb.add_option("SCENE", scene, "The scene's file")->required();
}

void addAovOption(CLI::App& verb, PictureArguments& arguments)
{
    verb.add_option("--aov", arguments.aovs, "Render output; may be given several times (default color)")
        ->check(CLI::IsMember(apps::aovNames()))
        ->type_name("NAME")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->group(kGroup);
}

void addPictureOptions(CLI::App& verb, PictureArguments& arguments)
{
    verb.add_option("--samples", arguments.samples, "Samples per pixel (default: the renderer's)")
        ->check(CLI::Range(1, 65536))
        ->type_name("N")
        ->group(kGroup);
    addLightOptions(verb, arguments);
    addBackgroundOptions(verb, arguments);
    verb.add_option("--draw-mode", arguments.drawMode, "How surfaces are drawn")
        ->check(CLI::IsMember({"points", "wireframe", "wireframeOnSurface", "shadedFlat", "shadedSmooth",
                               "geomOnly", "geomFlat", "geomSmooth"}))
        ->type_name("NAME")
        ->group(kGroup);
    verb.add_option("--renderer", arguments.viewport.renderer, "Renderer (vesk --version lists them)")
        ->type_name("ID")
        ->group(kGroup);
}

void addPictureJson(CLI::App& verb, PictureArguments& arguments)
{
    verb.add_flag("--json", arguments.json, "Print files, camera and timings as JSON");
}

void preparePictures(apps::ViewportSession& viewport, const PictureArguments& arguments)
{
    if (!arguments.drawMode.empty()) viewport.model().setDrawMode(TfToken(arguments.drawMode));
    viewport.applyCamera(arguments.viewport.camera);
}

void takePicture(apps::ViewportSession& viewport, const PictureArguments& arguments,
                 const std::vector<apps::Output>& outputs)
{
    viewport.captureAll(outputs, arguments.transparent, arguments.background, arguments.samples);
}

void Timings::end(const char* part)
{
    const auto now = std::chrono::steady_clock::now();
    m_json[part] = std::chrono::duration<double>(now - m_start).count();
    m_start = now;
}

void printPictures(std::ostream& out, const PictureArguments& arguments,
                   const std::vector<apps::Output>& outputs, const GfCamera& camera, const Timings& timings)
{
    if (!arguments.json) {
        for (const apps::Output& output : outputs)
            out << output.file.string() << "\n";
        return;
    }
    apps::Json files = apps::Json::array();
    for (const apps::Output& output : outputs)
        files.push_back(output.file.string());
    const apps::Json json = {
        {"files", std::move(files)}, {"camera", apps::jsonCamera(camera)}, {"timings", timings.json()}};
    out << json.dump(2) << "\n";
}

} // namespace vesk::cli
