#include "pxr/usd/sdf/usdaFileFormat.h"

#include "pxr/usd/sdf/fileFormatRegistry.h"
#include "pxr/usd/sdf/textParser.h"
#include "pxr/usd/sdf/textWriter.h"
#include "pxr/usd/sdf/wholeFile.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/spec.h>

#include <algorithm>
#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

Sdf_UsdaFileFormat::Sdf_UsdaFileFormat()
    : SdfFileFormat(TfToken("usda"), TfToken("1.0"), TfToken("usd"), "usda", "#usda")
{}

bool Sdf_UsdaFileFormat::CanRead(const std::string& file) const
{
    return Sdf_IsTextLayer(Sdf_ReadFileStart(file, 8));
}

bool Sdf_UsdaFileFormat::_Parse(SdfLayer* layer, const std::string& name, const std::string& text,
                                bool metadataOnly) const
{
    const SdfDataRefPtr data = TfCreateRefPtr(new SdfData);
    std::string error;
    if (!Sdf_ParseText(name, text, metadataOnly, get_pointer(data), &error)) {
        TF_RUNTIME_ERROR("%s", error.c_str());
        return false;
    }
    SdfAbstractDataRefPtr abstract = data;
    _SetLayerData(layer, abstract);
    return true;
}

bool Sdf_UsdaFileFormat::Read(SdfLayer* layer, const std::string& resolvedPath, bool metadataOnly) const
{
    std::string text;
    std::string whyNot;
    if (!Sdf_ReadWholeFile(resolvedPath, &text, &whyNot)) {
        return Sdf_PostReadError(resolvedPath, whyNot);
    }
    const SdfFileFormatConstPtr other = Sdf_FindFormatByContent(text.substr(0, 8));
    if (other && other->GetFormatId() != GetFormatId()) {
        const std::string& format = other->GetFormatId().GetString();
        return Sdf_PostReadError(resolvedPath,
                                 "its content is " + format + ", not text; let its name end in ." + format);
    }
    return _Parse(layer, resolvedPath, text, metadataOnly);
}

bool Sdf_UsdaFileFormat::WriteToFile(const SdfLayer& layer, const std::string& filePath,
                                     const std::string& comment, const FileFormatArguments&) const
{
    std::string text;
    std::string whyNot;
    WriteToString(layer, &text, comment);
    if (!Sdf_ReplaceFile(filePath, text, &whyNot)) {
        TF_RUNTIME_ERROR("Cannot write layer @%s@: %s", filePath.c_str(), whyNot.c_str());
        return false;
    }
    return true;
}

bool Sdf_UsdaFileFormat::ReadFromString(SdfLayer* layer, const std::string& str) const
{
    // A string in a program may begin on a line of its own; a file may not.
    const size_t begin = std::min(str.find_first_not_of(" \t\n\v\f\r"), str.size());
    return _Parse(layer, "<string>", begin == 0 ? str : str.substr(begin), false);
}

bool Sdf_UsdaFileFormat::WriteToString(const SdfLayer& layer, std::string* str,
                                       const std::string& comment) const
{
    *str = Sdf_TextWriter(*get_pointer(_GetLayerData(layer))).WriteLayer(comment);
    return true;
}

bool Sdf_UsdaFileFormat::WriteToStream(const SdfSpecHandle& spec, std::ostream& out, size_t indent) const
{
    if (!spec) {
        return false;
    }
    const SdfLayerHandle layer = spec->GetLayer();
    out << Sdf_TextWriter(*get_pointer(_GetLayerData(*get_pointer(layer))))
               .WriteSpec(spec->GetPath(), static_cast<int>(indent));
    return true;
}

PXR_NAMESPACE_CLOSE_SCOPE
