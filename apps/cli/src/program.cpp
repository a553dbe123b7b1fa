#include "program.h"

#include <apps/support/diagnostics.h>
#include <apps/support/errors.h>
#include <apps/support/interruption.h>
#include <apps/support/renderers.h>
#include <apps/support/version.h>

#include <exception>
#include <ostream>

namespace vesk::cli {
namespace {

void declare(Program& program)
{
    CLI::App& app = program.app;
    app.name("vesk");
    app.description(
        "Opens an OpenUSD scene, frames it, measures it and takes its picture; needs no display and no GPU.");
    app.footer("Examples:\n"
               "  vesk info scene.usda\n"
               "  vesk shot scene.usda -o picture.png --view front\n"
               "  vesk tour scene.usda -o pictures\n"
               "Each verb has its own help: vesk shot --help");
    app.require_subcommand(1);
    app.fallthrough();
    app.set_version_flag("--version", apps::versionText, "Print version, OpenUSD and renderers, and exit");
    app.add_option("--log", program.log, "Write log records and OpenUSD's diagnostics to FILE, - for stderr")
        ->type_name("FILE");
    addInfoVerb(program);
    addBoundsVerb(program);
    addShotVerb(program);
    addTurntableVerb(program);
    addSheetVerb(program);
    addPickVerb(program);
    addTourVerb(program);
    addReplayVerb(program);
}

/// "vesk shot" where a verb was named, else "vesk": the help that the user should read.
std::string helpOf(const CLI::App& app)
{
    const auto verbs = app.get_subcommands();
    return verbs.empty() ? "vesk --help" : "vesk " + verbs.front()->get_name() + " --help";
}

/// The word that stands where a verb should; empty where there is none.
std::string unknownVerb(const CLI::App& app, int argc, const char* const* argv)
{
    if (!app.get_subcommands().empty()) return {};
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (word == "--log")
            ++i;
        else if (word.empty() || word.front() != '-')
            return word;
    }
    return {};
}

int reportUsage(const std::string& text, const Program& program, std::ostream& err)
{
    err << "vesk: " << apps::oneLine(text) << "; see " << helpOf(program.app) << "\n";
    return apps::kExitWrongUsage;
}

int runJob(const Program& program, std::ostream& out, std::ostream& err)
{
    try {
        const apps::Diagnostics diagnostics(program.log);
        const apps::Interruption interruption;
        program.job(out);
        out.flush();
        if (!out) throw apps::JobError("cannot write the result to stdout");
        return apps::kExitSuccess;
    } catch (const apps::UsageError& error) {
        return reportUsage(error.what(), program, err);
    } catch (const std::exception& error) {
        err << "vesk: " << apps::oneLine(error.what()) << "\n";
        return apps::kExitJobFailed;
    }
}

} // namespace

int run(int argc, const char* const* argv, std::ostream& out, std::ostream& err)
{
    apps::registerRenderers();
    Program program;
    declare(program);
    try {
        program.app.parse(argc, argv);
    } catch (const CLI::Success& request) {
        return program.app.exit(request, out, err);
    } catch (const CLI::Error& error) {
        const std::string verb = unknownVerb(program.app, argc, argv);
        return reportUsage(verb.empty() ? error.what() : "there is no verb '" + verb + "'", program, err);
    } catch (const apps::UsageError& error) {
        return reportUsage(error.what(), program, err);
    }
    return runJob(program, out, err);
}

} // namespace vesk::cli
