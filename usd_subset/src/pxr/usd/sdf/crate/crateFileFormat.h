#pragma once

/// Layers in the binary crate format.

#include <pxr/pxr.h>
#include <pxr/usd/sdf/fileFormat.h>

#include <memory>

PXR_NAMESPACE_OPEN_SCOPE

class ArAsset;
struct Sdf_CrateLimits;

/// The format of `.usdc` files.
class Sdf_CrateFileFormat : public SdfFileFormat
{
public:
    Sdf_CrateFileFormat();

    SdfAbstractDataRefPtr InitData(const FileFormatArguments& args) const override;
    bool CanRead(const std::string& file) const override;
    bool Read(SdfLayer* layer, const std::string& resolvedPath, bool metadataOnly) const override;
    bool WriteToFile(const SdfLayer& layer, const std::string& filePath, const std::string& comment,
                     const FileFormatArguments& args) const override;
    bool ReadFromString(SdfLayer* layer, const std::string& str) const override;
};

/// Reads a crate file from an asset, with bounds on what it may cost. On an error it returns null and says
/// what is wrong, at which byte. Thread: any. Throws nothing.
SDF_API SdfAbstractDataRefPtr Sdf_ReadCrate(const std::string& name, const std::shared_ptr<ArAsset>& asset,
                                            const Sdf_CrateLimits& limits, std::string* error);

PXR_NAMESPACE_CLOSE_SCOPE
