#include "pxr/usd/sdf/textParser.h"
#include "pxr/usd/sdf/textValues.h"

#include <pxr/usd/sdf/schema.h>

PXR_NAMESPACE_OPEN_SCOPE

void Sdf_TextParser::_ParseProperty(const SdfPath& owner, std::vector<TfToken>* siblings)
{
    SdfListOpType op = SdfListOpTypeExplicit;
    const bool hasOp = _AcceptListOp(&op);
    const bool custom = _s.AcceptWord("custom");
    const bool varying = _s.AcceptWord("varying");
    const bool uniform = !varying && (_s.AcceptWord("uniform") || _s.AcceptWord("config"));
    if (!uniform && _s.AcceptWord("rel")) {
        _ParseRelationship(owner, custom, varying ? SdfVariabilityVarying : SdfVariabilityUniform, hasOp, op,
                           siblings);
    } else {
        _ParseAttribute(owner, custom, uniform ? SdfVariabilityUniform : SdfVariabilityVarying, hasOp, op,
                        siblings);
    }
}

// Reads the name and makes the spec; a property that is described in several statements stays one spec.
SdfPath Sdf_TextParser::_MakeProperty(const SdfPath& owner, SdfSpecType type, std::vector<TfToken>* siblings)
{
    _s.Peek();
    const size_t offset = _s.Offset();
    const std::string name(_s.Word("a property's name"));
    if (!SdfPath::IsValidNamespacedIdentifier(name)) {
        _s.Fail(offset, "'" + name + "'", "a property's name: letters, digits and '_', parted by ':'");
    }
    const TfToken token(name);
    const SdfPath path = owner.AppendProperty(token);
    const SdfSpecType existing = _data->GetSpecType(path);
    if (existing == SdfSpecTypeUnknown) {
        _data->CreateSpec(path, type);
        siblings->push_back(token);
    } else if (existing != type) {
        _s.Fail(offset, "a second property <" + path.GetString() + "> of another kind", "each name once");
    }
    return path;
}

VtValue Sdf_TextParser::_AttributeValue(const std::string& typeName)
{
    if (_s.AcceptWord("None")) {
        return VtValue(SdfValueBlock());
    }
    const SdfValueTypeName type = SdfSchema::GetInstance().FindType(typeName);
    if (type && Sdf_CanReadTextValue(type.GetDefaultValue().GetTypeid())) {
        return Sdf_ReadTextValue(_s, type.GetDefaultValue().GetTypeid());
    }
    // A type that nobody knows: the value is kept as text and written back.
    return VtValue(SdfUnregisteredValue(Sdf_RecordTextValue(_s)));
}

void Sdf_TextParser::_ParseAttribute(const SdfPath& owner, bool custom, SdfVariability variability,
                                     bool hasOp, SdfListOpType op, std::vector<TfToken>* siblings)
{
    _s.Peek();
    const size_t offset = _s.Offset();
    const std::string typeName = Sdf_ReadTextTypeName(_s, "an attribute's type");
    const SdfPath path = _MakeProperty(owner, SdfSpecTypeAttribute, siblings);
    const TfToken type(typeName);
    const TfToken oldType = _data->GetAs<TfToken>(path, SdfFieldKeys->TypeName, type);
    if (oldType != type) {
        _s.Fail(offset, "type '" + typeName + "' for <" + path.GetString() + ">",
                "'" + oldType.GetString() + "' as before");
    }
    if (_data->GetAs<SdfVariability>(path, SdfFieldKeys->Variability, variability) != variability) {
        _s.Fail(offset, "another variability for <" + path.GetString() + ">", "the same as before");
    }
    _Set(path, SdfFieldKeys->Custom, custom || _data->GetAs<bool>(path, SdfFieldKeys->Custom, false));
    _Set(path, SdfFieldKeys->TypeName, type);
    _Set(path, SdfFieldKeys->Variability, variability);
    if (_s.Accept('.')) {
        if (_s.AcceptWord("connect")) {
            _ParseConnection(path, op);
        } else if (!hasOp && _s.AcceptWord("timeSamples")) {
            _ParseTimeSamples(path, typeName);
        } else if (!hasOp && _s.AcceptWord("spline")) {
            // A spline is not evaluated; it is kept as text and written back.
            _s.Expect('=', "behind spline");
            _Set(path, SdfFieldKeys->Spline, SdfUnregisteredValue(std::string(_s.Block("in a spline"))));
        } else {
            _s.Fail(hasOp ? "connect" : "timeSamples, spline or connect");
        }
        return;
    }
    if (hasOp) {
        _s.Fail("'.connect', as only connections and targets are edited as lists");
    }
    if (_s.Accept('=')) {
        _data->Adopt(path, SdfFieldKeys->Default, _AttributeValue(typeName));
    }
    if (_s.Peek() == '(') {
        _ParseMetadata(path, SdfSpecTypeAttribute);
    }
}

void Sdf_TextParser::_ParseTimeSamples(const SdfPath& path, const std::string& typeName)
{
    SdfTimeSampleMap samples;
    _s.Expect('=', "behind timeSamples");
    _s.List('{', '}', "in timeSamples", [&] {
        _s.Peek();
        const size_t offset = _s.Offset();
        const double time = _s.Number("a time or '}'").real;
        if (time != time) {
            _s.Fail(offset, "'nan'", "a time that is a number");
        }
        _s.Expect(':', "behind a time");
        samples[time] = _AttributeValue(typeName);
    });
    _Set(path, SdfFieldKeys->TimeSamples, samples);
}

void Sdf_TextParser::_ParseConnection(const SdfPath& path, SdfListOpType op)
{
    _ParseListOp<SdfPath>(SdfFieldKeys->ConnectionPaths, op, path, "in connections",
                          [&] { return _PathItem(path, "the path of an attribute"); });
}

void Sdf_TextParser::_ParseRelationship(const SdfPath& owner, bool custom, SdfVariability variability,
                                        bool hasOp, SdfListOpType op, std::vector<TfToken>* siblings)
{
    const SdfPath path = _MakeProperty(owner, SdfSpecTypeRelationship, siblings);
    _Set(path, SdfFieldKeys->Variability, variability);
    if (custom) {
        _Set(path, SdfFieldKeys->Custom, true);
    }
    const char next = _s.Peek();
    if (next == '=') {
        _ParseListOp<SdfPath>(SdfFieldKeys->TargetPaths, op, path, "in targets",
                              [&] { return _PathItem(path, "the path of a target"); });
    } else if (hasOp && !_s.AtNewLine()) {
        _s.Fail("'=' and targets");
    }
    if (!hasOp && _s.Peek() == '(') {
        _ParseMetadata(path, SdfSpecTypeRelationship);
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
