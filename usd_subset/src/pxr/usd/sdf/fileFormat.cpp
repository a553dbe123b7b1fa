#include "pxr/usd/sdf/crate/crateFileFormat.h"
#include "pxr/usd/sdf/fileFormatRegistry.h"
#include "pxr/usd/sdf/package/packageFileFormat.h"
#include "pxr/usd/sdf/textParser.h"
#include "pxr/usd/sdf/usdFileFormat.h"
#include "pxr/usd/sdf/usdaFileFormat.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/ar/resolver.h>
#include <pxr/usd/sdf/data.h>
#include <pxr/usd/sdf/fileFormat.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/schema.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

const std::vector<SdfFileFormatRefPtr>& Sdf_AllFileFormats()
{
    static const std::vector<SdfFileFormatRefPtr>* const formats = new std::vector<SdfFileFormatRefPtr>{
        TfCreateRefPtr(new Sdf_UsdaFileFormat), TfCreateRefPtr(new Sdf_UsdFileFormat),
        TfCreateRefPtr(new Sdf_CrateFileFormat), TfCreateRefPtr(new Sdf_PackageFileFormat)};
    return *formats;
}

SdfFileFormatConstPtr Sdf_FindFormatByContent(const std::string& firstBytes)
{
    if (Sdf_IsTextLayer(firstBytes)) {
        return SdfFileFormat::FindById(TfToken("usda"));
    }
    for (const SdfFileFormatRefPtr& format : Sdf_AllFileFormats()) {
        const std::string& cookie = format->GetFileCookie();
        if (!cookie.empty() && firstBytes.compare(0, cookie.size(), cookie) == 0) {
            return SdfFileFormatConstPtr(format);
        }
    }
    return SdfFileFormatConstPtr();
}

bool Sdf_PostReadError(const std::string& path, const std::string& reason)
{
    TF_RUNTIME_ERROR("Cannot read layer @%s@: %s", path.c_str(), reason.c_str());
    return false;
}

SdfFileFormat::SdfFileFormat(const TfToken& formatId, const TfToken& versionString, const TfToken& target,
                             const std::string& extension, const std::string& cookie)
    : _formatId(formatId), _version(versionString), _target(target), _cookie(cookie), _extensions({extension})
{}

SdfFileFormat::~SdfFileFormat() = default;

const SdfSchemaBase& SdfFileFormat::GetSchema() const { return SdfSchema::GetInstance(); }

bool SdfFileFormat::IsSupportedExtension(const std::string& extension) const
{
    const std::string wanted = GetFileExtension(extension);
    return std::find(_extensions.begin(), _extensions.end(), wanted) != _extensions.end();
}

bool SdfFileFormat::IsPackage() const { return false; }

std::string SdfFileFormat::GetPackageRootLayerPath(const std::string&) const { return std::string(); }

SdfFileFormat::FileFormatArguments SdfFileFormat::GetDefaultFileFormatArguments() const
{
    return FileFormatArguments();
}

SdfAbstractDataRefPtr SdfFileFormat::InitData(const FileFormatArguments&) const
{
    const SdfDataRefPtr data = TfCreateRefPtr(new SdfData);
    data->CreateSpec(SdfPath::AbsoluteRootPath(), SdfSpecTypePseudoRoot);
    return data;
}

bool SdfFileFormat::WriteToFile(const SdfLayer&, const std::string& filePath, const std::string&,
                                const FileFormatArguments&) const
{
    TF_CODING_ERROR("Cannot write @%s@: files of the format %s cannot be written", filePath.c_str(),
                    _formatId.GetText());
    return false;
}

bool SdfFileFormat::SaveToFile(const SdfLayer& layer, const std::string& filePath, const std::string& comment,
                               const FileFormatArguments& args) const
{
    return WriteToFile(layer, filePath, comment, args);
}

bool SdfFileFormat::ReadFromString(SdfLayer*, const std::string&) const
{
    TF_CODING_ERROR("Layers of the format %s cannot be read from text", _formatId.GetText());
    return false;
}

bool SdfFileFormat::WriteToString(const SdfLayer& layer, std::string* str, const std::string& comment) const
{
    return Sdf_AllFileFormats().front()->WriteToString(layer, str, comment);
}

bool SdfFileFormat::WriteToStream(const SdfSpecHandle& spec, std::ostream& out, size_t indent) const
{
    return Sdf_AllFileFormats().front()->WriteToStream(spec, out, indent);
}

bool SdfFileFormat::SupportsReading() const { return true; }
bool SdfFileFormat::SupportsWriting() const { return true; }
bool SdfFileFormat::SupportsEditing() const { return true; }

std::string SdfFileFormat::GetFileExtension(const std::string& s)
{
    std::string extension = ArGetResolver().GetExtension(s);
    // A name without a dot is an extension itself, and so is one that is all dot and extension.
    if (extension.empty() && s.find('/') == std::string::npos) {
        extension = s.substr(s.compare(0, 1, ".") == 0 ? 1 : 0);
    }
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return extension;
}

std::set<std::string> SdfFileFormat::FindAllFileFormatExtensions()
{
    std::set<std::string> extensions;
    for (const SdfFileFormatRefPtr& format : Sdf_AllFileFormats()) {
        extensions.insert(format->GetFileExtensions().begin(), format->GetFileExtensions().end());
    }
    return extensions;
}

bool SdfFileFormat::FormatSupportsReading(const std::string& extension, const std::string& target)
{
    const SdfFileFormatConstPtr format = FindByExtension(extension, target);
    return format && format->SupportsReading();
}

bool SdfFileFormat::FormatSupportsWriting(const std::string& extension, const std::string& target)
{
    const SdfFileFormatConstPtr format = FindByExtension(extension, target);
    return format && format->SupportsWriting();
}

bool SdfFileFormat::FormatSupportsEditing(const std::string& extension, const std::string& target)
{
    const SdfFileFormatConstPtr format = FindByExtension(extension, target);
    return format && format->SupportsEditing();
}

SdfFileFormatConstPtr SdfFileFormat::FindById(const TfToken& formatId)
{
    for (const SdfFileFormatRefPtr& format : Sdf_AllFileFormats()) {
        if (format->GetFormatId() == formatId) {
            return SdfFileFormatConstPtr(format);
        }
    }
    return SdfFileFormatConstPtr();
}

SdfFileFormatConstPtr SdfFileFormat::FindByExtension(const std::string& path, const std::string& target)
{
    if (path.empty()) {
        return SdfFileFormatConstPtr();
    }
    for (const SdfFileFormatRefPtr& format : Sdf_AllFileFormats()) {
        if (format->IsSupportedExtension(path) && (target.empty() || target == format->GetTarget())) {
            return SdfFileFormatConstPtr(format);
        }
    }
    return SdfFileFormatConstPtr();
}

SdfFileFormatConstPtr SdfFileFormat::FindByExtension(const std::string& path, const FileFormatArguments& args)
{
    const auto target = args.find("target");
    return FindByExtension(path, target == args.end() ? std::string() : target->second);
}

void SdfFileFormat::_SetLayerData(SdfLayer* layer, SdfAbstractDataRefPtr& data)
{
    if (layer->_initialized) {
        layer->_SetData(data);
    } else {
        layer->_data.swap(data);
    }
}

SdfAbstractDataConstPtr SdfFileFormat::_GetLayerData(const SdfLayer& layer)
{
    return SdfAbstractDataConstPtr(layer._data);
}

PXR_NAMESPACE_CLOSE_SCOPE
