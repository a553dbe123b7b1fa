#include "pxr/usd/sdf/textParser.h"

#include "pxr/usd/sdf/textValues.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/sdf/schema.h>

#include <new>
#include <stdexcept>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

constexpr std::string_view kHeader = "#usda ";

std::string nested(int levels) { return "nested deeper than " + std::to_string(levels) + " levels"; }

bool isSpecifier(std::string_view word) { return word == "def" || word == "over" || word == "class"; }

SdfSpecifier specifierOf(std::string_view word)
{
    return word == "def" ? SdfSpecifierDef : word == "class" ? SdfSpecifierClass : SdfSpecifierOver;
}

} // namespace

bool Sdf_IsTextLayer(std::string_view text) { return text.substr(0, kHeader.size()) == kHeader; }

bool Sdf_ParseText(const std::string& name, std::string_view text, bool metadataOnly, SdfData* data,
                   std::string* error)
{
    const auto report = [&](size_t offset, const std::string& found, const std::string& expected) {
        *error = name + ":" + Sdf_PlaceOf(text, offset) + ": found " + found + ", expected " + expected;
        return false;
    };
    try {
        if (text.empty()) {
            return report(0, "an empty file", "a line such as #usda 1.0");
        }
        const size_t bad = Sdf_FindBadByte(text);
        if (bad < text.size()) {
            return report(bad, "bytes that are not UTF-8", "UTF-8 text");
        }
        Sdf_TextParser(name, text, data).ParseLayer(metadataOnly);
        return true;
    } catch (const Sdf_TextProblem& problem) {
        return report(problem.offset, problem.found, problem.expected);
    } catch (const std::bad_alloc&) {
        *error = name + ": there is not enough memory to read the file";
    } catch (const std::exception& exception) {
        *error = name + ": the file cannot be read: " + exception.what();
    }
    return false;
}

void Sdf_TextParser::_ParseHeader()
{
    const std::string_view line = _s.Header();
    if (!Sdf_IsTextLayer(line)) {
        _s.Fail(0, "'" + std::string(line.substr(0, std::min<size_t>(40, Sdf_FindBadByte(line)))) + "'",
                "a first line such as #usda 1.0");
    }
    if (line.substr(line.size() - 3) != "1.0") {
        TF_WARN(
            "%s: the first line is '%s', and this reader knows version 1.0; what is newer than that may be "
            "misread.",
            _name.c_str(), std::string(line.substr(0, 40)).c_str());
    }
}

void Sdf_TextParser::ParseLayer(bool metadataOnly)
{
    const SdfPath& path = SdfPath::AbsoluteRootPath();
    const _Spec root{path, SdfSpecTypePseudoRoot, _data->CreateFields(path, SdfSpecTypePseudoRoot)};
    _ParseHeader();
    _s.SkipLines();
    if (_s.Peek() == '(') {
        _ParseMetadata(root);
        _s.SkipLines();
    }
    std::vector<TfToken> prims;
    while (!metadataOnly && !_s.AtEnd()) {
        _ParseRootStatement(&prims);
        _s.SkipLines();
    }
    if (!prims.empty()) {
        root.fields.Set(SdfChildrenKeys->PrimChildren, std::move(prims));
    }
}

void Sdf_TextParser::_ParseRootStatement(std::vector<TfToken>* prims)
{
    const SdfPath& root = SdfPath::AbsoluteRootPath();
    const std::string_view word = _s.PeekIdentifier();
    if (isSpecifier(word)) {
        _ParsePrim(root, word, prims, 1);
        _s.SkipLineRest();
        // A carriage return alone ends no line here.
        const bool ended = _s.AtEnd() || _s.Accept('\n') || (_s.Accept('\r') && _s.Accept('\n'));
        if (!ended) {
            _s.Fail("a new line behind a prim");
        }
    } else if (_s.AcceptWord("reorder")) {
        _s.Gap("rootPrims");
        if (!_s.AcceptWord("rootPrims")) {
            _s.Fail("rootPrims");
        }
        _s.Assign("rootPrims");
        _data->GetFields(root).Set(SdfFieldKeys->PrimOrder, _NameList("a name between quotes"));
        if (!_s.EndStatement() && !_s.AtEnd()) {
            _s.Fail("a new line or ';' behind a list of names");
        }
    } else {
        _s.Fail("def, over, class or reorder rootPrims");
    }
}

std::vector<TfToken> Sdf_TextParser::_NameList(const char* what)
{
    std::vector<TfToken> names;
    if (_s.Peek() != '[') {
        names.push_back(TfToken(_s.String(what)));
        return names;
    }
    _s.List('[', ']', "in a list of names", [&] { names.push_back(TfToken(_s.String(what))); });
    if (names.empty()) {
        _s.Fail(_s.Offset() - 1, "an empty list", what);
    }
    return names;
}

// Reads `reorder nameChildren = [...]` or `reorder properties = [...]`; leaves other statements alone that
// begin with that word.
bool Sdf_TextParser::_AcceptOrder(const _Spec& prim)
{
    const size_t start = _s.Offset();
    if (_s.AcceptWord("reorder") && _s.SkipBlanks()) {
        const bool children = _s.AcceptWord("nameChildren");
        if (children || _s.AcceptWord("properties")) {
            _s.Assign(children ? "nameChildren" : "properties");
            prim.fields.Set(children ? SdfFieldKeys->PrimOrder : SdfFieldKeys->PropertyOrder,
                            _NameList("a name between quotes"));
            return true;
        }
    }
    _s.GoTo(start);
    return false;
}

std::string Sdf_TextParser::_PrimTypeName()
{
    std::string typeName(_s.Name("a prim's type or its name between quotes"));
    for (;;) {
        const size_t end = _s.Offset();
        _s.SkipBlanks();
        if (!_s.Accept('.')) {
            _s.GoTo(end);
            return typeName;
        }
        _s.SkipBlanks();
        typeName += '.' + std::string(_s.Name("a type's name"));
    }
}

void Sdf_TextParser::_ParsePrim(const SdfPath& parent, std::string_view specifier,
                                std::vector<TfToken>* siblings, int depth)
{
    _s.GoTo(_s.Offset() + specifier.size());
    _s.Gap("a prim's type or name");
    std::string typeName;
    if (!_s.AtString()) {
        typeName = _PrimTypeName();
        _s.Gap("a prim's name");
    }
    const size_t offset = _s.Offset();
    const std::string name = _s.String("a prim's name between quotes");
    if (!SdfPath::IsValidIdentifier(name)) {
        _s.Fail(offset, "\"" + name + "\"",
                "a prim's name: letters, digits and '_', not beginning with a digit");
    }
    if (depth > kSdf_MaxTextPrimDepth) {
        _s.Fail(offset, "prims " + nested(kSdf_MaxTextPrimDepth), "fewer levels");
    }
    const TfToken token(name);
    _Spec prim{parent.AppendChild(token), SdfSpecTypePrim, SdfData::Fields()};
    if (_data->HasSpec(prim.path)) {
        _s.Fail(offset, "a second prim <" + prim.path.GetString() + ">", "each prim once");
    }
    prim.fields = _data->CreateFields(prim.path, SdfSpecTypePrim);
    prim.fields.Reserve(4);
    siblings->push_back(token);
    prim.fields.Set(SdfFieldKeys->Specifier, specifierOf(specifier));
    if (!typeName.empty()) {
        prim.fields.Set(SdfFieldKeys->TypeName, TfToken(typeName));
    }
    _s.SkipLines();
    if (_s.Peek() == '(') {
        _ParseMetadata(prim);
        _s.SkipLines();
    }
    _s.Expect('{', "to open a prim");
    _ParsePrimContents(prim, depth);
}

// Reads up to and with the closing brace of a prim or a variant.
void Sdf_TextParser::_ParsePrimContents(const _Spec& prim, int depth)
{
    const TfToken& setsField = SdfChildrenKeys->VariantSetChildren;
    _Children children;
    children.variantSets = prim.fields.GetAs<std::vector<TfToken>>(setsField);
    _s.SkipLines();
    while (!_s.Accept('}')) {
        _ParsePrimStatement(prim, &children, depth);
        _s.SkipLines();
    }
    if (!children.prims.empty()) {
        prim.fields.Set(SdfChildrenKeys->PrimChildren, std::move(children.prims));
    }
    if (!children.properties.empty()) {
        prim.fields.Set(SdfChildrenKeys->PropertyChildren, std::move(children.properties));
    }
    if (!children.variantSets.empty()) {
        prim.fields.Set(setsField, std::move(children.variantSets));
    }
}

void Sdf_TextParser::_ParsePrimStatement(const _Spec& prim, _Children* children, int depth)
{
    const std::string_view word = _s.PeekIdentifier();
    if (word.empty()) {
        _s.Fail("a property, a prim, a variant set or '}'");
    } else if (isSpecifier(word)) {
        _ParsePrim(prim.path, word, &children->prims, depth + 1);
        _EndBlock("behind a prim");
    } else if (word == "variantSet") {
        _ParseVariantSet(prim, &children->variantSets, depth + 1);
        _EndBlock("behind a variant set");
    } else {
        if (word != "reorder" || !_AcceptOrder(prim)) {
            _ParseProperty(prim, &children->properties);
        }
        if (!_s.EndStatement()) {
            _s.Fail("a new line or ';' behind a property");
        }
    }
}

void Sdf_TextParser::_EndBlock(const char* where)
{
    if (!_s.EndLine()) {
        _s.Fail(std::string("a new line ") + where);
    }
}

std::string Sdf_TextParser::_VariantName(const char* what)
{
    const size_t offset = _s.Offset();
    const std::string name = _s.String(what);
    if (name.empty() || !SdfSchema::IsValidVariantIdentifier(name)) {
        _s.Fail(offset, "\"" + name + "\"", std::string(what) + ": letters, digits, '_', '-' and '|'");
    }
    return name;
}

void Sdf_TextParser::_ParseVariantSet(const _Spec& owner, std::vector<TfToken>* siblings, int depth)
{
    _s.AcceptWord("variantSet");
    _s.Gap("a variant set's name");
    const size_t offset = _s.Offset();
    const std::string name = _VariantName("a variant set's name between quotes");
    if (depth > kSdf_MaxTextPrimDepth) {
        _s.Fail(offset, "variants " + nested(kSdf_MaxTextPrimDepth), "fewer levels");
    }
    const SdfPath path = owner.path.AppendVariantSelection(name, std::string());
    if (!_data->HasSpec(path)) {
        _data->CreateSpec(path, SdfSpecTypeVariantSet);
        siblings->push_back(TfToken(name));
    }
    _s.Assign("a variant set's name");
    _s.SkipLines();
    _s.Expect('{', "to open a variant set");
    _s.SkipLines();
    // Where a set stands in several statements, the last one lists its variants.
    std::vector<TfToken> variants;
    _Names names;
    while (!_s.Accept('}')) {
        variants.push_back(_ParseVariant(owner.path, name, &names, depth));
        _s.SkipLines();
    }
    _data->GetFields(path).Set(SdfChildrenKeys->VariantChildren, std::move(variants));
}

TfToken Sdf_TextParser::_ParseVariant(const SdfPath& owner, const std::string& set, _Names* names, int depth)
{
    const size_t offset = _s.Offset();
    const std::string name =
        _VariantName(_s.AtString() ? "a variant's name" : "a variant's name between quotes or '}'");
    const TfToken token(name);
    if (!names->insert(token).second) {
        _s.Fail(offset, "a second variant \"" + name + "\"", "each variant once");
    }
    const SdfPath path = owner.AppendVariantSelection(set, name);
    const _Spec variant{path, SdfSpecTypeVariant, _data->CreateFields(path, SdfSpecTypeVariant)};
    _s.SkipLines();
    if (_s.Peek() == '(') {
        _ParseMetadata(variant);
        _s.SkipLines();
    }
    _s.Expect('{', "to open a variant");
    _ParsePrimContents(variant, depth);
    return token;
}

PXR_NAMESPACE_CLOSE_SCOPE
