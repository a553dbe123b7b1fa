#pragma once

/// Writes layers and specs as text.

#include <pxr/base/tf/token.h>
#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/abstractData.h>
#include <pxr/usd/sdf/layerOffset.h>
#include <pxr/usd/sdf/listOp.h>
#include <pxr/usd/sdf/path.h>

#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Returns a value's text as it stands behind `=`.
std::string Sdf_ValueToText(const VtValue& value);
/// Returns the text of a dictionary whose closing brace stands at the indentation.
std::string Sdf_DictionaryToText(const VtDictionary& dictionary, int indent);

/// Writes the specs of a data object. Nested prims are written without recursion.
class Sdf_TextWriter
{
public:
    explicit Sdf_TextWriter(const SdfAbstractData& data) : _data(data) {}

    /// Returns the whole layer; a comment that is not empty stands in for the layer's own.
    std::string WriteLayer(const std::string& comment);
    /// Returns one prim, variant set, variant or property with all that lies below it.
    std::string WriteSpec(const SdfPath& path, int indent);

private:
    // What is still to be written: a spec, or text as it is.
    struct _Pending
    {
        SdfPath path;
        int indent;
        std::string text;
    };

    void _WritePending();
    void _Open(const SdfPath& path, int indent);
    void _WriteBody(const SdfPath& path, int indent);
    void _WritePrimMetadata(const SdfPath& path, int indent);
    void _WriteAttribute(const SdfPath& path, int indent);
    void _WriteAttributeDeclaration(const SdfPath& path, int indent, const std::string& type);
    void _WriteTimeSamples(const SdfPath& path, int indent, const std::string& type);
    void _WriteRelationship(const SdfPath& path, int indent);
    void _WriteProperty(const SdfPath& path, int indent);
    // Writes `(`, the comment, the fields and `)`; nothing where there is nothing between them.
    void _WriteBlock(const SdfPath& path, int indent, bool (*belongs)(const TfToken&, SdfSpecType));
    void _WriteField(const SdfPath& path, const TfToken& field, int indent);
    bool _WriteSpecialField(const SdfPath& path, const TfToken& field, const VtValue& value, int indent);
    bool _WriteListOpField(const TfToken& field, const VtValue& value, int indent);
    void _WriteUnregistered(const TfToken& field, const VtValue& value, int indent);
    void _WriteSubLayers(const SdfPath& path, int indent);
    void _WriteRelocates(const SdfPath& owner, const std::vector<std::pair<SdfPath, SdfPath>>& relocates,
                         int indent);
    // With `commaAtEnd` a list of several lines has a comma behind its last item, too, as properties have it.
    template <class T>
    void _WriteListOp(const std::string& prefix, const std::string& name, const SdfListOp<T>& op, int indent,
                      bool commaAtEnd = false);
    template <class T>
    void _WriteItems(const std::vector<T>& items, int indent, bool commaAtEnd);
    void _WriteNames(const char* what, const SdfPath& path, const TfToken& field, int indent);
    void _Indent(int indent) { _out.append(static_cast<size_t>(indent) * 4, ' '); }
    void _Line(int indent, const std::string& text)
    {
        _Indent(indent);
        _out += text;
        _out += '\n';
    }

    const SdfAbstractData& _data;
    std::string _out;
    std::vector<_Pending> _pending;
};

PXR_NAMESPACE_CLOSE_SCOPE
