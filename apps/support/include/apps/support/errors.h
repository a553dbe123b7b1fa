#pragma once

#include <stdexcept>
#include <string>

namespace vesk::apps {

/// Exit codes of the programs.
enum ExitCode : int
{
    kExitSuccess = 0,
    kExitJobFailed = 1,  ///< the job was understood and could not be done
    kExitWrongUsage = 2, ///< the command line says something that cannot be meant
};

/// A job that could not be done. The text is one line: what was wrong, where, and what to do.
class JobError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// A command line that cannot be meant. The text is one line.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Folds a text of several lines into one, so that an error stays one line on the terminal.
std::string oneLine(std::string text);

} // namespace vesk::apps
