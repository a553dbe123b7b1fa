#include "pxr/usd/sdf/textParser.h"
#include "pxr/usd/sdf/textParserLists.h"
#include "pxr/usd/sdf/textSpline.h"
#include "pxr/usd/sdf/textValues.h"

#include <pxr/usd/sdf/schema.h>

PXR_NAMESPACE_OPEN_SCOPE

const TfToken& Sdf_TextParser::_Token(std::string_view word)
{
    TfToken& token = _tokens[word];
    if (token.IsEmpty() && !word.empty()) {
        token = TfToken(std::string(word));
    }
    return token;
}

const Sdf_TextType& Sdf_TextParser::_Type(const _Declaration& declaration)
{
    Sdf_TextType& type = _types[declaration.typeName][declaration.isArray ? 1 : 0];
    if (type.name.IsEmpty()) {
        type = Sdf_FindTextType(std::string(declaration.typeName) + (declaration.isArray ? "[]" : ""));
    }
    return type;
}

void Sdf_TextParser::_ParseProperty(const _Spec& prim, std::vector<TfToken>* siblings)
{
    SdfListOpType op = SdfListOpTypeExplicit;
    const std::string_view word = _s.PeekIdentifier();
    const bool hasOp = Sdf_AcceptListOpWord(word, &op);
    if (hasOp) {
        _s.AcceptWord(word);
        _s.Gap("a property");
    }
    _Declaration declaration;
    if (_AcceptRelationship(&declaration)) {
        const _Spec relationship = _MakeRelationship(prim, declaration, siblings);
        if (!hasOp) {
            _ParseRelationship(relationship);
        } else if (_s.AcceptAssign()) {
            _ParseTargets(relationship, op);
        }
        return;
    }
    _ParseType(&declaration);
    const _Spec attribute = _MakeAttribute(prim, declaration, siblings);
    if (!hasOp) {
        _ParseAttribute(attribute, declaration);
    } else if (!_AcceptDot() || !_s.AcceptWord("connect")) {
        _s.SkipBlanks();
        _s.Fail("'.connect', as only connections and targets are edited as lists");
    } else {
        _ParseConnection(attribute, op);
    }
}

// Reads `rel`, `custom rel`, `varying rel` or `custom varying rel`; leaves attributes alone.
bool Sdf_TextParser::_AcceptRelationship(_Declaration* declaration)
{
    const size_t start = _s.Offset();
    declaration->custom = _s.AcceptWord("custom");
    const bool parted = !declaration->custom || _s.SkipBlanks();
    const bool varying = parted && _s.AcceptWord("varying");
    if (!parted || (varying && !_s.SkipBlanks()) || !_s.AcceptWord("rel")) {
        _s.GoTo(start);
        declaration->custom = false;
        return false;
    }
    declaration->variability = varying ? SdfVariabilityVarying : SdfVariabilityUniform;
    _s.Gap("a relationship's name");
    return true;
}

void Sdf_TextParser::_ParseType(_Declaration* declaration)
{
    declaration->custom = _s.AcceptWord("custom");
    if (declaration->custom) {
        _s.Gap("an attribute's type");
    }
    if (_s.AcceptWord("uniform") || _s.AcceptWord("config")) {
        declaration->variability = SdfVariabilityUniform;
        _s.Gap("an attribute's type");
    }
    declaration->typeName = _s.Name("an attribute's type");
    declaration->isArray = Sdf_AcceptArrayBrackets(_s);
    _s.Gap("an attribute's name");
}

// Reads the name and makes the spec; a property that is described in several statements stays one spec.
Sdf_TextParser::_Spec Sdf_TextParser::_MakeProperty(const _Spec& prim, SdfSpecType type,
                                                    std::vector<TfToken>* siblings, size_t* offset)
{
    *offset = _s.Offset();
    const TfToken& name = _Token(_s.PropertyName("a property's name"));
    _Spec property{prim.path.AppendProperty(name), type, SdfData::Fields()};
    property.fields = _data->GetFields(property.path);
    if (!property.fields) {
        property.fields = _data->CreateFields(property.path, type);
        property.fields.Reserve(4);
        siblings->push_back(name);
    } else if (property.fields.GetSpecType() != type) {
        _s.Fail(*offset, "a second property <" + property.path.GetString() + "> of another kind",
                "each name once");
    }
    return property;
}

Sdf_TextParser::_Spec Sdf_TextParser::_MakeAttribute(const _Spec& prim, const _Declaration& declaration,
                                                     std::vector<TfToken>* siblings)
{
    const auto& keys = *SdfFieldKeys;
    size_t offset = 0;
    const _Spec attribute = _MakeProperty(prim, SdfSpecTypeAttribute, siblings, &offset);
    const TfToken& type = _Type(declaration).name;
    if (!attribute.fields.Find(keys.TypeName)) {
        attribute.fields.Set(keys.Custom, declaration.custom);
        attribute.fields.Set(keys.TypeName, type);
        attribute.fields.Set(keys.Variability, declaration.variability);
        return attribute;
    }
    if (const TfToken oldType = attribute.fields.GetAs<TfToken>(keys.TypeName); oldType != type) {
        _s.Fail(offset, "type '" + type.GetString() + "' for <" + attribute.path.GetString() + ">",
                "'" + oldType.GetString() + "' as before");
    }
    if (attribute.fields.GetAs<SdfVariability>(keys.Variability) != declaration.variability) {
        _s.Fail(offset, "another variability for <" + attribute.path.GetString() + ">", "the same as before");
    }
    if (declaration.custom) {
        attribute.fields.Set(keys.Custom, true);
    }
    return attribute;
}

Sdf_TextParser::_Spec Sdf_TextParser::_MakeRelationship(const _Spec& prim, const _Declaration& declaration,
                                                        std::vector<TfToken>* siblings)
{
    size_t offset = 0;
    const _Spec relationship = _MakeProperty(prim, SdfSpecTypeRelationship, siblings, &offset);
    relationship.fields.Set(SdfFieldKeys->Variability, declaration.variability);
    if (declaration.custom) {
        relationship.fields.Set(SdfFieldKeys->Custom, true);
    }
    return relationship;
}

// Reads `.` with blanks around it.
bool Sdf_TextParser::_AcceptDot()
{
    const size_t start = _s.Offset();
    _s.SkipBlanks();
    if (!_s.Accept('.')) {
        _s.GoTo(start);
        return false;
    }
    _s.SkipBlanks();
    return true;
}

VtValue Sdf_TextParser::_AttributeValue(const Sdf_TextType& type)
{
    return _s.AcceptKeyword("None") ? VtValue(SdfValueBlock()) : Sdf_ReadTextValue(_s, type);
}

void Sdf_TextParser::_ParseAttribute(const _Spec& attribute, const _Declaration& declaration)
{
    const Sdf_TextType& type = _Type(declaration);
    if (_AcceptDot()) {
        if (_s.AcceptWord("connect")) {
            _ParseConnection(attribute, SdfListOpTypeExplicit);
        } else if (_s.AcceptWord("timeSamples")) {
            _ParseTimeSamples(attribute, type);
        } else if (_s.AcceptWord("spline")) {
            _s.Assign("spline");
            attribute.fields.Set(SdfFieldKeys->Spline,
                                 SdfUnregisteredValue(Sdf_ReadTextSpline(_s, type.name)));
        } else {
            _s.Fail("timeSamples, spline or connect");
        }
        return;
    }
    if (_s.AcceptAssign()) {
        attribute.fields.Set(SdfFieldKeys->Default, _AttributeValue(type));
    }
    _s.SkipBlanks();
    if (_s.Peek() == '(') {
        _ParseMetadata(attribute);
    }
}

void Sdf_TextParser::_ParseTimeSamples(const _Spec& attribute, const Sdf_TextType& type)
{
    SdfTimeSampleMap samples;
    _s.Assign("timeSamples");
    _s.List('{', '}', "in timeSamples", [&] {
        const size_t offset = _s.Offset();
        const double time = _s.Number("a time or '}'").real;
        if (time != time) {
            _s.Fail(offset, "'nan'", "a time that is a number");
        }
        _s.SkipBlanks();
        _s.Expect(':', "behind a time");
        _s.SkipBlanks();
        // Times come in order as a rule.
        samples.insert_or_assign(samples.end(), time, _AttributeValue(type));
    });
    attribute.fields.Set(SdfFieldKeys->TimeSamples, std::move(samples));
}

void Sdf_TextParser::_ParseConnection(const _Spec& attribute, SdfListOpType op)
{
    _s.Assign("connect");
    _ParseListOp<SdfPath>(SdfFieldKeys->ConnectionPaths, op, attribute, "in connections", [&] {
        const size_t offset = _s.Offset();
        std::string text;
        const SdfPath path = _Path("the path of an attribute", &text);
        const bool valid =
            (path.IsPrimPath() || path.IsPropertyPath()) && !path.ContainsPrimVariantSelection();
        const SdfPath absolute = valid ? _FromPrim(attribute, path) : SdfPath();
        if (!absolute.IsPrimPath() && !absolute.IsPropertyPath()) {
            _s.Fail(offset, text, "the path of an attribute, not in a variant");
        }
        return absolute;
    });
}

void Sdf_TextParser::_ParseTargets(const _Spec& relationship, SdfListOpType op)
{
    _ParseListOp<SdfPath>(SdfFieldKeys->TargetPaths, op, relationship, "in targets", [&] {
        const size_t offset = _s.Offset();
        std::string text;
        const SdfPath path = _Path("the path of a target", &text);
        const SdfPath absolute = path.IsEmpty() ? path : _FromPrim(relationship, path);
        const bool valid = absolute.IsPrimPath() || absolute.IsPropertyPath() || absolute.IsMapperPath();
        if (!valid || absolute.ContainsPrimVariantSelection()) {
            _s.Fail(offset, text, "the path of a prim or property, not in a variant");
        }
        return absolute;
    });
}

void Sdf_TextParser::_ParseRelationship(const _Spec& relationship)
{
    if (_AcceptDot()) {
        if (!_s.AcceptWord("default")) {
            _s.Fail("default");
        }
        _s.Assign("default");
        relationship.fields.Set(SdfFieldKeys->Default, _Path("a path"));
        return;
    }
    const bool assigned = _s.AcceptAssign();
    if (assigned) {
        _ParseTargets(relationship, SdfListOpTypeExplicit);
    }
    _s.SkipBlanks();
    if (_s.Peek() == '(') {
        _ParseMetadata(relationship);
    } else if (!assigned && _s.Accept('[')) {
        // Names a target to say something of it; there is nothing that could be said here.
        _s.SkipBlanks();
        _Path("the path of a target");
        _s.SkipBlanks();
        _s.Expect(']', "behind a target");
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
