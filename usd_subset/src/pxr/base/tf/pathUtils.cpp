#include <pxr/base/tf/pathUtils.h>
#include <pxr/base/tf/stringUtils.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

std::string RealPath(const std::string& path, std::string* error)
{
    const std::unique_ptr<char, void (*)(void*)> resolved(::realpath(path.c_str(), nullptr), std::free);
    if (!resolved) {
        *error = std::strerror(errno);
        return std::string();
    }
    return resolved.get();
}

/// Returns the length of the longest part of the path, cut at slashes, that exists.
size_t AccessiblePrefix(const std::string& path)
{
    std::error_code ignored;
    size_t length = path.size();
    while (length > 0 && !std::filesystem::exists(path.substr(0, length), ignored)) {
        const size_t slash = path.find_last_of('/', length - 1);
        length = slash == std::string::npos ? 0 : slash;
    }
    return length;
}

} // namespace

std::string TfNormPath(const std::string& path, bool)
{
    // One or two leading slashes stay, more become one, as POSIX says.
    const size_t slashes = std::min(path.find_first_not_of('/'), path.size());
    const std::string root(slashes > 2 ? 1 : slashes, '/');
    std::vector<std::string> parts;
    for (std::string& part : TfStringTokenize(path, "/")) {
        if (part == ".") {
            continue;
        }
        if (part != "..") {
            parts.push_back(std::move(part));
        } else if (!parts.empty() && parts.back() != "..") {
            parts.pop_back();
        } else if (root.empty()) {
            parts.push_back(std::move(part));
        }
    }
    const std::string normal = root + TfStringJoin(parts, "/");
    return normal.empty() ? "." : normal;
}

std::string TfAbsPath(const std::string& path)
{
    if (path.empty() || path[0] == '/') {
        return path.empty() ? path : TfNormPath(path);
    }
    std::error_code error;
    const std::filesystem::path current = std::filesystem::current_path(error);
    return error ? path : TfNormPath(current.string() + "/" + path);
}

std::string TfRealPath(const std::string& path, bool allowInaccessibleSuffix, std::string* error)
{
    std::string local;
    std::string* const said = error ? error : &local;
    said->clear();
    if (path.empty()) {
        return path;
    }
    const size_t split = allowInaccessibleSuffix ? AccessiblePrefix(path) : path.size();
    if (split == 0) {
        return TfAbsPath(path);
    }
    const std::string resolved = RealPath(path.substr(0, split), said);
    return resolved.empty() ? resolved : TfAbsPath(resolved + path.substr(split));
}

std::string TfGetExtension(const std::string& path)
{
    const std::string name = TfGetBaseName(path);
    return TfStringGetBeforeSuffix(name).empty() ? std::string() : TfStringGetSuffix(name);
}

bool TfIsRelativePath(const std::string& path) { return path.empty() || path[0] != '/'; }

PXR_NAMESPACE_CLOSE_SCOPE
