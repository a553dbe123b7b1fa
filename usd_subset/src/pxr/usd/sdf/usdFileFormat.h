#pragma once

/// Layers whose extension does not tell their format.

#include <pxr/pxr.h>
#include <pxr/usd/sdf/fileFormat.h>

PXR_NAMESPACE_OPEN_SCOPE

/// The format of `.usd` files, which are text or crate. A file is read by its content and saved as it was. A
/// new one is crate, or what the argument `format` says: `usda` or `usdc`.
class Sdf_UsdFileFormat : public SdfFileFormat
{
public:
    Sdf_UsdFileFormat();

    SdfAbstractDataRefPtr InitData(const FileFormatArguments& args) const override;
    bool CanRead(const std::string& file) const override;
    bool Read(SdfLayer* layer, const std::string& resolvedPath, bool metadataOnly) const override;
    bool WriteToFile(const SdfLayer& layer, const std::string& filePath, const std::string& comment,
                     const FileFormatArguments& args) const override;
    bool SaveToFile(const SdfLayer& layer, const std::string& filePath, const std::string& comment,
                    const FileFormatArguments& args) const override;
    bool ReadFromString(SdfLayer* layer, const std::string& str) const override;

    /// Returns the format of a layer's content: `usda` or `usdc`.
    static SdfFileFormatConstPtr GetUnderlyingFormat(const SdfLayer& layer);
};

PXR_NAMESPACE_CLOSE_SCOPE
