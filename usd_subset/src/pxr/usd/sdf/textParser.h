#pragma once

/// Turns the text of a layer into specs.

#include "pxr/usd/sdf/textScanner.h"

#include <pxr/base/tf/token.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/data.h>
#include <pxr/usd/sdf/layerOffset.h>
#include <pxr/usd/sdf/listOp.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/types.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Prims and variants may be nested this deep.
constexpr int kSdf_MaxTextPrimDepth = 1000;

/// Reads a layer's text into `data`, which must be empty. Where the text is bad it returns false and one line
/// `NAME:LINE: found X, expected Y`. With `metadataOnly` it stops behind the layer's own fields.
bool Sdf_ParseText(const std::string& name, std::string_view text, bool metadataOnly, SdfData* data,
                   std::string* error);
/// Says whether the text begins as a text layer does.
bool Sdf_IsTextLayer(std::string_view text);

/// The reader of one text. Its parts lie in several sources: structure, metadata, properties.
class Sdf_TextParser
{
public:
    Sdf_TextParser(std::string_view text, SdfData* data) : _s(text), _data(data) {}
    void ParseLayer(bool metadataOnly);

private:
    // The names of the children that the spec being read has got so far.
    struct _Children
    {
        std::vector<TfToken> prims;
        std::vector<TfToken> properties;
    };
    template <class T>
    void _Set(const SdfPath& path, const TfToken& field, T value)
    {
        _data->Adopt(path, field, VtValue::Take(value));
    }

    void _ParseHeader();
    void _ParsePrim(const SdfPath& parent, SdfSpecifier specifier, std::vector<TfToken>* siblings, int depth);
    void _ParsePrimContents(const SdfPath& path, int depth);
    void _ParseVariantSet(const SdfPath& owner, int depth);
    void _ParseVariant(const SdfPath& owner, const std::string& set, std::vector<TfToken>* variants,
                       int depth);
    bool _AcceptSpecifier(SdfSpecifier* specifier);
    bool _ParseReorder(const SdfPath& path);
    std::vector<std::string> _NameList(const char* what);
    std::vector<TfToken> _TokenList(const char* what);

    void _ParseMetadata(const SdfPath& path, SdfSpecType type);
    void _ParseMetadatum(const SdfPath& path, SdfSpecType type);
    bool _ParseComposition(const std::string& key, SdfListOpType op, const SdfPath& path);
    bool _ParseSpecialMetadatum(const std::string& key, const SdfPath& path, SdfSpecType type);
    void _ParseListOpMetadatum(const TfToken& key, SdfListOpType op, const SdfPath& path, SdfSpecType type);
    void _ParseGenericMetadatum(const TfToken& key, const SdfPath& path, SdfSpecType type);
    void _ParseUnknownMetadatum(const TfToken& key, SdfListOpType op, const SdfPath& path);
    void _ParseSubLayers();
    void _ParseRelocates(const SdfPath& path, SdfSpecType type);
    void _ParseSubstitutions(const TfToken& key, const SdfPath& path);
    void _ParseVariantSelections(const SdfPath& path);
    SdfLayerOffset _LayerOffset(VtDictionary* customData);
    bool _AcceptListOp(SdfListOpType* op);

    // Reads None, one item, or a list of items, and puts them into a list op.
    template <class Item, class ReadItem>
    void _ParseListOp(const TfToken& field, SdfListOpType op, const SdfPath& path, const char* what,
                      const ReadItem& readItem);
    template <class Item>
    void _StoreListOp(const TfToken& field, SdfListOpType op, const SdfPath& path, size_t offset,
                      const std::vector<Item>& items);
    SdfPath _PathItem(const SdfPath& owner, const char* what);

    void _ParseProperty(const SdfPath& owner, std::vector<TfToken>* siblings);
    void _ParseAttribute(const SdfPath& owner, bool custom, SdfVariability variability, bool hasOp,
                         SdfListOpType op, std::vector<TfToken>* siblings);
    void _ParseRelationship(const SdfPath& owner, bool custom, SdfVariability variability, bool hasOp,
                            SdfListOpType op, std::vector<TfToken>* siblings);
    SdfPath _MakeProperty(const SdfPath& owner, SdfSpecType type, std::vector<TfToken>* siblings);
    VtValue _AttributeValue(const std::string& typeName);
    void _ParseTimeSamples(const SdfPath& path, const std::string& typeName);
    void _ParseConnection(const SdfPath& path, SdfListOpType op);

    Sdf_TextScanner _s;
    SdfData* _data;
};

template <class Item>
void Sdf_TextParser::_StoreListOp(const TfToken& field, SdfListOpType op, const SdfPath& path, size_t offset,
                                  const std::vector<Item>& items)
{
    if (items.empty() && op != SdfListOpTypeExplicit) {
        _s.Fail(offset, "an empty list", "at least one item, as only a plain list may be empty");
    }
    SdfListOp<Item> listOp = _data->GetAs<SdfListOp<Item>>(path, field);
    std::vector<Item> unique;
    for (const Item& item : items) {
        if (items.size() < 1000 && std::find(unique.begin(), unique.end(), item) != unique.end()) {
            _s.Fail(offset, "a list that names an item twice", "each item once");
        }
        unique.push_back(item);
    }
    if (op == SdfListOpTypeExplicit && items.empty()) {
        listOp.ClearAndMakeExplicit();
    } else {
        listOp.SetItems(items, op);
    }
    _Set(path, field, listOp);
}

template <class Item, class ReadItem>
void Sdf_TextParser::_ParseListOp(const TfToken& field, SdfListOpType op, const SdfPath& path,
                                  const char* what, const ReadItem& readItem)
{
    _s.Expect('=', what);
    _s.Peek();
    const size_t offset = _s.Offset();
    std::vector<Item> items;
    if (_s.Peek() == '[') {
        _s.List('[', ']', what, [&] { items.push_back(readItem()); });
    } else if (!_s.AcceptWord("None")) {
        items.push_back(readItem());
    }
    _StoreListOp(field, op, path, offset, items);
}

PXR_NAMESPACE_CLOSE_SCOPE
