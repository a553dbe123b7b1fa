#include <pxr/usd/usd/notice.h>

#include <pxr/base/tf/registryManager.h>
#include <pxr/base/tf/type.h>
#include <pxr/usd/usd/stage.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

TF_REGISTRY_FUNCTION(TfType)
{
    TfType::Define<UsdNotice::StageNotice, TfType::Bases<TfNotice>>();
    TfType::Define<UsdNotice::StageContentsChanged, TfType::Bases<UsdNotice::StageNotice>>();
    TfType::Define<UsdNotice::ObjectsChanged, TfType::Bases<UsdNotice::StageNotice>>();
    TfType::Define<UsdNotice::StageEditTargetChanged, TfType::Bases<UsdNotice::StageNotice>>();
    TfType::Define<UsdNotice::LayerMutingChanged, TfType::Bases<UsdNotice::StageNotice>>();
}

UsdNotice::StageNotice::StageNotice(const UsdStageWeakPtr& stage) : _stage(stage) {}

UsdNotice::StageNotice::~StageNotice() = default;
UsdNotice::StageContentsChanged::~StageContentsChanged() = default;
UsdNotice::ObjectsChanged::~ObjectsChanged() = default;
UsdNotice::StageEditTargetChanged::~StageEditTargetChanged() = default;
UsdNotice::LayerMutingChanged::~LayerMutingChanged() = default;

namespace {

template <class Changes>
bool hasEntryAtOrAbove(const Changes& changes, SdfPath path)
{
    for (; !path.IsEmpty(); path = path.GetParentPath()) {
        if (changes.count(path)) {
            return true;
        }
    }
    return false;
}

template <class Entries>
TfTokenVector fieldsOf(const Entries& entries)
{
    TfTokenVector fields;
    for (const SdfChangeList::Entry* entry : entries) {
        for (const auto& info : entry->infoChanged) {
            fields.push_back(info.first);
        }
    }
    std::sort(fields.begin(), fields.end());
    fields.erase(std::unique(fields.begin(), fields.end()), fields.end());
    return fields;
}

} // namespace

bool UsdNotice::ObjectsChanged::ResyncedObject(const UsdObject& obj) const
{
    return hasEntryAtOrAbove(*_resyncChanges, obj.GetPath());
}

bool UsdNotice::ObjectsChanged::ResolvedAssetPathsResynced(const UsdObject& obj) const
{
    return hasEntryAtOrAbove(*_assetPathChanges, obj.GetPath());
}

bool UsdNotice::ObjectsChanged::ChangedInfoOnly(const UsdObject& obj) const
{
    return _infoChanges->count(obj.GetPath()) != 0;
}

const UsdNotice::ObjectsChanged::_PathsToChangesMap& UsdNotice::ObjectsChanged::PathRange::_Changes() const
{
    static const _PathsToChangesMap none;
    return _changes ? *_changes : none;
}

TfTokenVector UsdNotice::ObjectsChanged::PathRange::iterator::GetChangedFields() const
{
    return fieldsOf(_underlyingIterator->second);
}

bool UsdNotice::ObjectsChanged::PathRange::iterator::HasChangedFields() const
{
    return !GetChangedFields().empty();
}

UsdNotice::ObjectsChanged::PathRange UsdNotice::ObjectsChanged::GetResyncedPaths() const
{
    return PathRange(_resyncChanges);
}

UsdNotice::ObjectsChanged::PathRange UsdNotice::ObjectsChanged::GetChangedInfoOnlyPaths() const
{
    return PathRange(_infoChanges);
}

UsdNotice::ObjectsChanged::PathRange UsdNotice::ObjectsChanged::GetResolvedAssetPathsResyncedPaths() const
{
    return PathRange(_assetPathChanges);
}

TfTokenVector UsdNotice::ObjectsChanged::GetChangedFields(const UsdObject& obj) const
{
    return GetChangedFields(obj.GetPath());
}

TfTokenVector UsdNotice::ObjectsChanged::GetChangedFields(const SdfPath& path) const
{
    for (const _PathsToChangesMap* changes : {_resyncChanges, _infoChanges}) {
        const auto found = changes->find(path);
        if (found != changes->end()) {
            return fieldsOf(found->second);
        }
    }
    return {};
}

bool UsdNotice::ObjectsChanged::HasChangedFields(const UsdObject& obj) const
{
    return HasChangedFields(obj.GetPath());
}

bool UsdNotice::ObjectsChanged::HasChangedFields(const SdfPath& path) const
{
    return !GetChangedFields(path).empty();
}

PXR_NAMESPACE_CLOSE_SCOPE
