#include "pxr/usd/sdf/textWriter.h"
#include "pxr/usd/sdf/childPaths.h"
#include "pxr/usd/sdf/textQuoting.h"

#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/sdf/valueTypeNames.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

bool isMetadata(const TfToken& field, SdfSpecType type)
{
    // What the schema does not know is metadata that some other library wrote.
    const SdfSchemaBase::SpecDefinition* spec = SdfSchema::GetInstance().GetSpecDefinition(type);
    return spec && (spec->IsMetadataField(field) || !spec->IsValidField(field));
}

bool isLayerField(const TfToken& field, SdfSpecType type)
{
    return isMetadata(field, type) || field == SdfFieldKeys->SubLayers ||
           field == SdfFieldKeys->LayerRelocates;
}

bool isPrimField(const TfToken& field, SdfSpecType type)
{
    const auto& keys = *SdfFieldKeys;
    return (isMetadata(field, type) && field != keys.TypeName) || field == keys.References ||
           field == keys.Relocates || field == keys.InheritPaths || field == keys.Specializes ||
           field == keys.VariantSetNames || field == keys.VariantSelection;
}

bool isAttributeField(const TfToken& field, SdfSpecType type)
{
    return isMetadata(field, type) || field == SdfFieldKeys->DisplayUnit;
}

const char* specifierText(SdfSpecifier specifier)
{
    return specifier == SdfSpecifierDef ? "def" : specifier == SdfSpecifierClass ? "class" : "over";
}

} // namespace

std::string Sdf_TextWriter::WriteLayer(const std::string& comment)
{
    const SdfPath& root = SdfPath::AbsoluteRootPath();
    _out = "#usda 1.0\n";
    const std::string shown =
        comment.empty() ? _data.GetAs<std::string>(root, SdfFieldKeys->Comment) : comment;
    std::vector<TfToken> fields;
    for (const TfToken& field : _data.List(root)) {
        if (isLayerField(field, SdfSpecTypePseudoRoot)) {
            fields.push_back(field);
        }
    }
    // Relocates come last, whatever their name.
    std::sort(fields.begin(), fields.end(), [](const TfToken& a, const TfToken& b) {
        const bool lastA = a == SdfFieldKeys->LayerRelocates;
        const bool lastB = b == SdfFieldKeys->LayerRelocates;
        return lastA != lastB ? lastB : a < b;
    });
    if (!shown.empty() || !fields.empty()) {
        _out += "(\n";
        if (!shown.empty()) {
            _Line(1, Sdf_QuoteString(shown));
        }
        for (const TfToken& field : fields) {
            _WriteField(root, field, 1);
        }
        _out += ")\n";
    }
    if (_data.GetAs<std::vector<TfToken>>(root, SdfFieldKeys->PrimOrder).size() > 1) {
        _out += "\n";
        _WriteNames("reorder rootPrims", root, SdfFieldKeys->PrimOrder, 0);
    }
    const auto prims = _data.GetAs<std::vector<TfToken>>(root, SdfChildrenKeys->PrimChildren);
    for (auto it = prims.rbegin(); it != prims.rend(); ++it) {
        _pending.push_back({root.AppendChild(*it), 0, std::string()});
        _pending.push_back({SdfPath(), 0, "\n"});
    }
    _WritePending();
    _out += "\n";
    return std::move(_out);
}

std::string Sdf_TextWriter::WriteSpec(const SdfPath& path, int indent)
{
    _out.clear();
    if (path.IsPropertyPath()) {
        _WriteProperty(path, indent);
    } else if (!path.IsAbsoluteRootPath()) {
        _pending.push_back({path, indent, std::string()});
    }
    _WritePending();
    return std::move(_out);
}

void Sdf_TextWriter::_WritePending()
{
    while (!_pending.empty()) {
        const _Pending next = std::move(_pending.back());
        _pending.pop_back();
        if (next.path.IsEmpty()) {
            _out += next.text;
        } else {
            _Open(next.path, next.indent);
        }
    }
}

// Writes the head and the properties of a prim or variant, or the head of a variant set; what lies below
// waits.
void Sdf_TextWriter::_Open(const SdfPath& path, int indent)
{
    const std::string spaces(static_cast<size_t>(indent) * 4, ' ');
    const SdfSpecType type = _data.GetSpecType(path);
    if (type == SdfSpecTypePrim) {
        const std::string typeName = _data.GetAs<TfToken>(path, SdfFieldKeys->TypeName).GetString();
        _out += spaces +
                specifierText(_data.GetAs<SdfSpecifier>(path, SdfFieldKeys->Specifier, SdfSpecifierOver));
        _out += (typeName.empty() ? "" : " " + typeName) + " \"" + path.GetName() + "\"";
        _WriteBlock(path, indent, &isPrimField);
        _out += "\n" + spaces + "{\n";
        _pending.push_back({SdfPath(), 0, spaces + "}\n"});
        _WriteBody(path, indent);
    } else if (type == SdfSpecTypeVariant) {
        _out += spaces + Sdf_QuoteString(path.GetVariantSelection().second);
        _WriteBlock(path, indent, &isPrimField);
        _out += " {\n";
        _pending.push_back({SdfPath(), 0, "\n" + spaces + "}\n"});
        _WriteBody(path, indent);
    } else if (type == SdfSpecTypeVariantSet) {
        auto names = _data.GetAs<std::vector<TfToken>>(path, SdfChildrenKeys->VariantChildren);
        if (names.empty()) {
            return;
        }
        std::sort(names.begin(), names.end());
        _out += spaces + "variantSet " + Sdf_QuoteString(path.GetVariantSelection().first) + " = {\n";
        _pending.push_back({SdfPath(), 0, spaces + "}\n"});
        for (auto it = names.rbegin(); it != names.rend(); ++it) {
            _pending.push_back(
                {Sdf_ChildPath(path, SdfChildrenKeys->VariantChildren, *it), indent + 1, std::string()});
        }
    }
}

void Sdf_TextWriter::_WriteBody(const SdfPath& path, int indent)
{
    typedef std::vector<TfToken> Names;
    for (const auto& order : {std::make_pair("reorder properties", SdfFieldKeys->PropertyOrder),
                              std::make_pair("reorder nameChildren", SdfFieldKeys->PrimOrder)}) {
        if (_data.GetAs<Names>(path, order.second).size() > 1) {
            _WriteNames(order.first, path, order.second, indent + 1);
        }
    }
    Names properties = _data.GetAs<Names>(path, SdfChildrenKeys->PropertyChildren);
    std::sort(properties.begin(), properties.end(), TfDictionaryLessThan());
    for (const TfToken& name : properties) {
        _WriteProperty(path.AppendProperty(name), indent + 1);
    }
    const Names prims = _data.GetAs<Names>(path, SdfChildrenKeys->PrimChildren);
    const Names sets = _data.GetAs<Names>(path, SdfChildrenKeys->VariantSetChildren);
    for (auto it = sets.rbegin(); it != sets.rend(); ++it) {
        _pending.push_back(
            {path.AppendVariantSelection(it->GetString(), std::string()), indent + 1, std::string()});
    }
    for (auto it = prims.rbegin(); it != prims.rend(); ++it) {
        _pending.push_back({path.AppendChild(*it), indent + 1, std::string()});
        if (std::next(it) != prims.rend() || !properties.empty()) {
            _pending.push_back({SdfPath(), 0, "\n"});
        }
    }
}

void Sdf_TextWriter::_WriteNames(const char* what, const SdfPath& path, const TfToken& field, int indent)
{
    std::string text = std::string(what) + " = [";
    const char* separator = "";
    for (const TfToken& name : _data.GetAs<std::vector<TfToken>>(path, field)) {
        text += separator + Sdf_QuoteString(name.GetString());
        separator = ", ";
    }
    _Line(indent, text + "]");
}

void Sdf_TextWriter::_WriteProperty(const SdfPath& path, int indent)
{
    if (_data.GetSpecType(path) == SdfSpecTypeRelationship) {
        _WriteRelationship(path, indent);
    } else {
        _WriteAttribute(path, indent);
    }
}

void Sdf_TextWriter::_WriteAttributeDeclaration(const SdfPath& path, int indent, const std::string& type)
{
    const bool custom = _data.GetAs<bool>(path, SdfFieldKeys->Custom, false);
    _Indent(indent);
    _out += (custom ? "custom " : "") + type + " " + path.GetName();
    VtValue value;
    if (_data.Has(path, SdfFieldKeys->Default, &value)) {
        _out += " = " + Sdf_ValueToText(value);
    }
    _WriteBlock(path, indent, &isAttributeField);
    _out += "\n";
}

void Sdf_TextWriter::_WriteAttribute(const SdfPath& path, int indent)
{
    const bool uniform = _data.GetAs<SdfVariability>(path, SdfFieldKeys->Variability,
                                                     SdfVariabilityVarying) == SdfVariabilityUniform;
    const TfToken typeName = _data.GetAs<TfToken>(path, SdfFieldKeys->TypeName);
    const std::string type =
        (uniform ? "uniform " : "") + SdfValueTypeNames->GetSerializationName(typeName).GetString();
    bool declares =
        _data.GetAs<bool>(path, SdfFieldKeys->Custom, false) || _data.Has(path, SdfFieldKeys->Default);
    for (const TfToken& field : _data.List(path)) {
        declares =
            declares || isAttributeField(field, SdfSpecTypeAttribute) || field == SdfFieldKeys->Comment;
    }
    const bool samples = _data.Has(path, SdfFieldKeys->TimeSamples);
    const bool connects = _data.Has(path, SdfFieldKeys->ConnectionPaths);
    const VtValue spline = _data.Get(path, SdfFieldKeys->Spline);
    if (declares || (!samples && !connects && spline.IsEmpty())) {
        _WriteAttributeDeclaration(path, indent, type);
    }
    if (samples) {
        _WriteTimeSamples(path, indent, type);
    }
    if (!spline.IsEmpty()) {
        _Line(indent, type + " " + path.GetName() + ".spline = " + Sdf_ValueToText(spline));
    }
    if (connects) {
        _WriteListOp(type + " ", path.GetName() + ".connect",
                     _data.GetAs<SdfPathListOp>(path, SdfFieldKeys->ConnectionPaths), indent, true);
    }
}

void Sdf_TextWriter::_WriteTimeSamples(const SdfPath& path, int indent, const std::string& type)
{
    _Line(indent, type + " " + path.GetName() + ".timeSamples = {");
    for (const auto& sample : _data.GetAs<SdfTimeSampleMap>(path, SdfFieldKeys->TimeSamples)) {
        _Line(indent + 1, Sdf_NumberToText(sample.first) + ": " + Sdf_ValueToText(sample.second) + ",");
    }
    _Line(indent, "}");
}

void Sdf_TextWriter::_WriteRelationship(const SdfPath& path, int indent)
{
    const bool varying = _data.GetAs<SdfVariability>(path, SdfFieldKeys->Variability,
                                                     SdfVariabilityVarying) == SdfVariabilityVarying;
    const bool custom = _data.GetAs<bool>(path, SdfFieldKeys->Custom, false);
    const std::string type = varying ? "varying rel " : "rel ";
    const SdfPathListOp targets = _data.GetAs<SdfPathListOp>(path, SdfFieldKeys->TargetPaths);
    bool declares = custom || targets.IsExplicit() || !targets.HasKeys();
    for (const TfToken& field : _data.List(path)) {
        declares = declares || isMetadata(field, SdfSpecTypeRelationship) || field == SdfFieldKeys->Comment;
    }
    if (declares) {
        const std::string head = (custom ? "custom " : "") + type;
        if (targets.IsExplicit()) {
            _WriteListOp(head, path.GetName(), targets, indent, true);
            _out.pop_back();
        } else {
            _Indent(indent);
            _out += head + path.GetName();
        }
        _WriteBlock(path, indent, &isMetadata);
        _out += "\n";
    }
    if (VtValue value; _data.Has(path, SdfFieldKeys->Default, &value)) {
        _Line(indent, "rel " + path.GetName() + ".default = " + Sdf_ValueToText(value) + "    ");
    }
    if (!targets.IsExplicit()) {
        _WriteListOp(type, path.GetName(), targets, indent, true);
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
