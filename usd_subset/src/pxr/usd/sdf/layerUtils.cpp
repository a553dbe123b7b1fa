#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/ar/packageUtils.h>
#include <pxr/usd/ar/resolver.h>
#include <pxr/usd/sdf/fileFormat.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/layerUtils.h>

#include <filesystem>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

std::string anchorInside(const std::string& packaged, const std::string& assetPath)
{
    const std::string directory = packaged.substr(0, packaged.rfind('/') + 1);
    return std::filesystem::path(directory + assetPath).lexically_normal().string();
}

// A package whose root layer is a package again: goes down to the innermost one.
std::pair<std::string, std::string> rootOf(std::string package)
{
    std::string first;
    SdfFileFormatConstPtr format = SdfFileFormat::FindByExtension(package);
    while (format && format->IsPackage()) {
        if (!first.empty()) {
            package = ArJoinPackageRelativePath(package, first);
        }
        first = format->GetPackageRootLayerPath(package);
        format = SdfFileFormat::FindByExtension(first);
    }
    return {package, first};
}

bool exists(const std::string& path) { return !ArGetResolver().Resolve(path).IsEmpty(); }

// The path inside the package of the anchor, or an empty one where the anchor is in none or nothing is there.
// What could lie in a search path is sought beside the anchor, then beside the package's root layer.
std::string packagedPath(const SdfLayerHandle& anchor, const std::string& assetPath)
{
    const std::string& real = anchor->GetRealPath();
    const std::pair<std::string, std::string> parts =
        anchor->GetFileFormat()->IsPackage() ? rootOf(real) : ArSplitPackageRelativePathInner(real);
    if (parts.second.empty() || assetPath.front() == '/') {
        return std::string();
    }
    std::string anchored = ArJoinPackageRelativePath(parts.first, anchorInside(parts.second, assetPath));
    if (assetPath.front() == '.' || exists(anchored)) {
        return anchored;
    }
    const std::pair<std::string, std::string> root = rootOf(parts.first);
    anchored = ArJoinPackageRelativePath(root.first, anchorInside(root.second, assetPath));
    return exists(anchored) ? anchored : std::string();
}

} // namespace

std::string SdfComputeAssetPathRelativeToLayer(const SdfLayerHandle& anchor, const std::string& assetPath)
{
    if (!anchor) {
        TF_CODING_ERROR("Invalid anchor layer");
        return std::string();
    }
    if (assetPath.empty()) {
        TF_CODING_ERROR("Layer path is empty");
        return std::string();
    }
    if (SdfLayer::IsAnonymousLayerIdentifier(assetPath)) {
        return assetPath;
    }
    const std::string packaged = packagedPath(anchor, assetPath);
    if (!packaged.empty()) {
        return packaged;
    }
    if (anchor->IsAnonymous()) {
        return ArGetResolver().CreateIdentifier(assetPath);
    }
    return ArGetResolver().CreateIdentifier(assetPath, anchor->GetResolvedPath());
}

ArResolvedPath SdfResolveAssetPathRelativeToLayer(const SdfLayerHandle& anchor, const std::string& assetPath)
{
    const std::string identifier = SdfComputeAssetPathRelativeToLayer(anchor, assetPath);
    if (identifier.empty() || SdfLayer::IsAnonymousLayerIdentifier(identifier)) {
        return ArResolvedPath(identifier);
    }
    return ArGetResolver().Resolve(identifier);
}

PXR_NAMESPACE_CLOSE_SCOPE
