#include "pxr/usd/sdf/crate/crateFileFormat.h"

#include "pxr/usd/sdf/fileFormatRegistry.h"
#include "pxr/usd/sdf/wholeFile.h"

PXR_NAMESPACE_OPEN_SCOPE

Sdf_CrateFileFormat::Sdf_CrateFileFormat()
    : SdfFileFormat(TfToken("usdc"), TfToken("0.8.0"), TfToken("usd"), "usdc", "PXR-USDC")
{}

bool Sdf_CrateFileFormat::CanRead(const std::string& file) const
{
    return Sdf_ReadFileStart(file, GetFileCookie().size()) == GetFileCookie();
}

bool Sdf_CrateFileFormat::Read(SdfLayer*, const std::string& resolvedPath, bool) const
{
    return Sdf_PostReadError(
        resolvedPath,
        CanRead(resolvedPath)
            ? "binary crate files cannot be read; convert it to usda, as by `usdcat -o FILE.usda`"
            : "it is not a crate file, though its name ends in .usdc");
}

bool Sdf_CrateFileFormat::SupportsReading() const { return false; }
bool Sdf_CrateFileFormat::SupportsWriting() const { return false; }
bool Sdf_CrateFileFormat::SupportsEditing() const { return false; }

PXR_NAMESPACE_CLOSE_SCOPE
