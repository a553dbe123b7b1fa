#include "program.h"

#include <apps/support/json.h>
#include <apps/support/scene_session.h>

#include <memory>
#include <optional>
#include <ostream>

namespace vesk::cli {
namespace {

struct BoundsArguments
{
    std::string scene;
    std::optional<double> time;
    std::vector<std::string> paths;
    bool proxy = false;
    bool json = false;
};

void runBounds(const BoundsArguments& arguments, std::ostream& out)
{
    apps::SceneSession session(arguments.scene);
    const auto bounds = session.bounds(arguments.time.value_or(session.startTime()),
                                       session.requirePrims(arguments.paths), arguments.proxy);
    if (arguments.json)
        out << apps::jsonBounds(bounds).dump() << "\n";
    else
        out << apps::boundsText(bounds) << "\n";
}

} // namespace

void addBoundsVerb(Program& program)
{
    auto arguments = std::make_shared<BoundsArguments>();
    CLI::App* verb =
        program.app.add_subcommand("bounds", "Measures a scene or some of its prims in world space");
    verb->add_option("SCENE", arguments->scene, "The scene's file")->required();
    verb->add_option("--time", arguments->time, "Time code (default: the stage's start, else 0)")
        ->type_name("T");
    verb->add_option("--path", arguments->paths, "Measure this prim; may be given several times")
        ->type_name("/PATH")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    verb->add_flag("--proxy", arguments->proxy, "Count proxy geometry in place of render geometry");
    verb->add_flag("--json", arguments->json, "Print JSON");
    verb->footer("Example:\n  vesk bounds scene.usda --path /World/Engine --time 12");
    verb->callback([&program, arguments] {
        program.job = [arguments](std::ostream& out) { runBounds(*arguments, out); };
    });
}

} // namespace vesk::cli
