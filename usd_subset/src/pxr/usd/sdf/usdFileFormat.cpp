#include "pxr/usd/sdf/usdFileFormat.h"

#include "pxr/usd/sdf/crate/crateData.h"
#include "pxr/usd/sdf/fileFormatRegistry.h"
#include "pxr/usd/sdf/wholeFile.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/getenv.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

SdfFileFormatConstPtr text() { return SdfFileFormat::FindById(TfToken("usda")); }

SdfFileFormatConstPtr crate() { return SdfFileFormat::FindById(TfToken("usdc")); }

SdfFileFormatConstPtr defaultFormat()
{
    static const bool isText = TfGetenv("USD_DEFAULT_FILE_FORMAT") == "usda";
    return isText ? text() : crate();
}

SdfFileFormatConstPtr formatOf(const SdfFileFormat::FileFormatArguments& args)
{
    const auto format = args.find("format");
    if (format == args.end()) {
        return defaultFormat();
    }
    if (format->second != "usda" && format->second != "usdc") {
        TF_CODING_ERROR("'format' argument was '%s', must be 'usda' or 'usdc'. Defaulting to '%s'.",
                        format->second.c_str(), defaultFormat()->GetFormatId().GetText());
        return defaultFormat();
    }
    return format->second == "usda" ? text() : crate();
}

} // namespace

Sdf_UsdFileFormat::Sdf_UsdFileFormat() : SdfFileFormat(TfToken("usd"), TfToken("1.0"), TfToken("usd"), "usd")
{}

SdfFileFormatConstPtr Sdf_UsdFileFormat::GetUnderlyingFormat(const SdfLayer& layer)
{
    return dynamic_cast<const Sdf_CrateData*>(get_pointer(_GetLayerData(layer))) ? crate() : text();
}

SdfAbstractDataRefPtr Sdf_UsdFileFormat::InitData(const FileFormatArguments& args) const
{
    return formatOf(args)->InitData(args);
}

bool Sdf_UsdFileFormat::CanRead(const std::string& file) const
{
    const SdfFileFormatConstPtr format = Sdf_FindFormatByContent(Sdf_ReadFileStart(file, 8));
    return format && !format->IsPackage();
}

bool Sdf_UsdFileFormat::Read(SdfLayer* layer, const std::string& resolvedPath, bool metadataOnly) const
{
    const SdfFileFormatConstPtr format = Sdf_FindFormatByContent(Sdf_ReadFileStart(resolvedPath, 8));
    return (format && !format->IsPackage() ? format : text())->Read(layer, resolvedPath, metadataOnly);
}

bool Sdf_UsdFileFormat::WriteToFile(const SdfLayer& layer, const std::string& filePath,
                                    const std::string& comment, const FileFormatArguments& args) const
{
    return formatOf(args)->WriteToFile(layer, filePath, comment, args);
}

bool Sdf_UsdFileFormat::SaveToFile(const SdfLayer& layer, const std::string& filePath,
                                   const std::string& comment, const FileFormatArguments& args) const
{
    return GetUnderlyingFormat(layer)->SaveToFile(layer, filePath, comment, args);
}

bool Sdf_UsdFileFormat::ReadFromString(SdfLayer* layer, const std::string& str) const
{
    return text()->ReadFromString(layer, str);
}

PXR_NAMESPACE_CLOSE_SCOPE
