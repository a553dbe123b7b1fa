#include "pxr/usd/sdf/textParser.h"
#include "pxr/usd/sdf/textParserLists.h"
#include "pxr/usd/sdf/textValues.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/vt/array.h>
#include <pxr/usd/sdf/schema.h>

#include <algorithm>
#include <array>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// A variant has the metadata of a prim.
SdfSpecType schemaType(SdfSpecType type) { return type == SdfSpecTypeVariant ? SdfSpecTypePrim : type; }

const SdfSchemaBase::SpecDefinition& definitionOf(SdfSpecType type)
{
    return *SdfSchema::GetInstance().GetSpecDefinition(schemaType(type));
}

bool isDisplayUnit(std::string_view name)
{
    static const std::array<std::string_view, 11> units = {"mm", "cm", "dm", "m",   "km", "in",
                                                           "ft", "yd", "mi", "deg", "rad"};
    return std::find(units.begin(), units.end(), name) != units.end();
}

} // namespace

bool Sdf_AcceptListOpWord(std::string_view word, SdfListOpType* op)
{
    static const std::pair<std::string_view, SdfListOpType> words[] = {{"add", SdfListOpTypeAdded},
                                                                       {"prepend", SdfListOpTypePrepended},
                                                                       {"append", SdfListOpTypeAppended},
                                                                       {"delete", SdfListOpTypeDeleted},
                                                                       {"reorder", SdfListOpTypeOrdered}};
    for (const auto& known : words) {
        if (word == known.first) {
            *op = known.second;
            return true;
        }
    }
    return false;
}

void Sdf_TextParser::_ParseMetadata(const _Spec& spec)
{
    _s.Expect('(', "to open metadata");
    _s.Statements(')', "in metadata", [&] { _ParseMetadatum(spec); });
}

void Sdf_TextParser::_ParseMetadatum(const _Spec& spec)
{
    if (_s.AtString()) {
        spec.fields.Set(SdfFieldKeys->Comment, _s.String("a comment"));
        return;
    }
    SdfListOpType op = SdfListOpTypeExplicit;
    const bool isLayer = spec.type == SdfSpecTypePseudoRoot;
    const std::string_view word = _s.PeekIdentifier();
    if (Sdf_AcceptListOpWord(word, &op)) {
        _s.AcceptWord(word);
        _s.Gap("a metadata field's name");
        const std::string_view key = _s.PeekIdentifier();
        if (schemaType(spec.type) != SdfSpecTypePrim || !_ParseArcs(key, op, spec)) {
            _ParseListMetadatum(_Token(_s.Name("the name of a field that is edited as a list")), op, spec);
        }
    } else if (_s.AtName()) {
        _ParsePlainMetadatum(_Token(_s.Name("a metadata field's name")), spec);
    } else if (!isLayer && (word == "customData" || word == "symmetryArguments")) {
        _s.AcceptWord(word);
        _ParsePlainMetadatum(_Token(word), spec);
    } else {
        _ParseReservedMetadatum(word, spec);
    }
}

// Reads a field whose name is one of the words that the format has for itself.
void Sdf_TextParser::_ParseReservedMetadatum(std::string_view key, const _Spec& spec)
{
    const bool isPrim = schemaType(spec.type) == SdfSpecTypePrim;
    const bool isLayer = spec.type == SdfSpecTypePseudoRoot;
    if (key == "doc") {
        _s.AcceptWord(key);
        _s.Assign("doc");
        spec.fields.Set(SdfFieldKeys->Documentation, _s.String("a string"));
    } else if (isLayer && _ParseLayerMetadatum(key, spec)) {
        return;
    } else if (isPrim && (_ParseArcs(key, SdfListOpTypeExplicit, spec) || _ParsePrimMetadatum(key, spec))) {
        return;
    } else if (key == "permission" && !isLayer) {
        _ParsePermission(spec);
    } else if (key == "symmetryFunction" && !isLayer) {
        _s.AcceptWord(key);
        _s.Assign("symmetryFunction");
        const std::string_view name = _s.AtName() ? _s.Name("") : std::string_view();
        spec.fields.Set(SdfFieldKeys->SymmetryFunction, _Token(name));
    } else if (key == "displayUnit" && spec.type == SdfSpecTypeAttribute) {
        _ParseDisplayUnit(spec);
    } else {
        _s.Fail("a metadata field's name or ')'");
    }
}

bool Sdf_TextParser::_ParseLayerMetadatum(std::string_view key, const _Spec& spec)
{
    if (key == "subLayers") {
        _s.AcceptWord(key);
        _ParseSubLayers(spec);
    } else if (key == "relocates") {
        _s.AcceptWord(key);
        _ParseRelocates(spec);
    } else {
        return false;
    }
    return true;
}

bool Sdf_TextParser::_ParsePrimMetadatum(std::string_view key, const _Spec& spec)
{
    if (key == "kind") {
        _s.AcceptWord(key);
        _s.Assign("kind");
        spec.fields.Set(SdfFieldKeys->Kind, TfToken(_s.String("a kind between quotes")));
    } else if (key == "variants") {
        _s.AcceptWord(key);
        _ParseVariantSelections(spec);
    } else if (key == "relocates" && spec.type == SdfSpecTypePrim) {
        _s.AcceptWord(key);
        _ParseRelocates(spec);
    } else if (key == "prefixSubstitutions" || key == "suffixSubstitutions") {
        _s.AcceptWord(key);
        _ParseSubstitutions(_Token(key), spec);
    } else {
        return false;
    }
    return true;
}

void Sdf_TextParser::_ParsePermission(const _Spec& spec)
{
    _s.AcceptWord("permission");
    _s.Assign("permission");
    const bool isPrivate = _s.AcceptWord("private");
    if (!isPrivate && !_s.AcceptWord("public")) {
        _s.Fail("public or private");
    }
    spec.fields.Set(SdfFieldKeys->Permission, isPrivate ? SdfPermissionPrivate : SdfPermissionPublic);
}

void Sdf_TextParser::_ParseDisplayUnit(const _Spec& spec)
{
    _s.AcceptWord("displayUnit");
    _s.Assign("displayUnit");
    const std::string_view unit = _s.PeekIdentifier();
    if (!isDisplayUnit(unit)) {
        _s.Fail("a unit: mm, cm, dm, m, km, in, ft, yd, mi, deg or rad");
    }
    _s.AcceptWord(unit);
    spec.fields.Set(SdfFieldKeys->DisplayUnit, _Token(unit));
}

void Sdf_TextParser::_FailValue(size_t offset, const TfToken& key, const std::string& whyNot)
{
    _s.Fail(offset, "an invalid value for " + key.GetString(), whyNot);
}

void Sdf_TextParser::_ParsePlainMetadatum(const TfToken& key, const _Spec& spec)
{
    const SdfSchemaBase::SpecDefinition& definition = definitionOf(spec.type);
    if (definition.IsMetadataField(key)) {
        _s.Assign("a metadata field's name");
        _ParseKnownMetadatum(key, spec);
    } else if (definition.IsValidField(key)) {
        _s.SkipBlanks();
        _s.Fail("a metadata field, which " + key.GetString() + " is not");
    } else {
        _s.Assign("a metadata field's name");
        _ParseUnknownMetadatum(key, spec);
    }
}

template <class Item>
bool Sdf_TextParser::_AcceptKnownList(const TfToken& key, SdfListOpType op, const _Spec& spec)
{
    if (!SdfSchema::GetInstance().GetFallback(key).IsHolding<SdfListOp<Item>>()) {
        return false;
    }
    const size_t offset = _s.Offset();
    std::vector<Item> items;
    if (!_s.AcceptKeyword("None")) {
        const VtValue array = Sdf_ReadTextValue(_s, Sdf_TextTypeOf(typeid(VtArray<Item>)));
        if (!array.IsHolding<VtArray<Item>>()) {
            _FailValue(offset, key, "a list");
        }
        const VtArray<Item>& held = array.UncheckedGet<VtArray<Item>>();
        items.assign(held.begin(), held.end());
        if (items.empty() && op != SdfListOpTypeExplicit) {
            _s.Fail(offset, "an empty list", "at least one item, as only a plain list may be empty");
        }
    }
    if (Sdf_HasDuplicates(items)) {
        TF_WARN("%s:%s: the list %s of <%s> names an item twice and is left out.", _name.c_str(),
                Sdf_PlaceOf(_text, offset).c_str(), key.GetText(), spec.path.GetText());
        return true;
    }
    auto listOp = spec.fields.GetAs<SdfListOp<Item>>(key);
    listOp.SetItems(items, op);
    spec.fields.Set(key, std::move(listOp));
    return true;
}

// Reads the items of a field that is a list op; other fields are left alone.
bool Sdf_TextParser::_AcceptAnyKnownList(const TfToken& key, SdfListOpType op, const _Spec& spec)
{
    return _AcceptKnownList<TfToken>(key, op, spec) || _AcceptKnownList<std::string>(key, op, spec) ||
           _AcceptKnownList<int>(key, op, spec) || _AcceptKnownList<unsigned int>(key, op, spec) ||
           _AcceptKnownList<int64_t>(key, op, spec) || _AcceptKnownList<uint64_t>(key, op, spec);
}

void Sdf_TextParser::_ParseListMetadatum(const TfToken& key, SdfListOpType op, const _Spec& spec)
{
    const SdfSchemaBase::SpecDefinition& definition = definitionOf(spec.type);
    const bool known = definition.IsMetadataField(key);
    if (!known && definition.IsValidField(key)) {
        _s.SkipBlanks();
        _s.Fail("a metadata field, which " + key.GetString() + " is not");
    }
    _s.Assign("a metadata field's name");
    if (_s.Peek() != '[' && !Sdf_TextScanner(_s).AcceptKeyword("None")) {
        _s.Fail("None or '['");
    }
    if (!known) {
        _ParseUnknownList(key, op, spec);
    } else if (!_AcceptAnyKnownList(key, op, spec)) {
        _ParseKnownMetadatum(key, spec);
    }
}

void Sdf_TextParser::_ParseKnownMetadatum(const TfToken& key, const _Spec& spec)
{
    if (_AcceptAnyKnownList(key, SdfListOpTypeExplicit, spec)) {
        return;
    }
    const SdfSchemaBase& schema = SdfSchema::GetInstance();
    const VtValue& fallback = schema.GetFallback(key);
    const size_t offset = _s.Offset();
    const bool isDictionary = fallback.IsHolding<VtDictionary>();
    if (isDictionary || _s.Peek() == '{') {
        VtDictionary dictionary = Sdf_ReadTextDictionary(_s);
        if (!isDictionary) {
            _FailValue(offset, key, "a value of type " + fallback.GetTypeName());
        }
        spec.fields.Set(key, std::move(dictionary));
        return;
    }
    VtValue value = Sdf_ReadTextValue(_s, Sdf_TextTypeOf(fallback.GetTypeid()));
    if (value.GetTypeid() != fallback.GetTypeid()) {
        _FailValue(offset, key, "a value of type " + fallback.GetTypeName());
    }
    const SdfAllowed allowed = schema.GetFieldDefinition(key)->IsValidValue(value);
    if (!allowed) {
        _FailValue(offset, key, "another: " + allowed.GetWhyNot());
    }
    spec.fields.Set(key, std::move(value));
}

void Sdf_TextParser::_ParseUnknownMetadatum(const TfToken& key, const _Spec& spec)
{
    if (_s.Peek() == '{') {
        spec.fields.Set(key, SdfUnregisteredValue(Sdf_ReadTextDictionary(_s)));
    } else if (_s.AcceptKeyword("None")) {
        spec.fields.Set(key, SdfUnregisteredValue(std::string("None")));
    } else if (_s.AtPath()) {
        std::string text;
        _Path("a value", &text);
        spec.fields.Set(key, SdfUnregisteredValue(text));
    } else {
        spec.fields.Set(key, SdfUnregisteredValue(Sdf_RecordTextValue(_s)));
    }
}

void Sdf_TextParser::_ParseUnknownList(const TfToken& key, SdfListOpType op, const _Spec& spec)
{
    const bool none = _s.AcceptKeyword("None");
    std::string text = none ? std::string() : Sdf_RecordTextList(_s);
    SdfUnregisteredValueListOp listOp;
    if (const VtValue* old = spec.fields.Find(key); old && old->IsHolding<SdfUnregisteredValue>()) {
        const VtValue& held = old->UncheckedGet<SdfUnregisteredValue>().GetValue();
        if (!held.IsHolding<SdfUnregisteredValueListOp>()) {
            return;
        }
        listOp = held.UncheckedGet<SdfUnregisteredValueListOp>();
    }
    std::vector<SdfUnregisteredValue> items;
    if (!none) {
        // The items stay one text, without its brackets, which the writer puts around it again.
        items.emplace_back(text.substr(1, text.size() - 2));
    }
    listOp.SetItems(items, op);
    spec.fields.Set(key, SdfUnregisteredValue(listOp));
}

PXR_NAMESPACE_CLOSE_SCOPE
