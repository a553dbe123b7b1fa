#pragma once

/// Turns the text of a layer into specs.

#include "pxr/usd/sdf/textScanner.h"
#include "pxr/usd/sdf/textValues.h"

#include <pxr/base/tf/token.h>
#include <pxr/base/vt/dictionary.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/data.h>
#include <pxr/usd/sdf/layerOffset.h>
#include <pxr/usd/sdf/listOp.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/types.h>

#include <array>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Prims and variants may be nested this deep.
constexpr int kSdf_MaxTextPrimDepth = 1000;

/// Reads a layer's text into `data`, which must be empty. Where the text is bad it returns false and one line
/// `NAME:LINE:COLUMN: found X, expected Y`. With `metadataOnly` it stops behind the layer's own fields.
bool Sdf_ParseText(const std::string& name, std::string_view text, bool metadataOnly, SdfData* data,
                   std::string* error);
/// Says whether the text begins as a text layer does.
bool Sdf_IsTextLayer(std::string_view text);

/// The reader of one text. Its parts lie in several sources: structure, metadata, composition, properties.
class Sdf_TextParser
{
public:
    Sdf_TextParser(const std::string& name, std::string_view text, SdfData* data)
        : _name(name), _text(text), _s(text), _data(data)
    {}
    void ParseLayer(bool metadataOnly);

private:
    // A spec that is being read.
    struct _Spec
    {
        SdfPath path;
        SdfSpecType type;
        SdfData::Fields fields;
    };
    // The names of the children that the spec being read has got so far.
    struct _Children
    {
        std::vector<TfToken> prims;
        std::vector<TfToken> properties;
        std::vector<TfToken> variantSets;
    };
    typedef std::unordered_set<TfToken, TfToken::HashFunctor> _Names;
    // What stands before a property's name.
    struct _Declaration
    {
        bool custom = false;
        SdfVariability variability = SdfVariabilityVarying;
        std::string_view typeName;
        bool isArray = false;
    };

    void _ParseHeader();
    void _ParseRootStatement(std::vector<TfToken>* prims);
    void _ParsePrim(const SdfPath& parent, std::string_view specifier, std::vector<TfToken>* siblings,
                    int depth);
    std::string _PrimTypeName();
    void _ParsePrimContents(const _Spec& prim, int depth);
    void _ParsePrimStatement(const _Spec& prim, _Children* children, int depth);
    void _ParseVariantSet(const _Spec& owner, std::vector<TfToken>* siblings, int depth);
    TfToken _ParseVariant(const SdfPath& owner, const std::string& set, _Names* names, int depth);
    std::string _VariantName(const char* what);
    bool _AcceptOrder(const _Spec& prim);
    void _EndBlock(const char* where);
    std::vector<TfToken> _NameList(const char* what);

    void _ParseMetadata(const _Spec& spec);
    void _ParseMetadatum(const _Spec& spec);
    void _ParseReservedMetadatum(std::string_view key, const _Spec& spec);
    bool _ParseLayerMetadatum(std::string_view key, const _Spec& spec);
    bool _ParsePrimMetadatum(std::string_view key, const _Spec& spec);
    bool _ParseArcs(std::string_view key, SdfListOpType op, const _Spec& spec);
    void _ParsePlainMetadatum(const TfToken& key, const _Spec& spec);
    void _ParseListMetadatum(const TfToken& key, SdfListOpType op, const _Spec& spec);
    void _ParseKnownMetadatum(const TfToken& key, const _Spec& spec);
    void _ParseUnknownMetadatum(const TfToken& key, const _Spec& spec);
    void _ParseUnknownList(const TfToken& key, SdfListOpType op, const _Spec& spec);
    template <class Item>
    bool _AcceptKnownList(const TfToken& key, SdfListOpType op, const _Spec& spec);
    bool _AcceptAnyKnownList(const TfToken& key, SdfListOpType op, const _Spec& spec);
    void _FailValue(size_t offset, const TfToken& key, const std::string& whyNot);
    void _ParsePermission(const _Spec& spec);
    void _ParseDisplayUnit(const _Spec& spec);

    void _ParseReferences(SdfListOpType op, const _Spec& spec);
    void _ParsePayload(SdfListOpType op, const _Spec& spec);
    void _ParsePrimPaths(const TfToken& field, SdfListOpType op, const _Spec& spec);
    void _ParseVariantSetNames(SdfListOpType op, const _Spec& spec);
    void _ArcTarget(std::string* asset, SdfPath* prim);
    SdfLayerOffset _LayerOffset(VtDictionary* customData);
    void _ParseSubLayers(const _Spec& spec);
    void _ParseRelocates(const _Spec& spec);
    void _ParseSubstitutions(const TfToken& key, const _Spec& spec);
    void _ParseVariantSelections(const _Spec& spec);

    // Reads None, one item, or a list of items, and puts them into a list op.
    template <class Item, class ReadItem>
    void _ParseListOp(const TfToken& field, SdfListOpType op, const _Spec& spec, const char* what,
                      const ReadItem& readItem);
    // A path as it stands, and the one that it is from the prim that holds it.
    SdfPath _Path(const char* what, std::string* text = nullptr);
    static SdfPath _FromPrim(const _Spec& spec, const SdfPath& path);
    SdfPath _PrimPath(const _Spec& spec);

    void _ParseProperty(const _Spec& prim, std::vector<TfToken>* siblings);
    bool _AcceptRelationship(_Declaration* declaration);
    void _ParseType(_Declaration* declaration);
    _Spec _MakeAttribute(const _Spec& prim, const _Declaration& declaration, std::vector<TfToken>* siblings);
    _Spec _MakeRelationship(const _Spec& prim, const _Declaration& declaration,
                            std::vector<TfToken>* siblings);
    _Spec _MakeProperty(const _Spec& prim, SdfSpecType type, std::vector<TfToken>* siblings, size_t* offset);
    bool _AcceptDot();
    void _ParseAttribute(const _Spec& attribute, const _Declaration& declaration);
    void _ParseRelationship(const _Spec& relationship);
    void _ParseTimeSamples(const _Spec& attribute, const Sdf_TextType& type);
    void _ParseConnection(const _Spec& attribute, SdfListOpType op);
    void _ParseTargets(const _Spec& relationship, SdfListOpType op);
    VtValue _AttributeValue(const Sdf_TextType& type);
    const Sdf_TextType& _Type(const _Declaration& declaration);
    const TfToken& _Token(std::string_view word);

    const std::string& _name;
    std::string_view _text;
    Sdf_TextScanner _s;
    SdfData* _data;
    std::unordered_map<std::string_view, TfToken> _tokens;
    // Of each type's name: what a value and an array of it are.
    std::unordered_map<std::string_view, std::array<Sdf_TextType, 2>> _types;
};

/// Reads a word that says how a list is edited.
bool Sdf_AcceptListOpWord(std::string_view word, SdfListOpType* op);

PXR_NAMESPACE_CLOSE_SCOPE
