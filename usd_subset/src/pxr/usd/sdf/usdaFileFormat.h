#pragma once

/// Layers as text.

#include <pxr/pxr.h>
#include <pxr/usd/sdf/fileFormat.h>

PXR_NAMESPACE_OPEN_SCOPE

/// The format of `.usda` files.
class Sdf_UsdaFileFormat : public SdfFileFormat
{
public:
    Sdf_UsdaFileFormat();

    bool CanRead(const std::string& file) const override;
    bool Read(SdfLayer* layer, const std::string& resolvedPath, bool metadataOnly) const override;
    bool WriteToFile(const SdfLayer& layer, const std::string& filePath, const std::string& comment,
                     const FileFormatArguments& args) const override;
    bool ReadFromString(SdfLayer* layer, const std::string& str) const override;
    bool WriteToString(const SdfLayer& layer, std::string* str, const std::string& comment) const override;
    bool WriteToStream(const SdfSpecHandle& spec, std::ostream& out, size_t indent) const override;

private:
    bool _Parse(SdfLayer* layer, const std::string& name, const std::string& text, bool metadataOnly) const;
};

PXR_NAMESPACE_CLOSE_SCOPE
