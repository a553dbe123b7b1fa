#pragma once

#include <apps/support/json.h>
#include <apps/support/outputs.h>
#include <apps/support/viewport_session.h>

#include <CLI/CLI.hpp>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace vesk::cli {

/// What pictures are taken with: the options that `shot`, `turntable` and `sheet` share.
struct PictureArguments
{
    std::string scene;
    apps::ViewportArguments viewport;
    std::vector<std::string> aovs;
    int samples = 0;
    std::optional<PXR_NS::GfVec4f> background;
    std::string drawMode;
    bool transparent = false;
    bool json = false;
};

/// Declares the scene, the camera options and how pictures are drawn.
void addSceneArgument(CLI::App& verb, std::string& scene);
void addPictureOptions(CLI::App& verb, PictureArguments& arguments);
void addAovOption(CLI::App& verb, PictureArguments& arguments);

/// Declares `--json` for verbs that print files, camera and timings.
void addPictureJson(CLI::App& verb, PictureArguments& arguments);

/// Applies the draw mode and the camera options.
void preparePictures(apps::ViewportSession& viewport, const PictureArguments& arguments);

/// Writes all outputs of one picture: they come from one frame.
void takePicture(apps::ViewportSession& viewport, const PictureArguments& arguments,
                 const std::vector<apps::Output>& outputs);

/// How long the parts of a job took, in seconds.
class Timings
{
public:
    /// Ends a part that began with the object or with the part before.
    void end(const char* part);
    const apps::Json& json() const { return m_json; }

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    apps::Json m_json = apps::Json::object();
};

/// Prints the files line by line, or files, camera and timings as JSON.
void printPictures(std::ostream& out, const PictureArguments& arguments,
                   const std::vector<apps::Output>& outputs, const PXR_NS::GfCamera& camera,
                   const Timings& timings);

} // namespace vesk::cli
