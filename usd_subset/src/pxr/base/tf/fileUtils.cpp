#include <pxr/base/tf/fileUtils.h>

#include <pxr/base/tf/diagnostic.h>

#include <filesystem>

#include <unistd.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

namespace fs = std::filesystem;

fs::file_status StatusOf(const std::string& path, bool resolveSymlinks)
{
    std::error_code ignored;
    return resolveSymlinks ? fs::status(path, ignored) : fs::symlink_status(path, ignored);
}

} // namespace

bool TfPathExists(const std::string& path, bool resolveSymlinks)
{
    return fs::exists(StatusOf(path, resolveSymlinks));
}

bool TfIsDir(const std::string& path, bool resolveSymlinks)
{
    return fs::is_directory(StatusOf(path, resolveSymlinks));
}

bool TfIsFile(const std::string& path, bool resolveSymlinks)
{
    return fs::is_regular_file(StatusOf(path, resolveSymlinks));
}

bool TfIsWritable(const std::string& path) { return ::access(path.c_str(), W_OK) == 0; }

bool TfDeleteFile(const std::string& path)
{
    std::error_code error;
    if (!TfPathExists(path) || !fs::remove(path, error)) {
        TF_RUNTIME_ERROR("Failed to delete '%s': %s", path.c_str(),
                         error ? error.message().c_str() : "no such file");
        return false;
    }
    return true;
}

bool TfMakeDirs(const std::string& path, int mode, bool existOk)
{
    if (TfIsDir(path, true)) {
        return existOk;
    }
    std::error_code error;
    fs::create_directories(path, error);
    if (!error && mode >= 0) {
        fs::permissions(path, static_cast<fs::perms>(mode), error);
    }
    return !error;
}

PXR_NAMESPACE_CLOSE_SCOPE
