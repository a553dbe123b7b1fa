#include "pxr/usd/sdf/textParser.h"
#include "pxr/usd/sdf/textValues.h"

#include <pxr/base/vt/array.h>
#include <pxr/usd/sdf/payload.h>
#include <pxr/usd/sdf/reference.h>
#include <pxr/usd/sdf/schema.h>

PXR_NAMESPACE_OPEN_SCOPE

bool Sdf_TextParser::_AcceptListOp(SdfListOpType* op)
{
    static const std::pair<const char*, SdfListOpType> words[] = {{"add", SdfListOpTypeAdded},
                                                                  {"prepend", SdfListOpTypePrepended},
                                                                  {"append", SdfListOpTypeAppended},
                                                                  {"delete", SdfListOpTypeDeleted},
                                                                  {"reorder", SdfListOpTypeOrdered}};
    for (const auto& word : words) {
        if (_s.AcceptWord(word.first)) {
            *op = word.second;
            return true;
        }
    }
    return false;
}

void Sdf_TextParser::_ParseMetadata(const SdfPath& path, SdfSpecType type)
{
    _s.Expect('(', "to open metadata");
    _s.Statements(')', "in metadata", [&] { _ParseMetadatum(path, type); });
}

void Sdf_TextParser::_ParseMetadatum(const SdfPath& path, SdfSpecType type)
{
    if (_s.AtString()) {
        _Set(path, SdfFieldKeys->Comment, _s.String("a comment"));
        return;
    }
    SdfListOpType op = SdfListOpTypeExplicit;
    const bool hasOp = _AcceptListOp(&op);
    const std::string key(_s.Word("a metadata field's name or ')'"));
    if (type == SdfSpecTypePrim && _ParseComposition(key, op, path)) {
        return;
    }
    if (hasOp) {
        _ParseListOpMetadatum(TfToken(key), op, path, type);
    } else if (!_ParseSpecialMetadatum(key, path, type)) {
        _ParseGenericMetadatum(TfToken(key), path, type);
    }
}

SdfPath Sdf_TextParser::_PathItem(const SdfPath& owner, const char* what)
{
    _s.Peek();
    const size_t offset = _s.Offset();
    const std::string text(_s.Path(what));
    std::string why;
    if (text.empty() || !SdfPath::IsValidPathString(text, &why)) {
        _s.Fail(offset, "<" + text + ">",
                std::string(what) + (text.empty() ? ", which is not empty" : " that is well-formed"));
    }
    const SdfPath prim = owner.IsAbsoluteRootPath() ? owner : owner.StripAllVariantSelections().GetPrimPath();
    return SdfPath(text).MakeAbsolutePath(prim);
}

// Reads what may follow a reference, a payload or a sublayer between brackets.
SdfLayerOffset Sdf_TextParser::_LayerOffset(VtDictionary* customData)
{
    SdfLayerOffset offset;
    if (!_s.Accept('(')) {
        return offset;
    }
    _s.Statements(')', "behind an asset", [&] {
        if (_s.AcceptWord("offset")) {
            _s.Expect('=', "behind offset");
            offset.SetOffset(_s.Number("a number").real);
        } else if (_s.AcceptWord("scale")) {
            _s.Expect('=', "behind scale");
            offset.SetScale(_s.Number("a number").real);
        } else if (customData && _s.AcceptWord("customData")) {
            _s.Expect('=', "behind customData");
            *customData = Sdf_ReadTextDictionary(_s);
        } else {
            _s.Fail(customData ? "offset, scale, customData or ')'" : "offset, scale or ')'");
        }
    });
    return offset;
}

bool Sdf_TextParser::_ParseComposition(const std::string& key, SdfListOpType op, const SdfPath& path)
{
    const auto& keys = *SdfFieldKeys;
    // The prim in an asset: `@asset@</Prim>`, `@asset@` or `</Prim>`, brackets behind any of them.
    const auto target = [&](std::string* asset, SdfPath* prim) {
        if (_s.AtAsset()) {
            *asset = _s.Asset("an asset path");
        } else if (!_s.AtPath()) {
            _s.Fail("None, an asset path such as @file.usda@, a path such as </Prim>, or a list of them");
        }
        if (_s.AtPath()) {
            const size_t offset = _s.Offset();
            if (_s.Path("a path").empty()) {
                return;
            }
            _s.GoTo(offset);
            *prim = _PathItem(SdfPath::AbsoluteRootPath(), "the path of a prim");
        }
    };
    if (key == "references") {
        _ParseListOp<SdfReference>(keys.References, op, path, "in references", [&] {
            std::string asset;
            SdfPath prim;
            target(&asset, &prim);
            VtDictionary customData;
            const SdfLayerOffset offset = _LayerOffset(&customData);
            return SdfReference(asset, prim, offset, customData);
        });
    } else if (key == "payload") {
        _ParseListOp<SdfPayload>(keys.Payload, op, path, "in payload", [&] {
            std::string asset;
            SdfPath prim;
            target(&asset, &prim);
            return SdfPayload(asset, prim, _LayerOffset(nullptr));
        });
    } else if (key == "inherits" || key == "specializes") {
        _ParseListOp<SdfPath>(key == "inherits" ? keys.InheritPaths : keys.Specializes, op, path,
                              "in a list of prims", [&] { return _PathItem(path, "the path of a prim"); });
    } else if (key == "variantSets") {
        _ParseListOp<std::string>(keys.VariantSetNames, op, path, "in variantSets",
                                  [&] { return _s.String("a variant set's name between quotes"); });
    } else {
        return false;
    }
    return true;
}

void Sdf_TextParser::_ParseSubLayers()
{
    const SdfPath& root = SdfPath::AbsoluteRootPath();
    std::vector<std::string> paths;
    SdfLayerOffsetVector offsets;
    _s.Expect('=', "behind subLayers");
    _s.List('[', ']', "in subLayers", [&] {
        paths.push_back(_s.Asset("an asset path such as @file.usda@"));
        offsets.push_back(_LayerOffset(nullptr));
    });
    _Set(root, SdfFieldKeys->SubLayers, paths);
    _Set(root, SdfFieldKeys->SubLayerOffsets, offsets);
}

void Sdf_TextParser::_ParseRelocates(const SdfPath& path, SdfSpecType type)
{
    SdfRelocates relocates;
    _s.Expect('=', "behind relocates");
    _s.List('{', '}', "in relocates", [&] {
        const SdfPath source = _PathItem(path, "the path of a prim");
        _s.Expect(':', "between two paths");
        // An empty target removes the prim.
        const size_t offset = (_s.Peek(), _s.Offset());
        const bool empty = _s.AtPath() && _s.Path("a path").empty();
        if (!empty) {
            _s.GoTo(offset);
        }
        relocates.emplace_back(source, empty ? SdfPath() : _PathItem(path, "the path of a prim"));
    });
    if (type == SdfSpecTypePseudoRoot) {
        _Set(path, SdfFieldKeys->LayerRelocates, relocates);
    } else {
        _Set(path, SdfFieldKeys->Relocates, SdfRelocatesMap(relocates.begin(), relocates.end()));
    }
}

void Sdf_TextParser::_ParseSubstitutions(const TfToken& key, const SdfPath& path)
{
    VtDictionary dictionary;
    _s.Expect('=', "behind substitutions");
    _s.List('{', '}', "in substitutions", [&] {
        const std::string from = _s.String("a string");
        _s.Expect(':', "between two strings");
        dictionary[from] = VtValue(_s.String("a string"));
    });
    _Set(path, key, dictionary);
}

void Sdf_TextParser::_ParseVariantSelections(const SdfPath& path)
{
    _s.Expect('=', "behind variants");
    _s.Peek();
    const size_t offset = _s.Offset();
    SdfVariantSelectionMap selections;
    for (const auto& entry : Sdf_ReadTextDictionary(_s)) {
        if (!entry.second.IsHolding<std::string>()) {
            _s.Fail(offset, "a selection for \"" + entry.first + "\" that is no string",
                    "entries of type string");
        }
        selections[entry.first] = entry.second.UncheckedGet<std::string>();
    }
    _Set(path, SdfFieldKeys->VariantSelection, selections);
}

// Reads the fields that are not written as a value of their type.
bool Sdf_TextParser::_ParseSpecialMetadatum(const std::string& key, const SdfPath& path, SdfSpecType type)
{
    const auto& keys = *SdfFieldKeys;
    const bool isLayer = type == SdfSpecTypePseudoRoot;
    const bool isPrim = type == SdfSpecTypePrim;
    if (key == "doc") {
        _s.Expect('=', "behind doc");
        _Set(path, keys.Documentation, _s.String("a string"));
    } else if (key == "subLayers" && isLayer) {
        _ParseSubLayers();
    } else if (key == "relocates" && (isLayer || isPrim)) {
        _ParseRelocates(path, type);
    } else if (key == "variants" && isPrim) {
        _ParseVariantSelections(path);
    } else if ((key == "prefixSubstitutions" || key == "suffixSubstitutions") && isPrim) {
        _ParseSubstitutions(TfToken(key), path);
    } else if (key == "permission" && !isLayer) {
        _s.Expect('=', "behind permission");
        const bool isPrivate = _s.AcceptWord("private");
        if (!isPrivate && !_s.AcceptWord("public")) {
            _s.Fail("public or private");
        }
        _Set(path, keys.Permission, isPrivate ? SdfPermissionPrivate : SdfPermissionPublic);
    } else if (key == "symmetryFunction" && !isLayer) {
        _s.Expect('=', "behind symmetryFunction");
        const bool there = !_s.AtNewLine() && !_s.PeekWord().empty();
        _Set(path, keys.SymmetryFunction,
             TfToken(std::string(there ? _s.Word("a name") : std::string_view())));
    } else if (key == "displayUnit" && type == SdfSpecTypeAttribute) {
        _s.Expect('=', "behind displayUnit");
        _Set(path, keys.DisplayUnit, TfToken(std::string(_s.Word("a unit's name"))));
    } else {
        return false;
    }
    return true;
}

void Sdf_TextParser::_ParseUnknownMetadatum(const TfToken& key, SdfListOpType op, const SdfPath& path)
{
    if (op == SdfListOpTypeExplicit && _s.Peek() == '{') {
        _Set(path, key, SdfUnregisteredValue(Sdf_ReadTextDictionary(_s)));
        return;
    }
    std::string text = Sdf_RecordTextValue(_s);
    if (op == SdfListOpTypeExplicit) {
        _Set(path, key, SdfUnregisteredValue(text));
        return;
    }
    const VtValue old = _data->Get(path, key);
    SdfUnregisteredValueListOp listOp;
    if (old.IsHolding<SdfUnregisteredValue>()) {
        const VtValue& held = old.UncheckedGet<SdfUnregisteredValue>().GetValue();
        if (!held.IsHolding<SdfUnregisteredValueListOp>()) {
            return;
        }
        listOp = held.UncheckedGet<SdfUnregisteredValueListOp>();
    }
    // The items stay one text, without its brackets, which the writer puts around it again.
    if (text.size() >= 2 && text.front() == '[' && text.back() == ']') {
        text = text.substr(1, text.size() - 2);
    }
    listOp.SetItems(text == "None" ? std::vector<SdfUnregisteredValue>()
                                   : std::vector<SdfUnregisteredValue>{SdfUnregisteredValue(text)},
                    op);
    _Set(path, key, SdfUnregisteredValue(listOp));
}

namespace {

// Returns whether the fallback is a list op of T, whose items are read as an array then.
template <class T>
bool isListOpOf(const VtValue& fallback)
{
    return fallback.IsHolding<SdfListOp<T>>();
}

} // namespace

void Sdf_TextParser::_ParseListOpMetadatum(const TfToken& key, SdfListOpType op, const SdfPath& path,
                                           SdfSpecType type)
{
    const SdfSchemaBase& schema = SdfSchema::GetInstance();
    const bool known = schema.GetSpecDefinition(type)->IsMetadataField(key);
    const VtValue& fallback = schema.GetFallback(key);
    const auto parse = [&](auto example) {
        typedef decltype(example) Item;
        _s.Expect('=', "behind a metadata field's name");
        _s.Peek();
        const size_t offset = _s.Offset();
        std::vector<Item> items;
        if (!_s.AcceptWord("None")) {
            const VtValue array = Sdf_ReadTextValue(_s, typeid(VtArray<Item>));
            const VtArray<Item>& held = array.UncheckedGet<VtArray<Item>>();
            items.assign(held.begin(), held.end());
        }
        _StoreListOp(key, op, path, offset, items);
    };
    if (known && isListOpOf<TfToken>(fallback)) {
        parse(TfToken());
    } else if (known && isListOpOf<std::string>(fallback)) {
        parse(std::string());
    } else if (known && isListOpOf<int64_t>(fallback)) {
        parse(int64_t());
    } else if (known) {
        _s.Fail("'=', as " + key.GetString() + " is not a list that can be edited");
    } else {
        _s.Expect('=', "behind a metadata field's name");
        _ParseUnknownMetadatum(key, op, path);
    }
}

void Sdf_TextParser::_ParseGenericMetadatum(const TfToken& key, const SdfPath& path, SdfSpecType type)
{
    const SdfSchemaBase& schema = SdfSchema::GetInstance();
    const SdfSchemaBase::SpecDefinition* spec = schema.GetSpecDefinition(type);
    const VtValue& fallback = schema.GetFallback(key);
    if (spec->IsMetadataField(key) && (isListOpOf<TfToken>(fallback) || isListOpOf<std::string>(fallback) ||
                                       isListOpOf<int64_t>(fallback))) {
        _ParseListOpMetadatum(key, SdfListOpTypeExplicit, path, type);
        return;
    }
    if (!spec->IsMetadataField(key) && spec->IsValidField(key)) {
        _s.Fail("a metadata field, which " + key.GetString() + " is not");
    }
    _s.Expect('=', "behind a metadata field's name");
    if (!spec->IsMetadataField(key)) {
        _ParseUnknownMetadatum(key, SdfListOpTypeExplicit, path);
        return;
    }
    _s.Peek();
    const size_t offset = _s.Offset();
    if (fallback.IsHolding<VtDictionary>()) {
        _Set(path, key, Sdf_ReadTextDictionary(_s));
        return;
    }
    VtValue value = Sdf_ReadTextValue(_s, fallback.GetTypeid());
    const SdfAllowed allowed = schema.GetFieldDefinition(key)->IsValidValue(value);
    if (!allowed) {
        _s.Fail(offset, "an invalid value for " + key.GetString(), "another: " + allowed.GetWhyNot());
    }
    _data->Adopt(path, key, std::move(value));
}

PXR_NAMESPACE_CLOSE_SCOPE
