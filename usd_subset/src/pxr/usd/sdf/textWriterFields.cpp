#include "pxr/usd/sdf/textQuoting.h"
#include "pxr/usd/sdf/textWriter.h"

#include <pxr/base/tf/stringUtils.h>
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/dictionary.h>
#include <pxr/usd/sdf/payload.h>
#include <pxr/usd/sdf/reference.h>
#include <pxr/usd/sdf/schema.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

std::string pathText(const SdfPath& path) { return "<" + path.GetString() + ">"; }

std::string indentation(int indent) { return std::string(static_cast<size_t>(indent) * 4, ' '); }

// Writes ` (offset = 1; scale = 2)`, or one thing a line where there is custom data.
std::string offsetText(const SdfLayerOffset& offset, const VtDictionary& customData, int indent)
{
    std::vector<std::string> parts;
    if (offset.GetOffset() != 0.0) {
        parts.push_back("offset = " + Sdf_NumberToText(offset.GetOffset()));
    }
    if (offset.GetScale() != 1.0) {
        parts.push_back("scale = " + Sdf_NumberToText(offset.GetScale()));
    }
    if (parts.empty() && customData.empty()) {
        return std::string();
    }
    if (customData.empty()) {
        return " (" + parts[0] + (parts.size() > 1 ? "; " + parts[1] : "") + ")";
    }
    std::string text = " (\n";
    parts.push_back("customData = " + Sdf_DictionaryToText(customData, indent + 1));
    for (const std::string& part : parts) {
        text += indentation(indent + 1) + part + "\n";
    }
    return text + indentation(indent) + ")";
}

template <class Arc>
std::string arcText(const Arc& arc, const VtDictionary& customData, int indent)
{
    const bool inside = arc.GetAssetPath().empty();
    std::string text = inside ? std::string() : Sdf_QuoteAssetPath(arc.GetAssetPath());
    if (!arc.GetPrimPath().IsEmpty()) {
        text += pathText(arc.GetPrimPath());
    } else if (inside) {
        text += "<>";
    }
    return text + offsetText(arc.GetLayerOffset(), customData, indent);
}

// How an item of a list stands in the text, and whether each has a line of its own.
std::string itemText(const SdfReference& item, int indent)
{
    return arcText(item, item.GetCustomData(), indent);
}
std::string itemText(const SdfPayload& item, int indent) { return arcText(item, VtDictionary(), indent); }
std::string itemText(const SdfPath& item, int) { return pathText(item); }
std::string itemText(const SdfUnregisteredValue& item, int) { return Sdf_ValueToText(VtValue(item)); }
template <class T>
std::string itemText(const T& item, int)
{
    return Sdf_ValueToText(VtValue(item));
}

bool hasCustomData(const SdfReference& reference) { return !reference.GetCustomData().empty(); }
template <class T>
bool hasCustomData(const T&)
{
    return false;
}

template <class T>
constexpr bool kOwnLines =
    std::is_same_v<T, SdfReference> || std::is_same_v<T, SdfPayload> || std::is_same_v<T, SdfPath>;

} // namespace

template <class T>
void Sdf_TextWriter::_WriteItems(const std::vector<T>& items, int indent, bool commaAtEnd)
{
    if (items.empty()) {
        _out += "None\n";
        return;
    }
    // A reference with custom data is long enough for a list of its own.
    const bool lines = kOwnLines<T> && (items.size() > 1 || hasCustomData(items[0]));
    const bool single = items.size() == 1 && !lines && (kOwnLines<T> || std::is_same_v<T, std::string>);
    _out += single ? "" : lines ? "[\n" : "[";
    for (size_t i = 0; i < items.size(); ++i) {
        const bool last = i + 1 == items.size();
        if (lines) {
            _Indent(indent + 1);
        }
        _out += itemText(items[i], lines ? indent + 1 : indent);
        _out += lines ? (last && !commaAtEnd ? "\n" : ",\n") : (last ? "" : ", ");
    }
    if (lines) {
        _Indent(indent);
    }
    _out += single ? "\n" : "]\n";
}

template <class T>
void Sdf_TextWriter::_WriteListOp(const std::string& prefix, const std::string& name, const SdfListOp<T>& op,
                                  int indent, bool commaAtEnd)
{
    if (op.IsExplicit()) {
        _Indent(indent);
        _out += prefix + name + " = ";
        _WriteItems(op.GetExplicitItems(), indent, commaAtEnd);
        return;
    }
    const std::pair<const char*, const std::vector<T>*> lists[] = {{"delete ", &op.GetDeletedItems()},
                                                                   {"add ", &op.GetAddedItems()},
                                                                   {"prepend ", &op.GetPrependedItems()},
                                                                   {"append ", &op.GetAppendedItems()},
                                                                   {"reorder ", &op.GetOrderedItems()}};
    for (const auto& list : lists) {
        if (!list.second->empty()) {
            _Indent(indent);
            _out += list.first + prefix + name + " = ";
            _WriteItems(*list.second, indent, commaAtEnd);
        }
    }
}

template void Sdf_TextWriter::_WriteListOp(const std::string&, const std::string&, const SdfPathListOp&, int,
                                           bool);

bool Sdf_TextWriter::_WriteListOpField(const TfToken& field, const VtValue& value, int indent)
{
    const auto& keys = *SdfFieldKeys;
    const std::string name = field == keys.InheritPaths      ? "inherits"
                             : field == keys.VariantSetNames ? "variantSets"
                                                             : field.GetString();
    const auto write = [&](auto example) {
        typedef SdfListOp<decltype(example)> Op;
        if (!value.IsHolding<Op>()) {
            return false;
        }
        _WriteListOp(std::string(), name, value.UncheckedGet<Op>(), indent);
        return true;
    };
    return write(TfToken()) || write(std::string()) || write(SdfPath()) || write(SdfReference()) ||
           write(SdfPayload()) || write(int()) || write(0u) || write(int64_t()) || write(uint64_t());
}

void Sdf_TextWriter::_WriteUnregistered(const TfToken& field, const VtValue& value, int indent)
{
    const VtValue& held = value.UncheckedGet<SdfUnregisteredValue>().GetValue();
    if (held.IsHolding<SdfUnregisteredValueListOp>()) {
        _WriteListOp(std::string(), field.GetString(), held.UncheckedGet<SdfUnregisteredValueListOp>(),
                     indent);
        return;
    }
    const std::string text = held.IsHolding<VtDictionary>()
                                 ? Sdf_DictionaryToText(held.UncheckedGet<VtDictionary>(), indent)
                                 : Sdf_ValueToText(value);
    _Line(indent, field.GetString() + " = " + text);
}

void Sdf_TextWriter::_WriteSubLayers(const SdfPath& path, int indent)
{
    const auto paths = _data.GetAs<std::vector<std::string>>(path, SdfFieldKeys->SubLayers);
    auto offsets = _data.GetAs<SdfLayerOffsetVector>(path, SdfFieldKeys->SubLayerOffsets);
    offsets.resize(paths.size());
    _Line(indent, "subLayers = [");
    for (size_t i = 0; i < paths.size(); ++i) {
        _Line(indent + 1, Sdf_QuoteAssetPath(paths[i]) + offsetText(offsets[i], VtDictionary(), indent + 1) +
                              (i + 1 < paths.size() ? "," : ""));
    }
    _Line(indent, "]");
}

// The relocates of a prim are written as paths from it.
void Sdf_TextWriter::_WriteRelocates(const SdfPath& owner,
                                     const std::vector<std::pair<SdfPath, SdfPath>>& relocates, int indent)
{
    const auto text = [&](const SdfPath& path) {
        return pathText(owner.IsAbsoluteRootPath() || path.IsEmpty() ? path : path.MakeRelativePath(owner));
    };
    _Line(indent, "relocates = {");
    for (size_t i = 0; i < relocates.size(); ++i) {
        _Line(indent + 1, text(relocates[i].first) + ": " + text(relocates[i].second) +
                              (i + 1 < relocates.size() ? ", " : ""));
    }
    _Line(indent, "}");
}

// Writes the fields that are not written as a name and a value of their type.
bool Sdf_TextWriter::_WriteSpecialField(const SdfPath& path, const TfToken& field, const VtValue& value,
                                        int indent)
{
    const auto& keys = *SdfFieldKeys;
    if (field == keys.Documentation) {
        _Line(indent, "doc = " + Sdf_ValueToText(value));
    } else if (field == keys.Permission) {
        const bool isPrivate =
            value.GetWithDefault<SdfPermission>(SdfPermissionPublic) == SdfPermissionPrivate;
        _Line(indent, std::string("permission = ") + (isPrivate ? "private" : "public"));
    } else if (field == keys.SymmetryFunction || field == keys.DisplayUnit) {
        _Line(indent, field.GetString() + " = " + value.GetWithDefault<TfToken>().GetString());
    } else if (field == keys.SubLayers) {
        _WriteSubLayers(path, indent);
    } else if (field == keys.LayerRelocates) {
        _WriteRelocates(path, value.GetWithDefault<SdfRelocates>(), indent);
    } else if (field == keys.Relocates) {
        const SdfRelocatesMap map = value.GetWithDefault<SdfRelocatesMap>();
        _WriteRelocates(path, SdfRelocates(map.begin(), map.end()), indent);
    } else if (field == keys.VariantSelection) {
        VtDictionary selections;
        for (const auto& entry : value.GetWithDefault<SdfVariantSelectionMap>()) {
            selections[entry.first] = VtValue(entry.second);
        }
        if (!selections.empty()) {
            _Line(indent, "variants = " + Sdf_DictionaryToText(selections, indent));
        }
    } else if (field == keys.PrefixSubstitutions || field == keys.SuffixSubstitutions) {
        _Line(indent, field.GetString() + " = {");
        const VtDictionary entries = value.GetWithDefault<VtDictionary>();
        for (auto it = entries.begin(); it != entries.end(); ++it) {
            _Line(indent + 1, Sdf_QuoteString(it->first) + ": " + Sdf_ValueToText(it->second) +
                                  (std::next(it) != entries.end() ? ", " : ""));
        }
        _Line(indent, "}");
    } else {
        return false;
    }
    return true;
}

void Sdf_TextWriter::_WriteField(const SdfPath& path, const TfToken& field, int indent)
{
    const VtValue value = _data.Get(path, field);
    if (_WriteSpecialField(path, field, value, indent) || _WriteListOpField(field, value, indent)) {
        return;
    }
    if (value.IsHolding<SdfUnregisteredValue>()) {
        _WriteUnregistered(field, value, indent);
        return;
    }
    const std::string text = value.IsHolding<VtDictionary>()
                                 ? Sdf_DictionaryToText(value.UncheckedGet<VtDictionary>(), indent)
                             : value.IsHolding<bool>() ? (value.UncheckedGet<bool>() ? "true" : "false")
                                                       : Sdf_ValueToText(value);
    _Line(indent, field.GetString() + " = " + text);
}

void Sdf_TextWriter::_WriteBlock(const SdfPath& path, int indent,
                                 bool (*belongs)(const TfToken&, SdfSpecType))
{
    const SdfSpecType type = _data.GetSpecType(path);
    const std::string comment = _data.GetAs<std::string>(path, SdfFieldKeys->Comment);
    std::vector<TfToken> fields;
    for (const TfToken& field : _data.List(path)) {
        if (belongs(field, type)) {
            fields.push_back(field);
        }
    }
    if (comment.empty() && fields.empty()) {
        return;
    }
    std::sort(fields.begin(), fields.end(), TfDictionaryLessThan());
    _out += " (\n";
    if (!comment.empty()) {
        _Line(indent + 1, Sdf_QuoteString(comment));
    }
    for (const TfToken& field : fields) {
        _WriteField(path, field, indent + 1);
    }
    _Indent(indent);
    _out += ")";
}

PXR_NAMESPACE_CLOSE_SCOPE
