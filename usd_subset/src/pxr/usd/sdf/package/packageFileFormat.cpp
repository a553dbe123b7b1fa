#include "pxr/usd/sdf/package/packageFileFormat.h"

#include "pxr/usd/sdf/fileFormatRegistry.h"
#include "pxr/usd/sdf/wholeFile.h"

PXR_NAMESPACE_OPEN_SCOPE

Sdf_PackageFileFormat::Sdf_PackageFileFormat()
    : SdfFileFormat(TfToken("usdz"), TfToken("1.0"), TfToken("usd"), "usdz", "PK\x03\x04")
{}

bool Sdf_PackageFileFormat::IsPackage() const { return true; }

bool Sdf_PackageFileFormat::CanRead(const std::string& file) const
{
    return Sdf_ReadFileStart(file, GetFileCookie().size()) == GetFileCookie();
}

bool Sdf_PackageFileFormat::Read(SdfLayer*, const std::string& resolvedPath, bool) const
{
    return Sdf_PostReadError(resolvedPath,
                             CanRead(resolvedPath)
                                 ? "usdz packages cannot be read; unpack it and convert its layers to usda"
                                 : "it is not a zip package, though its name ends in .usdz");
}

bool Sdf_PackageFileFormat::SupportsReading() const { return false; }
bool Sdf_PackageFileFormat::SupportsWriting() const { return false; }
bool Sdf_PackageFileFormat::SupportsEditing() const { return false; }

PXR_NAMESPACE_CLOSE_SCOPE
