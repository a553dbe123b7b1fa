#include "pxr/usd/sdf/package/packageFileFormat.h"

#include "pxr/usd/ar/package.h"
#include "pxr/usd/sdf/fileFormatRegistry.h"

#include <pxr/usd/ar/packageUtils.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// The name of the first file; empty, with the reason, where there is none.
std::string firstFile(const std::string& packagePath, std::string* whyNot)
{
    const Ar_Package package = Ar_OpenPackage(packagePath, whyNot);
    if (!package.asset) {
        return std::string();
    }
    if (package.entries->empty() || package.entries->front().name.empty()) {
        *whyNot = "the package holds no file; the first one is the layer";
        return std::string();
    }
    return package.entries->front().name;
}

} // namespace

Sdf_PackageFileFormat::Sdf_PackageFileFormat()
    : SdfFileFormat(TfToken("usdz"), TfToken("1.0"), TfToken("usd"), "usdz", "PK\x03\x04")
{}

bool Sdf_PackageFileFormat::IsPackage() const { return true; }

std::string Sdf_PackageFileFormat::GetPackageRootLayerPath(const std::string& resolvedPath) const
{
    std::string whyNot;
    return firstFile(resolvedPath, &whyNot);
}

bool Sdf_PackageFileFormat::CanRead(const std::string& file) const
{
    const std::string first = GetPackageRootLayerPath(file);
    const SdfFileFormatConstPtr format = SdfFileFormat::FindByExtension(first);
    return format && format->CanRead(ArJoinPackageRelativePath(file, first));
}

bool Sdf_PackageFileFormat::Read(SdfLayer* layer, const std::string& resolvedPath, bool metadataOnly) const
{
    std::string whyNot;
    const std::string first = firstFile(resolvedPath, &whyNot);
    if (first.empty()) {
        return Sdf_PostReadError(resolvedPath, whyNot);
    }
    const SdfFileFormatConstPtr format = SdfFileFormat::FindByExtension(first);
    if (!format) {
        return Sdf_PostReadError(resolvedPath, "its first file \"" + first + "\" is no layer");
    }
    return format->Read(layer, ArJoinPackageRelativePath(resolvedPath, first), metadataOnly);
}

bool Sdf_PackageFileFormat::SupportsWriting() const { return false; }
bool Sdf_PackageFileFormat::SupportsEditing() const { return false; }

PXR_NAMESPACE_CLOSE_SCOPE
