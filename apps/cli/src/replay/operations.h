#pragma once

#include "arguments.h"
#include "session.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace vesk::cli::replay {

/// What a step of a script can do.
struct Operation
{
    /// The names of its arguments.
    std::vector<std::string> arguments;

    /// Reads the arguments and returns the step's action. Reading happens for the whole script before any
    /// action runs. Throws: `UsageError` for an argument that is missing or of the wrong type.
    std::function<Action(const Arguments&)> read;
};

/// Every operation by its name.
const std::map<std::string, Operation>& operations();

/// A document task of type 1 that sets an attribute, made when the prim has none of that name.
/// \param step with path, attribute, type (a value type's name), value, and a time code or none
Action readEdit(const Arguments& step);

} // namespace vesk::cli::replay
