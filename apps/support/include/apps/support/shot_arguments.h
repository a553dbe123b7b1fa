#pragma once

#include <CLI/CLI.hpp>

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace vesk::apps {

/// What a picture is taken with: the camera options that several verbs share, as the user gave them.
struct CameraArguments
{
    std::array<int, 2> size{1280, 720}; ///< width and height in logical pixels, each 1 to 16384
    std::string view = "three-quarters";
    std::string camera; ///< path of a stage camera; empty: frame by `view`
    std::string projection = "perspective";
    std::vector<std::string> paths; ///< frame these prims; empty: the whole scene
    std::optional<double> time;     ///< time code; without a value the start time code where authored, else 0
    float devicePixelRatio = 1.0f;  ///< physical pixels per logical pixel, above 0
};

/// Declares the camera options on a verb.
void addCameraOptions(CLI::App& verb, CameraArguments& arguments);

/// Declares those of them that hold for many views at once: all but the direction and the camera.
/// \param sizeHelp what `--size` is the size of
void addFramingOptions(CLI::App& verb, CameraArguments& arguments, const std::string& sizeHelp);

/// Reads "X,Y" with finite decimals.
/// Throws: `UsageError`.
std::array<float, 2> parsePoint(const std::string& text);

/// Reads "WIDTHxHEIGHT".
/// Throws: `UsageError` for anything but two whole numbers from 1 to 16384.
std::array<int, 2> parseSize(const std::string& text);

/// Reads "R,G,B" or "R,G,B,A" with finite decimals; a missing A is 1.
/// Throws: `UsageError`.
std::array<float, 4> parseColor(const std::string& text);

/// The names that `--view` takes, at the index of the view direction's value.
const std::vector<std::string>& viewNames();

} // namespace vesk::apps
