#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace vesk::apps {

/// One file that a picture is written to.
struct Output
{
    std::string aov; ///< the render output, by its Hydra name
    std::filesystem::path file;
};

/// The outputs that `--aov` takes.
const std::vector<std::string>& aovNames();

/// Says which file each output is written to: `file` itself for one output, stem.AOV.ext for several. A float
/// output needs an .exr file, colour may be .png or .exr; for several outputs the extension follows the
/// output. Throws: `UsageError` for an extension that the output cannot be written to.
std::vector<Output> planOutputs(const std::filesystem::path& file, const std::vector<std::string>& aovs);

/// Checks before any work is done that a file can be written.
/// Throws: `JobError` when its folder is missing or cannot be written, or when it is a folder itself.
void requireWritable(const std::filesystem::path& file);

} // namespace vesk::apps
