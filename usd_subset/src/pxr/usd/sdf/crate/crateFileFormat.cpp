#include "pxr/usd/sdf/crate/crateFileFormat.h"

#include "pxr/usd/ar/package.h"
#include "pxr/usd/sdf/crate/crateData.h"
#include "pxr/usd/sdf/crate/crateWriter.h"
#include "pxr/usd/sdf/fileFormatRegistry.h"
#include "pxr/usd/sdf/wholeFile.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/ar/asset.h>

PXR_NAMESPACE_OPEN_SCOPE

SdfAbstractDataRefPtr Sdf_ReadCrate(const std::string& name, const std::shared_ptr<ArAsset>& asset,
                                    const Sdf_CrateLimits& limits, std::string* error)
{
    const Sdf_CrateDataRefPtr data = TfCreateRefPtr(new Sdf_CrateData);
    return data->Open(name, asset, limits, error) ? SdfAbstractDataRefPtr(data) : SdfAbstractDataRefPtr();
}

Sdf_CrateFileFormat::Sdf_CrateFileFormat()
    : SdfFileFormat(TfToken("usdc"), TfToken("0.12.0"), TfToken("usd"), "usdc", kSdf_CrateMagic)
{}

SdfAbstractDataRefPtr Sdf_CrateFileFormat::InitData(const FileFormatArguments&) const
{
    const Sdf_CrateDataRefPtr data = TfCreateRefPtr(new Sdf_CrateData);
    data->CreateSpec(SdfPath::AbsoluteRootPath(), SdfSpecTypePseudoRoot);
    return data;
}

bool Sdf_CrateFileFormat::CanRead(const std::string& file) const
{
    return Sdf_ReadFileStart(file, GetFileCookie().size()) == GetFileCookie();
}

bool Sdf_CrateFileFormat::Read(SdfLayer* layer, const std::string& resolvedPath, bool) const
{
    std::string error;
    const std::shared_ptr<ArAsset> asset = Ar_OpenAsset(resolvedPath, &error);
    if (!asset) {
        return Sdf_PostReadError(resolvedPath, error);
    }
    SdfAbstractDataRefPtr data = Sdf_ReadCrate(resolvedPath, asset, Sdf_CrateLimits(), &error);
    if (!data) {
        return Sdf_PostReadError(resolvedPath, error);
    }
    _SetLayerData(layer, data);
    return true;
}

bool Sdf_CrateFileFormat::WriteToFile(const SdfLayer& layer, const std::string& filePath, const std::string&,
                                      const FileFormatArguments&) const
{
    std::string whyNot;
    if (!Sdf_CrateWriter(*get_pointer(_GetLayerData(layer))).Write(filePath, &whyNot)) {
        TF_RUNTIME_ERROR("Cannot write layer @%s@: %s", filePath.c_str(), whyNot.c_str());
        return false;
    }
    return true;
}

bool Sdf_CrateFileFormat::ReadFromString(SdfLayer* layer, const std::string& str) const
{
    return SdfFileFormat::FindById(TfToken("usda"))->ReadFromString(layer, str);
}

PXR_NAMESPACE_CLOSE_SCOPE
