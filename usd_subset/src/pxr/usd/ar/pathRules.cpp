#include "pxr/usd/ar/pathRules.h"

#include <sys/stat.h>

#include <filesystem>
#include <system_error>

PXR_NAMESPACE_OPEN_SCOPE

std::string Ar_NormalizePath(const std::string& path)
{
    if (path.empty()) {
        return path;
    }
    std::string normal = std::filesystem::path(path).lexically_normal().string();
    while (normal.size() > 1 && normal.back() == '/') {
        normal.pop_back();
    }
    return normal;
}

std::string Ar_AbsolutePath(const std::string& path)
{
    if (path.empty() || !Ar_IsRelativePath(path)) {
        return Ar_NormalizePath(path);
    }
    std::error_code error;
    const std::filesystem::path here = std::filesystem::current_path(error);
    return Ar_NormalizePath((here / path).string());
}

bool Ar_IsRelativePath(const std::string& path) { return !path.empty() && path.front() != '/'; }

bool Ar_IsFileRelativePath(const std::string& path)
{
    return path.compare(0, 2, "./") == 0 || path.compare(0, 3, "../") == 0;
}

std::string Ar_AnchorPath(const std::string& anchor, const std::string& path)
{
    if (anchor.empty() || Ar_IsRelativePath(anchor) || !Ar_IsRelativePath(path)) {
        return path;
    }
    return Ar_NormalizePath(anchor.substr(0, anchor.rfind('/') + 1) + path);
}

bool Ar_PathExists(const std::string& path)
{
    struct stat status;
    return !path.empty() && path.find('\0') == std::string::npos && stat(path.c_str(), &status) == 0;
}

PXR_NAMESPACE_CLOSE_SCOPE
