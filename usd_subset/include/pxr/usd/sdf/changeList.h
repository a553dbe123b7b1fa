#pragma once

/// What changed in a layer.

#include <pxr/base/tf/token.h>
#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/api.h>
#include <pxr/usd/sdf/declareHandles.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/types.h>

#include <iosfwd>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

class SdfChangeList;

typedef std::vector<std::pair<SdfLayerHandle, SdfChangeList>> SdfLayerChangeListVec;

/// The changes of one layer, one entry a path, in the order in which the paths were first touched.
class SDF_API SdfChangeList
{
public:
    enum SubLayerChangeType
    {
        SubLayerAdded,
        SubLayerRemoved,
        SubLayerOffset
    };

    void DidReplaceLayerContent();
    void DidReloadLayerContent();
    void DidChangeLayerResolvedPath();
    void DidChangeLayerIdentifier(const std::string& oldIdentifier);
    void DidChangeSublayerPaths(const std::string& subLayerPath, SubLayerChangeType changeType);

    void DidAddPrim(const SdfPath& primPath, bool inert);
    void DidRemovePrim(const SdfPath& primPath, bool inert);
    void DidMovePrim(const SdfPath& oldPath, const SdfPath& newPath);
    void DidReorderPrims(const SdfPath& parentPath);
    void DidChangePrimName(const SdfPath& oldPath, const SdfPath& newPath);
    void DidChangePrimVariantSets(const SdfPath& primPath);
    void DidChangePrimInheritPaths(const SdfPath& primPath);
    void DidChangePrimReferences(const SdfPath& primPath);
    void DidChangePrimSpecializes(const SdfPath& primPath);

    void DidAddProperty(const SdfPath& propPath, bool hasOnlyRequiredFields);
    void DidRemoveProperty(const SdfPath& propPath, bool hasOnlyRequiredFields);
    void DidReorderProperties(const SdfPath& propPath);
    void DidChangePropertyName(const SdfPath& oldPath, const SdfPath& newPath);

    void DidChangeAttributeTimeSamples(const SdfPath& attrPath);
    void DidChangeAttributeConnection(const SdfPath& attrPath);
    void DidChangeRelationshipTargets(const SdfPath& relPath);
    void DidAddTarget(const SdfPath& targetPath);
    void DidRemoveTarget(const SdfPath& targetPath);

    /// Notes a field's change; a second change of the same field keeps the first old value.
    void DidChangeInfo(const SdfPath& path, const TfToken& key, VtValue&& oldValue, const VtValue& newValue);

    /// The changes at one path.
    struct Entry
    {
        typedef std::pair<VtValue, VtValue> InfoChange;
        typedef std::vector<std::pair<TfToken, InfoChange>> InfoChangeVec;

        /// Changed fields: name, old value, new value.
        InfoChangeVec infoChanged;

        InfoChangeVec::const_iterator FindInfoChange(TfToken const& key) const
        {
            auto it = infoChanged.begin();
            while (it != infoChanged.end() && it->first != key) {
                ++it;
            }
            return it;
        }
        bool HasInfoChange(TfToken const& key) const { return FindInfoChange(key) != infoChanged.end(); }

        typedef std::pair<std::string, SubLayerChangeType> SubLayerChange;
        std::vector<SubLayerChange> subLayerChanges;

        /// Where a renamed or moved spec was before.
        SdfPath oldPath;
        std::string oldIdentifier;

        struct _Flags
        {
            bool didChangeIdentifier = false;
            bool didChangeResolvedPath = false;
            bool didReplaceContent = false;
            bool didReloadContent = false;
            bool didReorderChildren = false;
            bool didReorderProperties = false;
            bool didRename = false;
            bool didChangePrimVariantSets = false;
            bool didChangePrimInheritPaths = false;
            bool didChangePrimSpecializes = false;
            bool didChangePrimReferences = false;
            bool didChangeAttributeTimeSamples = false;
            bool didChangeAttributeConnection = false;
            bool didChangeRelationshipTargets = false;
            bool didAddTarget = false;
            bool didRemoveTarget = false;
            bool didAddInertPrim = false;
            bool didAddNonInertPrim = false;
            bool didRemoveInertPrim = false;
            bool didRemoveNonInertPrim = false;
            bool didAddPropertyWithOnlyRequiredFields = false;
            bool didAddProperty = false;
            bool didRemovePropertyWithOnlyRequiredFields = false;
            bool didRemoveProperty = false;
        };
        _Flags flags;
    };

    using EntryList = std::vector<std::pair<SdfPath, Entry>>;
    using const_iterator = EntryList::const_iterator;

    const EntryList& GetEntryList() const { return _entries; }
    /// Returns the entry of a path; an empty one where there is none.
    Entry const& GetEntry(const SdfPath& path) const;
    const_iterator FindEntry(SdfPath const& path) const;

    const_iterator begin() const { return _entries.begin(); }
    const_iterator cbegin() const { return _entries.cbegin(); }
    const_iterator end() const { return _entries.end(); }
    const_iterator cend() const { return _entries.cend(); }

private:
    friend void swap(SdfChangeList& a, SdfChangeList& b)
    {
        a._entries.swap(b._entries);
        a._index.swap(b._index);
    }
    Entry& _GetEntry(SdfPath const& path);
    Entry& _MoveEntry(SdfPath const& oldPath, SdfPath const& newPath);

    EntryList _entries;
    std::unordered_map<SdfPath, size_t, SdfPath::Hash> _index;
};

SDF_API std::ostream& operator<<(std::ostream& out, const SdfChangeList& changes);

PXR_NAMESPACE_CLOSE_SCOPE
