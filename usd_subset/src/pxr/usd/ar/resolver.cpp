#include "pxr/usd/ar/package.h"
#include "pxr/usd/ar/pathRules.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/ar/asset.h>
#include <pxr/usd/ar/defaultResolver.h>
#include <pxr/usd/ar/filesystemAsset.h>
#include <pxr/usd/ar/packageUtils.h>
#include <pxr/usd/ar/resolver.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <unistd.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

std::vector<std::string> splitSearchPath(const std::string& text)
{
    std::vector<std::string> result;
    for (size_t begin = 0; begin <= text.size();) {
        const size_t end = std::min(text.find(':', begin), text.size());
        if (end > begin) {
            result.push_back(text.substr(begin, end - begin));
        }
        begin = end + 1;
    }
    return result;
}

std::mutex& searchPathMutex()
{
    static std::mutex mutex;
    return mutex;
}

ArDefaultResolverContext& defaultSearchPath()
{
    static ArDefaultResolverContext context = [] {
        const char* text = std::getenv("PXR_AR_DEFAULT_SEARCH_PATH");
        return ArDefaultResolverContext(splitSearchPath(text ? text : ""));
    }();
    return context;
}

std::vector<ArResolverContext>& boundContexts()
{
    thread_local std::vector<ArResolverContext> contexts;
    return contexts;
}

ArResolvedPath existing(const std::string& path)
{
    return Ar_PathExists(path) ? ArResolvedPath(Ar_AbsolutePath(path)) : ArResolvedPath();
}

ArResolvedPath searchIn(const ArDefaultResolverContext& context, const std::string& path)
{
    for (const std::string& directory : context.GetSearchPath()) {
        ArResolvedPath found = existing(directory + "/" + path);
        if (found) {
            return found;
        }
    }
    return ArResolvedPath();
}

// Resolves a path inside packages from the outermost package to the innermost file.
ArResolvedPath resolvePackaged(const ArResolvedPath& package, std::string packagedPath)
{
    std::string resolved = package;
    while (!packagedPath.empty() && !resolved.empty()) {
        const std::pair<std::string, std::string> parts = ArSplitPackageRelativePathOuter(packagedPath);
        std::string whyNot;
        const Ar_Package open = Ar_IsPackagePath(resolved) ? Ar_OpenPackage(resolved, &whyNot) : Ar_Package();
        const bool found = open.asset && Ar_FindZipEntry(*open.entries, parts.first);
        resolved = found ? ArJoinPackageRelativePath(resolved, parts.first) : std::string();
        packagedPath = parts.second;
    }
    return ArResolvedPath(resolved);
}

// Applies a rule for plain paths to the outermost package of a packaged one.
std::string onOuterPath(const std::string& path, const std::function<std::string(const std::string&)>& rule)
{
    if (!ArIsPackageRelativePath(path)) {
        return rule(path);
    }
    std::pair<std::string, std::string> parts = ArSplitPackageRelativePathOuter(path);
    parts.first = rule(parts.first);
    return ArJoinPackageRelativePath(parts);
}

} // namespace

ArResolver::~ArResolver() = default;

ArResolver& ArGetResolver()
{
    static ArResolver resolver;
    return resolver;
}

std::string ArResolver::CreateIdentifier(const std::string& assetPath,
                                         const ArResolvedPath& anchorAssetPath) const
{
    const std::string anchor = ArSplitPackageRelativePathOuter(anchorAssetPath).first;
    return onOuterPath(assetPath, [&](const std::string& path) {
        const std::string anchored = Ar_AnchorPath(anchor, path);
        const bool sought = Ar_IsRelativePath(path) && !Ar_IsFileRelativePath(path);
        // A path that may lie in a search path keeps its text, so that it is sought anew at each resolution.
        return Ar_NormalizePath(sought && Resolve(anchored).IsEmpty() ? path : anchored);
    });
}

std::string ArResolver::CreateIdentifierForNewAsset(const std::string& assetPath,
                                                    const ArResolvedPath& anchorAssetPath) const
{
    const std::string anchor = ArSplitPackageRelativePathOuter(anchorAssetPath).first;
    return onOuterPath(assetPath,
                       [&](const std::string& path) { return Ar_AbsolutePath(Ar_AnchorPath(anchor, path)); });
}

ArResolvedPath ArResolver::Resolve(const std::string& assetPath) const
{
    if (assetPath.empty()) {
        return ArResolvedPath();
    }
    if (ArIsPackageRelativePath(assetPath)) {
        const std::pair<std::string, std::string> parts = ArSplitPackageRelativePathOuter(assetPath);
        return resolvePackaged(Resolve(parts.first), parts.second);
    }
    ArResolvedPath found = existing(assetPath);
    if (found || !Ar_IsRelativePath(assetPath) || Ar_IsFileRelativePath(assetPath)) {
        return found;
    }
    const ArResolverContext context = GetCurrentContext();
    if (const auto* bound = context.Get<ArDefaultResolverContext>()) {
        found = searchIn(*bound, assetPath);
    }
    if (!found) {
        const std::lock_guard<std::mutex> lock(searchPathMutex());
        found = searchIn(defaultSearchPath(), assetPath);
    }
    return found;
}

ArResolvedPath ArResolver::ResolveForNewAsset(const std::string& assetPath) const
{
    return ArResolvedPath(onOuterPath(assetPath, &Ar_AbsolutePath));
}

void ArResolver::BindContext(const ArResolverContext& context, VtValue*)
{
    boundContexts().push_back(context);
}

void ArResolver::UnbindContext(const ArResolverContext& context, VtValue*)
{
    std::vector<ArResolverContext>& contexts = boundContexts();
    const auto it = std::find(contexts.rbegin(), contexts.rend(), context);
    if (it != contexts.rend()) {
        contexts.erase(std::next(it).base());
    }
}

ArResolverContext ArResolver::CreateDefaultContext() const
{
    return ArResolverContext(ArDefaultResolverContext());
}

ArResolverContext ArResolver::CreateDefaultContextForAsset(const std::string& assetPath) const
{
    if (assetPath.empty()) {
        return CreateDefaultContext();
    }
    const std::string path = Ar_AbsolutePath(ArSplitPackageRelativePathOuter(assetPath).first);
    return ArResolverContext(ArDefaultResolverContext({path.substr(0, path.rfind('/') + 1)}));
}

ArResolverContext ArResolver::CreateContextFromString(const std::string& contextStr) const
{
    return ArResolverContext(ArDefaultResolverContext(splitSearchPath(contextStr)));
}

ArResolverContext ArResolver::GetCurrentContext() const
{
    const std::vector<ArResolverContext>& contexts = boundContexts();
    return contexts.empty() ? ArResolverContext() : contexts.back();
}

bool ArResolver::IsContextDependentPath(const std::string& assetPath) const
{
    const std::string path = ArSplitPackageRelativePathOuter(assetPath).first;
    return Ar_IsRelativePath(path) && !Ar_IsFileRelativePath(path);
}

std::string ArResolver::GetExtension(const std::string& assetPath) const
{
    std::string path = assetPath;
    if (ArIsPackageRelativePath(path)) {
        path = ArSplitPackageRelativePathInner(path).second;
    }
    const size_t name = path.rfind('/') + 1;
    const size_t dot = path.rfind('.');
    return dot == std::string::npos || dot < name || dot + 1 == path.size() ? std::string()
                                                                            : path.substr(dot + 1);
}

ArAssetInfo ArResolver::GetAssetInfo(const std::string&, const ArResolvedPath&) const
{
    return ArAssetInfo();
}

ArTimestamp ArResolver::GetModificationTimestamp(const std::string&, const ArResolvedPath& resolvedPath) const
{
    return ArFilesystemAsset::GetModificationTimestamp(
        ArResolvedPath(ArSplitPackageRelativePathOuter(resolvedPath).first));
}

std::shared_ptr<ArAsset> ArResolver::OpenAsset(const ArResolvedPath& resolvedPath) const
{
    std::string whyNot;
    std::shared_ptr<ArAsset> asset = Ar_OpenAsset(resolvedPath, &whyNot);
    if (!asset && ArIsPackageRelativePath(resolvedPath) && !Resolve(resolvedPath).IsEmpty()) {
        // It is there, so the caller would not guess why it cannot be opened.
        TF_RUNTIME_ERROR("Cannot open @%s@: %s", resolvedPath.GetPathString().c_str(), whyNot.c_str());
    }
    return asset;
}

bool ArResolver::CanWriteAssetToPath(const ArResolvedPath& resolvedPath, std::string* whyNot) const
{
    const std::string& path = resolvedPath.GetPathString();
    if (ArIsPackageRelativePath(path)) {
        if (whyNot) {
            *whyNot = "Files inside packages are not written";
        }
        return false;
    }
    const std::string directory = path.substr(0, path.rfind('/') + 1);
    const bool exists = Ar_PathExists(path);
    const bool writable = access(exists ? path.c_str() : directory.c_str(), W_OK) == 0;
    if (!writable && whyNot) {
        *whyNot = exists ? "The file is not writable" : "The directory does not exist or is not writable";
    }
    return writable;
}

void ArDefaultResolver::SetDefaultSearchPath(const std::vector<std::string>& searchPath)
{
    const std::lock_guard<std::mutex> lock(searchPathMutex());
    defaultSearchPath() = ArDefaultResolverContext(searchPath);
}

PXR_NAMESPACE_CLOSE_SCOPE
