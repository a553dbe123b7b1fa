#pragma once

/// What the fuzzers call with bytes that nobody vouches for, and what the test suite calls with the kept
/// inputs.

#include <string_view>
#include <vector>

namespace vesk::fuzz {

/// A reader under test. It returns for any bytes; what a reader must never do ends the process with a line on
/// stderr.
struct Target
{
    const char* name;
    void (*run)(std::string_view bytes);
};

/// Reads a text layer: one error or a layer, and a layer is written as text that reads as the same layer.
void readTextLayer(std::string_view bytes);
/// Reads a text layer from a file: one error or a layer.
void readTextFile(std::string_view bytes);
/// Parses a path: its text gives the same path, and its parents end at the root.
void readPathText(std::string_view bytes);
/// Parses a variable expression and evaluates it: a value, or reasons why there is none.
void evaluateExpression(std::string_view bytes);
/// Reads a crate file: one error or a layer, all of whose fields can be had.
void readCrateFile(std::string_view bytes);
/// Reads a package: one error or a layer, all of whose fields can be had.
void readPackage(std::string_view bytes);
/// Composes a stage of a text layer, reads every value and computes bounds.
void openTextStage(std::string_view bytes);

/// Returns all targets; each has a folder of its name in corpus/.
const std::vector<Target>& targets();

} // namespace vesk::fuzz
