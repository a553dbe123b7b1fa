#include "pxr/usd/sdf/textParser.h"
#include "pxr/usd/sdf/textParserLists.h"
#include "pxr/usd/sdf/textValues.h"

#include <pxr/usd/sdf/payload.h>
#include <pxr/usd/sdf/reference.h>
#include <pxr/usd/sdf/schema.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// `..` may lead above the root, to no path at all.
bool isPrim(const SdfPath& path) { return path.IsPrimPath() && !path.ContainsPrimVariantSelection(); }

} // namespace

// Reads `<...>`, whose path may be left out, and gives back the text for a message.
SdfPath Sdf_TextParser::_Path(const char* what, std::string* text)
{
    const size_t offset = _s.Offset();
    const std::string read(_s.Path(what));
    if (text) {
        *text = "<" + read + ">";
    }
    if (read.empty()) {
        return SdfPath();
    }
    if (!SdfPath::IsValidPathString(read)) {
        _s.Fail(offset, "<" + read + ">", std::string(what) + " that is well-formed");
    }
    return SdfPath(read);
}

// Paths are relative to the prim that holds them, whatever variant of it they stand in.
SdfPath Sdf_TextParser::_FromPrim(const _Spec& spec, const SdfPath& path)
{
    const SdfPath& owner = spec.path;
    const SdfPath prim = owner.IsAbsoluteRootPath() ? owner : owner.StripAllVariantSelections().GetPrimPath();
    return path.MakeAbsolutePath(prim);
}

SdfPath Sdf_TextParser::_PrimPath(const _Spec& spec)
{
    const size_t offset = _s.Offset();
    std::string text;
    const SdfPath path = _Path("the path of a prim", &text);
    const SdfPath absolute = path.IsEmpty() ? path : _FromPrim(spec, path);
    if (!isPrim(path) || !isPrim(absolute)) {
        _s.Fail(offset, text, "the path of a prim, not in a variant");
    }
    return absolute;
}

bool Sdf_TextParser::_ParseArcs(std::string_view key, SdfListOpType op, const _Spec& spec)
{
    const bool known = key == "references" || key == "payload" || key == "inherits" || key == "specializes" ||
                       key == "variantSets";
    if (!known) {
        return false;
    }
    _s.AcceptWord(key);
    _s.Assign(std::string(key).c_str());
    if (key == "references") {
        _ParseReferences(op, spec);
    } else if (key == "payload") {
        _ParsePayload(op, spec);
    } else if (key == "variantSets") {
        _ParseVariantSetNames(op, spec);
    } else {
        _ParsePrimPaths(key == "inherits" ? SdfFieldKeys->InheritPaths : SdfFieldKeys->Specializes, op, spec);
    }
    return true;
}

// Reads where an arc leads: `@asset@</Prim>`, `@asset@` or `</Prim>`.
void Sdf_TextParser::_ArcTarget(std::string* asset, SdfPath* prim)
{
    size_t offset = _s.Offset();
    if (_s.AtAsset()) {
        *asset = _s.Asset("an asset path");
        if (asset->empty()) {
            _s.Fail(offset, "an empty asset path",
                    "the path of a file, or </Prim> alone for a prim of this layer");
        }
        _s.SkipBlanks();
    } else if (!_s.AtPath()) {
        _s.Fail("None, an asset path such as @file.usda@, a path such as </Prim>, or a list of them");
    }
    if (_s.AtPath()) {
        offset = _s.Offset();
        std::string text;
        *prim = _Path("the path of a prim", &text);
        if (!prim->IsEmpty() && (!isPrim(*prim) || !prim->IsAbsolutePath())) {
            _s.Fail(offset, text, "the path of a prim that begins with '/', not in a variant");
        }
    }
}

// Reads what may follow an arc or a sublayer between brackets.
SdfLayerOffset Sdf_TextParser::_LayerOffset(VtDictionary* customData)
{
    SdfLayerOffset offset;
    _s.SkipBlanks();
    if (!_s.Accept('(')) {
        return offset;
    }
    _s.Statements(')', "behind an asset", [&] {
        if (_s.AcceptWord("offset")) {
            _s.Assign("offset");
            offset.SetOffset(_s.Number("a number").real);
        } else if (_s.AcceptWord("scale")) {
            _s.Assign("scale");
            offset.SetScale(_s.Number("a number").real);
        } else if (customData && _s.AcceptWord("customData")) {
            _s.Assign("customData");
            *customData = Sdf_ReadTextDictionary(_s);
        } else {
            _s.Fail(customData ? "offset, scale, customData or ')'" : "offset, scale or ')'");
        }
    });
    return offset;
}

void Sdf_TextParser::_ParseReferences(SdfListOpType op, const _Spec& spec)
{
    _ParseListOp<SdfReference>(SdfFieldKeys->References, op, spec, "in references", [&] {
        std::string asset;
        SdfPath prim;
        _ArcTarget(&asset, &prim);
        VtDictionary customData;
        const SdfLayerOffset offset = _LayerOffset(&customData);
        return SdfReference(asset, prim, offset, customData);
    });
}

void Sdf_TextParser::_ParsePayload(SdfListOpType op, const _Spec& spec)
{
    _ParseListOp<SdfPayload>(SdfFieldKeys->Payload, op, spec, "in payload", [&] {
        std::string asset;
        SdfPath prim;
        _ArcTarget(&asset, &prim);
        return SdfPayload(asset, prim, _LayerOffset(nullptr));
    });
}

void Sdf_TextParser::_ParsePrimPaths(const TfToken& field, SdfListOpType op, const _Spec& spec)
{
    _ParseListOp<SdfPath>(field, op, spec, "in a list of prims", [&] { return _PrimPath(spec); });
}

void Sdf_TextParser::_ParseVariantSetNames(SdfListOpType op, const _Spec& spec)
{
    if (!_s.AtString() && _s.Peek() != '[') {
        _s.Fail("a variant set's name between quotes, or a list of them");
    }
    size_t end = 0;
    std::vector<TfToken> sets;
    const size_t begin = _s.Offset();
    _ParseListOp<std::string>(SdfFieldKeys->VariantSetNames, op, spec, "in variantSets", [&] {
        const size_t offset = _s.Offset();
        const std::string name = _s.String("a variant set's name between quotes");
        if (!SdfSchema::IsValidVariantIdentifier(name)) {
            _s.Fail(offset, "\"" + name + "\"", "a variant set's name: letters, digits, '_', '-' and '|'");
        }
        end = _s.Offset();
        sets.push_back(TfToken(name));
        return name;
    });
    if (end == 0) {
        _s.Fail(begin, "an empty list", "at least one variant set's name");
    }
    if (op == SdfListOpTypeExplicit || op == SdfListOpTypeAdded) {
        for (const TfToken& set : sets) {
            if (!set.IsEmpty()) {
                _data->CreateSpec(spec.path.AppendVariantSelection(set.GetString(), std::string()),
                                  SdfSpecTypeVariantSet);
            }
        }
        spec.fields.Set(SdfChildrenKeys->VariantSetChildren, std::move(sets));
    }
}

void Sdf_TextParser::_ParseSubLayers(const _Spec& spec)
{
    std::vector<std::string> paths;
    SdfLayerOffsetVector offsets;
    _s.Assign("subLayers");
    _s.List('[', ']', "in subLayers", [&] {
        paths.push_back(_s.Asset("an asset path such as @file.usda@"));
        offsets.push_back(_LayerOffset(nullptr));
    });
    if (!paths.empty()) {
        spec.fields.Set(SdfFieldKeys->SubLayers, std::move(paths));
        spec.fields.Set(SdfFieldKeys->SubLayerOffsets, std::move(offsets));
    }
}

void Sdf_TextParser::_ParseRelocates(const _Spec& spec)
{
    SdfRelocates relocates;
    const auto read = [&](bool mayBeEmpty) {
        const size_t offset = _s.Offset();
        std::string text;
        const SdfPath path = _Path("the path of a prim", &text);
        if (path.IsEmpty() ? !mayBeEmpty : !isPrim(path)) {
            _s.Fail(offset, text, "the path of a prim, not in a variant");
        }
        return path.IsEmpty() ? path : path.MakeAbsolutePath(spec.path);
    };
    _s.Assign("relocates");
    _s.List('{', '}', "in relocates", [&] {
        const SdfPath source = read(false);
        _s.SkipBlanks();
        _s.Expect(':', "between two paths");
        _s.SkipBlanks();
        relocates.emplace_back(source, read(true));
    });
    if (spec.type == SdfSpecTypePseudoRoot) {
        spec.fields.Set(SdfFieldKeys->LayerRelocates, std::move(relocates));
    } else {
        spec.fields.Set(SdfFieldKeys->Relocates, SdfRelocatesMap(relocates.begin(), relocates.end()));
    }
}

void Sdf_TextParser::_ParseSubstitutions(const TfToken& key, const _Spec& spec)
{
    VtDictionary dictionary;
    _s.Assign("substitutions");
    _s.List('{', '}', "in substitutions", [&] {
        const std::string from = _s.String("a string");
        _s.SkipBlanks();
        _s.Expect(':', "between two strings");
        _s.SkipBlanks();
        dictionary[from] = VtValue(_s.String("a string"));
    });
    spec.fields.Set(key, std::move(dictionary));
}

void Sdf_TextParser::_ParseVariantSelections(const _Spec& spec)
{
    _s.Assign("variants");
    const size_t offset = _s.Offset();
    auto selections = spec.fields.GetAs<SdfVariantSelectionMap>(SdfFieldKeys->VariantSelection);
    for (const auto& entry : Sdf_ReadTextDictionary(_s)) {
        if (!entry.second.IsHolding<std::string>()) {
            _s.Fail(offset, "a selection for \"" + entry.first + "\" that is no string",
                    "entries of type string");
        }
        const std::string& variant = entry.second.UncheckedGet<std::string>();
        if (!SdfSchema::IsValidVariantSelection(variant)) {
            _s.Fail(offset, "\"" + variant + "\" for \"" + entry.first + "\"",
                    "a variant's name: letters, digits, '_', '-' and '|'");
        }
        selections[entry.first] = variant;
    }
    spec.fields.Set(SdfFieldKeys->VariantSelection, std::move(selections));
}

PXR_NAMESPACE_CLOSE_SCOPE
