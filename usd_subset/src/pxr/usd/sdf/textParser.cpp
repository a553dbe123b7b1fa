#include "pxr/usd/sdf/textParser.h"

#include <pxr/usd/sdf/schema.h>

#include <new>
#include <stdexcept>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

std::string nested(int levels) { return "nested deeper than " + std::to_string(levels) + " levels"; }

} // namespace

bool Sdf_IsTextLayer(std::string_view text)
{
    return text.substr(0, 6) == "#usda " || text.substr(0, 5) == "#sdf ";
}

bool Sdf_ParseText(const std::string& name, std::string_view text, bool metadataOnly, SdfData* data,
                   std::string* error)
{
    const auto report = [&](size_t offset, const std::string& found, const std::string& expected) {
        *error = name + ":" + std::to_string(Sdf_LineOf(text, offset)) + ": found " + found + ", expected " +
                 expected;
        return false;
    };
    try {
        if (text.empty()) {
            return report(0, "an empty file", "a line such as #usda 1.0");
        }
        const size_t bad = Sdf_FindBadByte(text);
        if (bad < text.size()) {
            return report(bad, text[bad] == '\0' ? "a NUL byte" : "bytes that are not UTF-8", "UTF-8 text");
        }
        Sdf_TextParser(text, data).ParseLayer(metadataOnly);
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
    const size_t space = line.find(' ');
    const bool known = Sdf_IsTextLayer(line);
    const char major = known && space + 1 < line.size() ? line[space + 1] : '\0';
    if (!known || major != '1') {
        _s.Fail(0, "'" + std::string(line.substr(0, 40)) + "'", "a first line such as #usda 1.0");
    }
}

void Sdf_TextParser::ParseLayer(bool metadataOnly)
{
    const SdfPath& root = SdfPath::AbsoluteRootPath();
    _data->CreateSpec(root, SdfSpecTypePseudoRoot);
    _ParseHeader();
    if (_s.Peek() == '(') {
        _ParseMetadata(root, SdfSpecTypePseudoRoot);
    }
    std::vector<TfToken> prims;
    while (!metadataOnly && !_s.AtEnd()) {
        SdfSpecifier specifier = SdfSpecifierOver;
        if (_AcceptSpecifier(&specifier)) {
            _ParsePrim(root, specifier, &prims, 1);
        } else if (!_ParseReorder(root)) {
            _s.Fail("def, over, class or reorder rootPrims");
        }
        _s.EndStatement('\0', "behind a prim");
    }
    if (!prims.empty()) {
        _Set(root, SdfChildrenKeys->PrimChildren, prims);
    }
}

bool Sdf_TextParser::_AcceptSpecifier(SdfSpecifier* specifier)
{
    if (_s.AcceptWord("def")) {
        *specifier = SdfSpecifierDef;
    } else if (_s.AcceptWord("over")) {
        *specifier = SdfSpecifierOver;
    } else if (_s.AcceptWord("class")) {
        *specifier = SdfSpecifierClass;
    } else {
        return false;
    }
    return true;
}

std::vector<std::string> Sdf_TextParser::_NameList(const char* what)
{
    std::vector<std::string> names;
    if (_s.Peek() == '[') {
        _s.List('[', ']', "in a list of names", [&] { names.push_back(_s.String(what)); });
    } else {
        names.push_back(_s.String(what));
    }
    return names;
}

std::vector<TfToken> Sdf_TextParser::_TokenList(const char* what)
{
    std::vector<TfToken> tokens;
    for (const std::string& name : _NameList(what)) {
        tokens.push_back(TfToken(name));
    }
    return tokens;
}

// Reads `reorder NAMES = [...]`; gives the word back where another statement begins with it.
bool Sdf_TextParser::_ParseReorder(const SdfPath& path)
{
    _s.Peek();
    const size_t start = _s.Offset();
    if (!_s.AcceptWord("reorder")) {
        return false;
    }
    const bool isRoot = path.IsAbsoluteRootPath();
    const bool children = _s.AcceptWord(isRoot ? "rootPrims" : "nameChildren");
    if (!children && (isRoot || !_s.AcceptWord("properties"))) {
        _s.GoTo(start);
        return false;
    }
    _s.Expect('=', "behind reorder");
    _Set(path, children ? SdfFieldKeys->PrimOrder : SdfFieldKeys->PropertyOrder,
         _TokenList("a name between quotes"));
    return true;
}

void Sdf_TextParser::_ParsePrim(const SdfPath& parent, SdfSpecifier specifier, std::vector<TfToken>* siblings,
                                int depth)
{
    std::string typeName;
    if (!_s.AtString()) {
        typeName = std::string(_s.Word("a prim's type or its name between quotes"));
        while (_s.Accept('.')) {
            typeName += '.' + std::string(_s.Word("a type's name"));
        }
    }
    _s.Peek();
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
    const SdfPath path = parent.AppendChild(token);
    if (_data->HasSpec(path)) {
        _s.Fail(offset, "a second prim <" + path.GetString() + ">", "each prim once");
    }
    _data->CreateSpec(path, SdfSpecTypePrim);
    siblings->push_back(token);
    _Set(path, SdfFieldKeys->Specifier, specifier);
    if (!typeName.empty()) {
        _Set(path, SdfFieldKeys->TypeName, TfToken(typeName));
    }
    if (_s.Peek() == '(') {
        _ParseMetadata(path, SdfSpecTypePrim);
    }
    _s.Expect('{', "to open a prim");
    _ParsePrimContents(path, depth);
}

// Reads up to and with the closing brace of a prim or a variant.
void Sdf_TextParser::_ParsePrimContents(const SdfPath& path, int depth)
{
    _Children children;
    _s.Statements('}', "in a prim", [&] {
        SdfSpecifier specifier = SdfSpecifierOver;
        if (_s.PeekWord().empty()) {
            _s.Fail("a property, a prim, a variant set or '}'");
        }
        if (_AcceptSpecifier(&specifier)) {
            _ParsePrim(path, specifier, &children.prims, depth + 1);
        } else if (_s.AcceptWord("variantSet")) {
            _ParseVariantSet(path, depth + 1);
        } else if (!_ParseReorder(path)) {
            _ParseProperty(path, &children.properties);
        }
    });
    if (!children.prims.empty()) {
        _Set(path, SdfChildrenKeys->PrimChildren, children.prims);
    }
    if (!children.properties.empty()) {
        _Set(path, SdfChildrenKeys->PropertyChildren, children.properties);
    }
}

void Sdf_TextParser::_ParseVariantSet(const SdfPath& owner, int depth)
{
    _s.Peek();
    const size_t offset = _s.Offset();
    const std::string name = _s.String("a variant set's name between quotes");
    if (name.empty() || !SdfSchema::IsValidVariantIdentifier(name)) {
        _s.Fail(offset, "\"" + name + "\"", "a variant set's name: letters, digits, '_', '-' and '|'");
    }
    if (depth > kSdf_MaxTextPrimDepth) {
        _s.Fail(offset, "variants " + nested(kSdf_MaxTextPrimDepth), "fewer levels");
    }
    const SdfPath set = owner.AppendVariantSelection(name, std::string());
    if (!_data->HasSpec(set)) {
        _data->CreateSpec(set, SdfSpecTypeVariantSet);
        auto sets = _data->GetAs<std::vector<TfToken>>(owner, SdfChildrenKeys->VariantSetChildren);
        sets.push_back(TfToken(name));
        _Set(owner, SdfChildrenKeys->VariantSetChildren, sets);
    }
    auto variants = _data->GetAs<std::vector<TfToken>>(set, SdfChildrenKeys->VariantChildren);
    _s.Expect('=', "behind a variant set's name");
    _s.Expect('{', "to open a variant set");
    while (!_s.Accept('}')) {
        _ParseVariant(owner, name, &variants, depth);
    }
    _Set(set, SdfChildrenKeys->VariantChildren, variants);
}

void Sdf_TextParser::_ParseVariant(const SdfPath& owner, const std::string& set,
                                   std::vector<TfToken>* variants, int depth)
{
    _s.Peek();
    const size_t offset = _s.Offset();
    const std::string name = _s.String("a variant's name between quotes or '}'");
    if (name.empty() || !SdfSchema::IsValidVariantIdentifier(name)) {
        _s.Fail(offset, "\"" + name + "\"", "a variant's name: letters, digits, '_', '-' and '|'");
    }
    const SdfPath path = owner.AppendVariantSelection(set, name);
    if (_data->HasSpec(path)) {
        _s.Fail(offset, "a second variant \"" + name + "\"", "each variant once");
    }
    _data->CreateSpec(path, SdfSpecTypeVariant);
    variants->push_back(TfToken(name));
    if (_s.Peek() == '(') {
        _ParseMetadata(path, SdfSpecTypePrim);
    }
    _s.Expect('{', "to open a variant");
    _ParsePrimContents(path, depth);
}

PXR_NAMESPACE_CLOSE_SCOPE
