#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <iosfwd>
#include <string>

namespace vesk::cli {

/// What the verbs share while the command line is read: the parser, and the job that the chosen verb asks
/// for.
struct Program
{
    CLI::App app;
    std::string log; ///< where log records go: empty: nowhere, "-": stderr, else a file

    /// The chosen verb's job: writes its result, and nothing else, to the stream.
    /// Throws: `vesk::apps::JobError`, `vesk::apps::UsageError`, or what the libraries throw.
    std::function<void(std::ostream&)> job;
};

/// Runs the program on a command line and returns its exit code: 0, 1 for a failed job, 2 for wrong usage.
/// Results go to `out`; an error is exactly one line on `err`.
int run(int argc, const char* const* argv, std::ostream& out, std::ostream& err);

void addInfoVerb(Program& program);
void addBoundsVerb(Program& program);
void addShotVerb(Program& program);
void addTurntableVerb(Program& program);
void addSheetVerb(Program& program);
void addPickVerb(Program& program);
void addTourVerb(Program& program);
void addReplayVerb(Program& program);

} // namespace vesk::cli
