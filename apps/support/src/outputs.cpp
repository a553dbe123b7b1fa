#include <apps/support/outputs.h>

#include <apps/support/errors.h>

#include <system_error>
#include <unistd.h>

namespace vesk::apps {
namespace {

constexpr const char* kColor = "color";

std::string extensionOf(const std::filesystem::path& file)
{
    std::string extension = file.extension().string();
    for (char& c : extension)
        c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    return extension;
}

void requireExtension(const std::filesystem::path& file, const std::string& aov)
{
    const std::string extension = extensionOf(file);
    if (extension == ".exr" || (aov == kColor && extension == ".png")) return;
    if (aov == kColor) throw UsageError("'" + file.string() + "' must end in .png or .exr");
    throw UsageError("'" + file.string() + "' must end in .exr: the output '" + aov + "' holds decimals");
}

} // namespace

const std::vector<std::string>& aovNames()
{
    static const std::vector<std::string> names{kColor, "depth",  "linearDepth", "normal",
                                                "Neye", "primId", "instanceId",  "elementId"};
    return names;
}

std::vector<Output> planOutputs(const std::filesystem::path& file, const std::vector<std::string>& aovs)
{
    if (aovs.size() <= 1) {
        const std::string aov = aovs.empty() ? kColor : aovs.front();
        requireExtension(file, aov);
        return {{aov, file}};
    }
    requireExtension(file, kColor);
    std::vector<Output> outputs;
    for (const std::string& aov : aovs) {
        const std::string extension = aov == kColor ? file.extension().string() : ".exr";
        outputs.push_back({aov, file.parent_path() / (file.stem().string() + "." + aov + extension)});
    }
    return outputs;
}

void requireWritable(const std::filesystem::path& file)
{
    std::error_code error;
    const std::filesystem::path folder = file.has_parent_path() ? file.parent_path() : ".";
    if (!std::filesystem::is_directory(folder, error)) {
        throw JobError("cannot write '" + file.string() + "': the folder '" + folder.string() +
                       "' does not exist; create it first");
    }
    if (std::filesystem::is_directory(file, error)) {
        throw JobError("cannot write '" + file.string() + "': it is a folder; name a file in it");
    }
    if (::access(folder.c_str(), W_OK) != 0) {
        throw JobError("cannot write '" + file.string() + "': the folder '" + folder.string() +
                       "' does not let this user write");
    }
}

} // namespace vesk::apps
