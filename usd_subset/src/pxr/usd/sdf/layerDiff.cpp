#include "pxr/usd/sdf/changeManager.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/data.h>
#include <pxr/usd/sdf/fileFormat.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/schema.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

class SortedPaths : public SdfAbstractDataSpecVisitor
{
public:
    bool VisitSpec(const SdfAbstractData&, const SdfPath& path) override
    {
        paths.push_back(path);
        return true;
    }
    void Done(const SdfAbstractData&) override { std::sort(paths.begin(), paths.end()); }
    SdfPathVector paths;
};

SdfPathVector sortedPaths(const SdfAbstractData& data)
{
    SortedPaths visitor;
    data.VisitSpecs(&visitor);
    return visitor.paths;
}

// Whether a spec has no effect yet at the moment of its creation.
bool isInertWhenNew(const SdfAbstractData& data, const SdfPath& path)
{
    if (path.IsPropertyPath()) {
        return !data.GetAs<bool>(path, SdfFieldKeys->Custom, false);
    }
    return path.IsPrimPath() &&
           data.GetAs<SdfSpecifier>(path, SdfFieldKeys->Specifier, SdfSpecifierOver) == SdfSpecifierOver &&
           data.GetAs<TfToken>(path, SdfFieldKeys->TypeName).IsEmpty();
}

} // namespace

// Turns the data into the new one step by step, so that each difference is noted.
void SdfLayer::_SetData(const SdfAbstractDataRefPtr& newData)
{
    SdfChangeBlock block;
    if (_data->StreamsData()) {
        _AdoptData(newData);
        return;
    }
    const SdfPathVector oldPaths = sortedPaths(*_data);
    for (auto it = oldPaths.rbegin(); it != oldPaths.rend(); ++it) {
        const SdfSpecType type = _data->GetSpecType(*it);
        if (newData->GetSpecType(*it) == type) {
            continue;
        }
        const SdfSchemaBase::SpecDefinition* definition = GetSchema().GetSpecDefinition(type);
        for (const TfToken& field : _data->List(*it)) {
            if (!definition || !definition->IsRequiredField(field)) {
                _PrimSetField(*it, field, VtValue(), nullptr, true);
            }
        }
        _PrimDeleteSpec(*it, _IsInert(*it, true, true), true);
    }
    const SdfPathVector newPaths = sortedPaths(*newData);
    for (const SdfPath& path : newPaths) {
        if (!_data->HasSpec(path)) {
            _PrimCreateSpec(path, newData->GetSpecType(path), isInertWhenNew(*newData, path), true);
        }
    }
    for (const SdfPath& path : newPaths) {
        for (const TfToken& field : _data->List(path)) {
            if (!newData->Has(path, field)) {
                _PrimSetField(path, field, VtValue(), nullptr, true);
            }
        }
        for (const TfToken& field : newData->List(path)) {
            const VtValue value = newData->Get(path, field);
            VtValue oldValue = GetField(path, field);
            if (value != oldValue) {
                _PrimSetField(path, field, value, &oldValue, true);
            }
        }
    }
}

void SdfLayer::_AdoptData(const SdfAbstractDataRefPtr& newData)
{
    SdfChangeBlock block;
    _data = newData;
    Sdf_ChangeManager::DidReplaceLayerContent(_Self());
}

void SdfLayer::TransferContent(const SdfLayerHandle& layer)
{
    if (!_permissionToEdit) {
        TF_RUNTIME_ERROR("TransferContent of '%s': Permission denied.", GetDisplayName().c_str());
        return;
    }
    if (!layer || layer == _Self()) {
        return;
    }
    if (!_data->StreamsData()) {
        _SetData(layer->_data);
        return;
    }
    // Content that is adopted as a whole must not be that of another layer.
    const SdfAbstractDataRefPtr copy = _fileFormat->InitData(_fileFormatArgs);
    copy->CopyFrom(SdfAbstractDataConstPtr(layer->_data));
    _SetData(copy);
}

void SdfLayer::Clear()
{
    if (!_permissionToEdit) {
        TF_CODING_ERROR("Clear: Permission denied.");
        return;
    }
    _SetData(_fileFormat->InitData(_fileFormatArgs));
}

PXR_NAMESPACE_CLOSE_SCOPE
