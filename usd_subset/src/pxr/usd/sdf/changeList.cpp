#include <pxr/usd/sdf/changeList.h>
#include <pxr/usd/sdf/layer.h>

#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

SdfChangeList::Entry& SdfChangeList::_GetEntry(SdfPath const& path)
{
    const auto found = _index.find(path);
    if (found != _index.end()) {
        return _entries[found->second].second;
    }
    _index[path] = _entries.size();
    _entries.emplace_back(path, Entry());
    return _entries.back().second;
}

// The entry of the old path goes on under the new one. Where the place was emptied before, that stays on
// record in an entry of its own, ahead of the new one.
SdfChangeList::Entry& SdfChangeList::_MoveEntry(SdfPath const& oldPath, SdfPath const& newPath)
{
    Entry moved;
    const auto old = _index.find(oldPath);
    if (old != _index.end()) {
        const size_t at = old->second;
        moved = std::move(_entries[at].second);
        _entries.erase(_entries.begin() + static_cast<std::ptrdiff_t>(at));
        _index.clear();
        for (size_t i = 0; i < _entries.size(); ++i) {
            _index[_entries[i].first] = i;
        }
    }
    const auto taken = _index.find(newPath);
    if (taken != _index.end()) {
        const Entry::_Flags& flags = _entries[taken->second].second.flags;
        const bool removed = flags.didRemoveInertPrim || flags.didRemoveNonInertPrim ||
                             flags.didRemoveProperty || flags.didRemovePropertyWithOnlyRequiredFields;
        if (removed) {
            _index.erase(taken);
        }
    }
    Entry& entry = _GetEntry(newPath);
    entry = std::move(moved);
    return entry;
}

SdfChangeList::Entry const& SdfChangeList::GetEntry(const SdfPath& path) const
{
    static const Entry none;
    const auto found = FindEntry(path);
    return found == _entries.end() ? none : found->second;
}

SdfChangeList::const_iterator SdfChangeList::FindEntry(SdfPath const& path) const
{
    const auto found = _index.find(path);
    return found == _index.end() ? _entries.end()
                                 : _entries.begin() + static_cast<std::ptrdiff_t>(found->second);
}

void SdfChangeList::DidReplaceLayerContent()
{
    _GetEntry(SdfPath::AbsoluteRootPath()).flags.didReplaceContent = true;
}

void SdfChangeList::DidReloadLayerContent()
{
    _GetEntry(SdfPath::AbsoluteRootPath()).flags.didReloadContent = true;
}

void SdfChangeList::DidChangeLayerResolvedPath()
{
    _GetEntry(SdfPath::AbsoluteRootPath()).flags.didChangeResolvedPath = true;
}

void SdfChangeList::DidChangeLayerIdentifier(const std::string& oldIdentifier)
{
    Entry& entry = _GetEntry(SdfPath::AbsoluteRootPath());
    if (!entry.flags.didChangeIdentifier) {
        entry.flags.didChangeIdentifier = true;
        entry.oldIdentifier = oldIdentifier;
    }
}

void SdfChangeList::DidChangeSublayerPaths(const std::string& subLayerPath, SubLayerChangeType changeType)
{
    _GetEntry(SdfPath::AbsoluteRootPath()).subLayerChanges.emplace_back(subLayerPath, changeType);
}

void SdfChangeList::DidAddPrim(const SdfPath& primPath, bool inert)
{
    Entry::_Flags& flags = _GetEntry(primPath).flags;
    (inert ? flags.didAddInertPrim : flags.didAddNonInertPrim) = true;
}

void SdfChangeList::DidRemovePrim(const SdfPath& primPath, bool inert)
{
    Entry::_Flags& flags = _GetEntry(primPath).flags;
    (inert ? flags.didRemoveInertPrim : flags.didRemoveNonInertPrim) = true;
}

void SdfChangeList::DidMovePrim(const SdfPath& oldPath, const SdfPath& newPath)
{
    DidRemovePrim(oldPath, false);
    DidAddPrim(newPath, false);
    _GetEntry(newPath).oldPath = oldPath;
}

void SdfChangeList::DidReorderPrims(const SdfPath& parentPath)
{
    _GetEntry(parentPath).flags.didReorderChildren = true;
}

void SdfChangeList::DidChangePrimName(const SdfPath& oldPath, const SdfPath& newPath)
{
    Entry& entry = _MoveEntry(oldPath, newPath);
    if (entry.oldPath.IsEmpty()) {
        entry.oldPath = oldPath;
    }
    entry.flags.didRename = true;
}

void SdfChangeList::DidChangePropertyName(const SdfPath& oldPath, const SdfPath& newPath)
{
    DidChangePrimName(oldPath, newPath);
}

void SdfChangeList::DidChangePrimVariantSets(const SdfPath& primPath)
{
    _GetEntry(primPath).flags.didChangePrimVariantSets = true;
}

void SdfChangeList::DidChangePrimInheritPaths(const SdfPath& primPath)
{
    _GetEntry(primPath).flags.didChangePrimInheritPaths = true;
}

void SdfChangeList::DidChangePrimReferences(const SdfPath& primPath)
{
    _GetEntry(primPath).flags.didChangePrimReferences = true;
}

void SdfChangeList::DidChangePrimSpecializes(const SdfPath& primPath)
{
    _GetEntry(primPath).flags.didChangePrimSpecializes = true;
}

void SdfChangeList::DidAddProperty(const SdfPath& propPath, bool hasOnlyRequiredFields)
{
    Entry::_Flags& flags = _GetEntry(propPath).flags;
    (hasOnlyRequiredFields ? flags.didAddPropertyWithOnlyRequiredFields : flags.didAddProperty) = true;
}

void SdfChangeList::DidRemoveProperty(const SdfPath& propPath, bool hasOnlyRequiredFields)
{
    Entry::_Flags& flags = _GetEntry(propPath).flags;
    (hasOnlyRequiredFields ? flags.didRemovePropertyWithOnlyRequiredFields : flags.didRemoveProperty) = true;
}

void SdfChangeList::DidReorderProperties(const SdfPath& propPath)
{
    _GetEntry(propPath).flags.didReorderProperties = true;
}

void SdfChangeList::DidChangeAttributeTimeSamples(const SdfPath& attrPath)
{
    _GetEntry(attrPath).flags.didChangeAttributeTimeSamples = true;
}

void SdfChangeList::DidChangeAttributeConnection(const SdfPath& attrPath)
{
    _GetEntry(attrPath).flags.didChangeAttributeConnection = true;
}

void SdfChangeList::DidChangeRelationshipTargets(const SdfPath& relPath)
{
    _GetEntry(relPath).flags.didChangeRelationshipTargets = true;
}

void SdfChangeList::DidAddTarget(const SdfPath& targetPath)
{
    _GetEntry(targetPath).flags.didAddTarget = true;
}

void SdfChangeList::DidRemoveTarget(const SdfPath& targetPath)
{
    _GetEntry(targetPath).flags.didRemoveTarget = true;
}

void SdfChangeList::DidChangeInfo(const SdfPath& path, const TfToken& key, VtValue&& oldValue,
                                  const VtValue& newValue)
{
    Entry& entry = _GetEntry(path);
    for (auto& change : entry.infoChanged) {
        if (change.first == key) {
            change.second.second = newValue;
            return;
        }
    }
    entry.infoChanged.emplace_back(key, Entry::InfoChange(std::move(oldValue), newValue));
}

std::ostream& operator<<(std::ostream& out, const SdfChangeList& changes)
{
    for (const auto& [path, entry] : changes) {
        out << "  <" << path.GetString() << ">\n";
        for (const auto& info : entry.infoChanged) {
            out << "    infoKey: " << info.first.GetString() << "\n      oldValue: " << info.second.first
                << "\n      newValue: " << info.second.second << "\n";
        }
        for (const auto& sublayer : entry.subLayerChanges) {
            const char* const kinds[] = {"added", "removed", "offset"};
            out << "    sublayer " << sublayer.first << " " << kinds[sublayer.second] << "\n";
        }
        if (!entry.oldPath.IsEmpty()) {
            out << "    oldPath: <" << entry.oldPath.GetString() << ">\n";
        }
    }
    return out;
}

PXR_NAMESPACE_CLOSE_SCOPE
