#include "program.h"

#include "replay/observed_renderer.h"
#include "replay/operations.h"
#include "replay/session.h"

#include <apps/support/errors.h>
#include <apps/support/interruption.h>
#include <apps/support/outputs.h>
#include <apps/support/side_file.h>

#include <vesk/framework/hydra_renderer/renderer_registry.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <ostream>
#include <sstream>

namespace vesk::cli {
namespace {

using apps::JobError;
using apps::Json;
using apps::UsageError;

struct ReplayArguments
{
    std::string scene;
    std::string script;
    std::string output;
    std::string renderer = "recording";
};

struct ScriptStep
{
    std::string operation;
    replay::Action action;
};

Json readScript(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) throw JobError("cannot read the script '" + path + "'");
    try {
        return Json::parse(file);
    } catch (const Json::exception& error) {
        throw UsageError("the script '" + path + "' is not JSON: " + apps::oneLine(error.what()));
    }
}

void requireRenderer(const std::string& id)
{
    const auto known = framework::hydra_renderer::registeredRendererIds();
    if (std::find(known.begin(), known.end(), id) == known.end() || id == replay::kObservedRendererId)
        throw UsageError("there is no renderer '" + id + "'; vesk --version lists them");
}

ScriptStep readStep(const Json& step, std::size_t index, const std::string& renderer)
{
    const std::string where = "step " + std::to_string(index) + ": ";
    if (!step.is_object() || !step.contains("op") || !step["op"].is_string()) {
        throw UsageError(where + "must be an object with the operation's name under \"op\"");
    }
    const std::string name = step["op"].get<std::string>();
    const auto found = replay::operations().find(name);
    if (found == replay::operations().end()) throw UsageError(where + "there is no operation '" + name + "'");
    const std::vector<std::string>& known = found->second.arguments;
    for (const auto& item : step.items()) {
        if (item.key() == "op" || std::find(known.begin(), known.end(), item.key()) != known.end()) continue;
        throw UsageError(where + "'" + name + "' has no argument '" + item.key() + "'");
    }
    try {
        Json complete = step;
        // A construction that names no renderer takes the one of the command line.
        if (name == "construct" && !step.contains("renderer")) complete["renderer"] = renderer;
        return {name, found->second.read(replay::Arguments(complete))};
    } catch (const UsageError& error) {
        throw UsageError(where + "'" + name + "': " + error.what());
    }
}

std::vector<ScriptStep> readSteps(const std::string& path, const std::string& renderer)
{
    const Json script = readScript(path);
    if (!script.is_array()) throw UsageError("the script '" + path + "' must be an array of steps");
    std::vector<ScriptStep> steps;
    for (std::size_t i = 0; i < script.size(); ++i)
        steps.push_back(readStep(script[i], i, renderer));
    return steps;
}

void play(const ReplayArguments& arguments, const std::vector<ScriptStep>& steps, std::ostream& out)
{
    replay::Session session(arguments.scene);
    if (steps.empty() || steps.front().operation != "construct") {
        replay::Construction how;
        how.renderer = arguments.renderer;
        session.constructUnseen(how);
    }
    for (const ScriptStep& step : steps) {
        apps::Interruption::check();
        session.step(step.operation, step.action, out);
    }
    session.step(
        "end", [](replay::Session& s) { return s.runTasks(), Json(); }, out);
}

/// Writes the whole session at once, so that a failed one leaves no file.
void writeWhole(const std::string& path, const std::string& text)
{
    apps::SideFile side(path);
    std::ofstream file(side.path(), std::ios::binary);
    file << text;
    file.close();
    if (!file) throw JobError("cannot write '" + path + "': the disk may be full");
    side.moveToPlace();
}

void runReplay(const ReplayArguments& arguments, std::ostream& out)
{
    requireRenderer(arguments.renderer);
    const std::vector<ScriptStep> steps = readSteps(arguments.script, arguments.renderer);
    if (arguments.output.empty()) return play(arguments, steps, out);
    apps::requireWritable(arguments.output);
    std::ostringstream text;
    play(arguments, steps, text);
    writeWhole(arguments.output, text.str());
}

} // namespace

void addReplayVerb(Program& program)
{
    auto arguments = std::make_shared<ReplayArguments>();
    CLI::App* verb = program.app.add_subcommand(
        "replay",
        "Runs a recorded session against a viewport and prints what can be observed, a JSON line a step");
    verb->add_option("SCENE", arguments->scene, "The scene's file")->required();
    verb->add_option("SCRIPT", arguments->script, "JSON array of steps: {\"op\": NAME, arguments by name}")
        ->required();
    verb->add_option("-o,--output", arguments->output, "Write the lines to FILE instead of stdout")
        ->type_name("FILE");
    verb->add_option("--renderer", arguments->renderer, "Renderer (vesk --version lists them)")
        ->type_name("ID")
        ->capture_default_str();
    verb->footer("Example:\n"
                 "  vesk replay scene.usda session.json\n"
                 "with session.json:\n"
                 "  [{\"op\": \"frameScene\", \"projection\": 0, \"direction\": 7, \"paths\": []},\n"
                 "   {\"op\": \"runTasks\"},\n"
                 "   {\"op\": \"orbitCamera\", \"dx\": 40, \"dy\": 0, \"undoLabel\": \"\"}]");
    verb->callback([&program, arguments] {
        program.job = [arguments](std::ostream& out) { runReplay(*arguments, out); };
    });
}

} // namespace vesk::cli
