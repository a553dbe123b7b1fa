#include "stage_writer.h"

#include <unistd.h>

#include <filesystem>
#include <system_error>
#include <vector>

#include <pxr/usd/sdf/fileFormat.h>
#include <pxr/usd/sdf/layer.h>

#include <vesk/framework/usd_document/document_error.h>

#include "stage_errors.h"

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::framework::usd_document {

namespace {

[[noreturn]] void failToSave(DocumentError error, const std::string& path, const std::string& why)
{
    throw DocumentException(error, "Cannot save '" + onOneLine(path) + "': " + why);
}

std::string reason(const std::vector<std::string>& errors)
{
    return errors.empty() ? "it cannot be written; check its folder and permissions." : errors.front();
}

/// Removes the file that is written aside, unless it has got its name.
class FileAside
{
public:
    explicit FileAside(const std::filesystem::path& target)
        : m_path(target.parent_path() / ("." + target.stem().string() + "." + std::to_string(getpid()) +
                                         target.extension().string()))
    {}
    ~FileAside()
    {
        std::error_code ignored;
        std::filesystem::remove(m_path, ignored);
    }
    const std::filesystem::path& path() const { return m_path; }

private:
    const std::filesystem::path m_path;
};

} // namespace

void saveStage(const UsdStageRefPtr& stage)
{
    if (stage->GetRootLayer()->IsAnonymous())
        failToSave(DocumentError::FileNotWritable, stage->GetRootLayer()->GetIdentifier(),
                   "the scene has no file yet; save it under a name first.");
    std::string failed;
    std::vector<std::string> why;
    for (const SdfLayerHandle& layer : stage->GetUsedLayers()) {
        if (!layer->IsDirty() || layer->IsAnonymous()) continue;
        bool saved = false;
        const std::vector<std::string> errors = collectStageErrors([&] { saved = layer->Save(); });
        if (saved || !failed.empty()) continue;
        failed = layer->GetIdentifier();
        why = errors;
    }
    if (!failed.empty()) failToSave(DocumentError::FileNotWritable, failed, reason(why));
}

void writeRootLayer(const UsdStageRefPtr& stage, const std::string& path)
{
    namespace fs = std::filesystem;
    if (path.empty() || path.find('\0') != std::string::npos)
        failToSave(DocumentError::FileNotWritable, path,
                   "this is no file name; name a .usda, .usdc or .usd file.");
    if (!SdfFileFormat::FormatSupportsWriting(SdfFileFormat::GetFileExtension(path)))
        failToSave(DocumentError::UnknownFormat, path,
                   "scenes are not written in this format; use a .usda, .usdc or .usd file.");
    const fs::path target(path);
    std::error_code error;
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    if (!fs::is_directory(folder, error))
        failToSave(DocumentError::FileNotWritable, path,
                   "the folder '" + folder.string() + "' does not exist; create it first.");
    if (fs::is_directory(target, error))
        failToSave(DocumentError::FileNotWritable, path, "it is a directory; name a file inside it.");

    const FileAside aside(target);
    bool written = false;
    const std::vector<std::string> errors =
        collectStageErrors([&] { written = stage->GetRootLayer()->Export(aside.path().string()); });
    if (!written) failToSave(DocumentError::FileNotWritable, path, reason(errors));
    fs::rename(aside.path(), target, error);
    if (error) failToSave(DocumentError::FileNotWritable, path, error.message() + ".");
}

} // namespace vesk::framework::usd_document
