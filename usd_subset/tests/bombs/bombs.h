#pragma once

/// Small files that are made to exhaust who reads them: in time, in memory or in the depth of the stack.

#include "../sdf/support.h"

#include <cstddef>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace sdf_tests {

/// What a bomb does to a stage that is opened on it.
struct Outcome
{
    /// A part of the one error; empty where the stage opens.
    std::string error;
    /// How many prims the opened stage has.
    size_t prims = 0;
    /// A part of each of its warnings, and how many there are.
    std::string warning;
    size_t warnings = 1;
};

/// A bomb is written into a directory as files, of which it returns the root layer's path.
struct Bomb
{
    const char* name;
    std::function<std::string(const TemporaryDirectory&)> write;
    Outcome outcome;

    friend void PrintTo(const Bomb& bomb, std::ostream* out) { *out << bomb.name; }
};

/// A crate file and a part of the one error that reading it and all of its values gives; none where it can
/// be read.
struct CrateBomb
{
    const char* name;
    std::function<std::string()> bytes;
    std::string error;

    friend void PrintTo(const CrateBomb& bomb, std::ostream* out) { *out << bomb.name; }
};

/// \name Tables
/// Arcs that lead back, go on and on or multiply; scenes whose values do; packages; crate files.
/// @{
std::vector<Bomb> arcBombs();
std::vector<Bomb> sceneBombs();
std::vector<Bomb> packageBombs();
std::vector<CrateBomb> crateBombs();
/// @}

/// Joins what a function makes of 0 up to `count`.
std::string numbered(size_t count, const std::function<std::string(size_t)>& item);

/// A text layer of one file.
std::function<std::string(const TemporaryDirectory&)> textFile(const std::function<std::string()>& body);

} // namespace sdf_tests
