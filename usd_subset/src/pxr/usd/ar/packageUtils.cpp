#include <pxr/usd/ar/packageUtils.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

bool isEscaped(const std::string& text, size_t pos)
{
    size_t slashes = 0;
    while (slashes < pos && text[pos - 1 - slashes] == '\\') {
        ++slashes;
    }
    return slashes % 2 == 1;
}

// Returns where the bracket that the final `]` closes was opened, or npos.
size_t findOutermost(const std::string& path)
{
    for (size_t i = 0; i < path.size(); ++i) {
        if (path[i] == '[' && !isEscaped(path, i)) {
            return i;
        }
    }
    return std::string::npos;
}

size_t findInnermost(const std::string& path)
{
    for (size_t i = path.size(); i-- > 0;) {
        if (path[i] == '[' && !isEscaped(path, i)) {
            return i;
        }
    }
    return std::string::npos;
}

std::string escape(const std::string& text)
{
    std::string result;
    for (char c : text) {
        if (c == '[' || c == ']') {
            result += '\\';
        }
        result += c;
    }
    return result;
}

std::string unescape(const std::string& text)
{
    std::string result;
    for (size_t i = 0; i < text.size(); ++i) {
        const bool bracket = i + 1 < text.size() && (text[i + 1] == '[' || text[i + 1] == ']');
        if (text[i] != '\\' || !bracket) {
            result += text[i];
        }
    }
    return result;
}

} // namespace

bool ArIsPackageRelativePath(const std::string& path)
{
    if (path.empty() || path.back() != ']' || isEscaped(path, path.size() - 1)) {
        return false;
    }
    const size_t open = findOutermost(path);
    return open != std::string::npos && open > 0;
}

std::string ArJoinPackageRelativePath(const std::string& packagePath, const std::string& packagedPath)
{
    if (packagePath.empty() || packagedPath.empty()) {
        return packagePath.empty() ? packagedPath : packagePath;
    }
    const std::string inner = ArIsPackageRelativePath(packagedPath) ? packagedPath : escape(packagedPath);
    if (!ArIsPackageRelativePath(packagePath)) {
        return packagePath + '[' + inner + ']';
    }
    // The new path goes inside the innermost brackets.
    const size_t closing = packagePath.find_last_not_of(']') + 1;
    return packagePath.substr(0, closing) + '[' + inner + ']' + packagePath.substr(closing);
}

std::string ArJoinPackageRelativePath(const std::pair<std::string, std::string>& paths)
{
    return ArJoinPackageRelativePath(paths.first, paths.second);
}

std::string ArJoinPackageRelativePath(const std::vector<std::string>& paths)
{
    std::string result;
    for (const std::string& path : paths) {
        result = ArJoinPackageRelativePath(result, path);
    }
    return result;
}

std::pair<std::string, std::string> ArSplitPackageRelativePathOuter(const std::string& path)
{
    if (!ArIsPackageRelativePath(path)) {
        return {path, std::string()};
    }
    const size_t open = findOutermost(path);
    const std::string inner = path.substr(open + 1, path.size() - open - 2);
    return {path.substr(0, open), ArIsPackageRelativePath(inner) ? inner : unescape(inner)};
}

std::pair<std::string, std::string> ArSplitPackageRelativePathInner(const std::string& path)
{
    if (!ArIsPackageRelativePath(path)) {
        return {path, std::string()};
    }
    const size_t open = findInnermost(path);
    size_t close = open + 1;
    while (close < path.size() && (path[close] != ']' || isEscaped(path, close))) {
        ++close;
    }
    return {path.substr(0, open) + path.substr(close + 1), unescape(path.substr(open + 1, close - open - 1))};
}

PXR_NAMESPACE_CLOSE_SCOPE
