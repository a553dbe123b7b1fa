#include "pxr/usd/sdf/childPaths.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/primSpec.h>
#include <pxr/usd/sdf/schema.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

template <class T>
T SdfLayer::_Info(const TfToken& key) const
{
    const VtValue& fallback = GetSchema().GetFallback(key);
    return GetFieldAs<T>(SdfPath::AbsoluteRootPath(), key,
                         fallback.IsHolding<T>() ? fallback.UncheckedGet<T>() : T());
}

template <class T>
void SdfLayer::_SetInfo(const TfToken& key, const T& value)
{
    SetField(SdfPath::AbsoluteRootPath(), key, VtValue(value));
}

bool SdfLayer::_HasInfo(const TfToken& key) const { return HasField(SdfPath::AbsoluteRootPath(), key); }

void SdfLayer::_ClearInfo(const TfToken& key) { EraseField(SdfPath::AbsoluteRootPath(), key); }

// The four accessors of a field that the layer itself has.
#define SDF_LAYER_INFO(type, argument, Name)                                                                 \
    type SdfLayer::Get##Name() const { return _Info<type>(SdfFieldKeys->Name); }                             \
    void SdfLayer::Set##Name(argument value) { _SetInfo<type>(SdfFieldKeys->Name, value); }
#define SDF_LAYER_OPTIONAL_INFO(type, argument, Name)                                                        \
    SDF_LAYER_INFO(type, argument, Name)                                                                     \
    bool SdfLayer::Has##Name() const { return _HasInfo(SdfFieldKeys->Name); }                                \
    void SdfLayer::Clear##Name() { _ClearInfo(SdfFieldKeys->Name); }

SDF_LAYER_OPTIONAL_INFO(SdfAssetPath, const SdfAssetPath&, ColorConfiguration)
SDF_LAYER_OPTIONAL_INFO(TfToken, const TfToken&, ColorManagementSystem)
SDF_LAYER_INFO(std::string, const std::string&, Comment)
SDF_LAYER_OPTIONAL_INFO(TfToken, const TfToken&, DefaultPrim)
SDF_LAYER_INFO(std::string, const std::string&, Documentation)
SDF_LAYER_OPTIONAL_INFO(double, double, StartTimeCode)
SDF_LAYER_OPTIONAL_INFO(double, double, EndTimeCode)
SDF_LAYER_OPTIONAL_INFO(double, double, FramesPerSecond)
SDF_LAYER_OPTIONAL_INFO(int, int, FramePrecision)
SDF_LAYER_OPTIONAL_INFO(std::string, const std::string&, Owner)
SDF_LAYER_OPTIONAL_INFO(std::string, const std::string&, SessionOwner)
SDF_LAYER_INFO(bool, bool, HasOwnedSubLayers)
SDF_LAYER_OPTIONAL_INFO(VtDictionary, const VtDictionary&, CustomLayerData)
SDF_LAYER_OPTIONAL_INFO(VtDictionary, const VtDictionary&, ExpressionVariables)

#undef SDF_LAYER_OPTIONAL_INFO
#undef SDF_LAYER_INFO

SdfPath SdfLayer::GetDefaultPrimAsPath() const
{
    const std::string text = GetDefaultPrim().GetString();
    if (text.empty() || !SdfPath::IsValidPathString(text)) {
        return SdfPath();
    }
    const SdfPath path = SdfPath(text).MakeAbsolutePath(SdfPath::AbsoluteRootPath());
    return path.IsPrimPath() ? path : SdfPath();
}

double SdfLayer::GetTimeCodesPerSecond() const
{
    return HasTimeCodesPerSecond() ? _Info<double>(SdfFieldKeys->TimeCodesPerSecond) : GetFramesPerSecond();
}

void SdfLayer::SetTimeCodesPerSecond(double timeCodesPerSecond)
{
    _SetInfo(SdfFieldKeys->TimeCodesPerSecond, timeCodesPerSecond);
}

bool SdfLayer::HasTimeCodesPerSecond() const { return _HasInfo(SdfFieldKeys->TimeCodesPerSecond); }

void SdfLayer::ClearTimeCodesPerSecond() { _ClearInfo(SdfFieldKeys->TimeCodesPerSecond); }

SdfLayer::RootPrimsView SdfLayer::GetRootPrims() const
{
    return RootPrimsView(_Self(), SdfPath::AbsoluteRootPath());
}

void SdfLayer::RemoveRootPrim(const SdfPrimSpecHandle& prim)
{
    if (prim && prim->GetLayer() == _Self() && prim->GetPath().IsRootPrimPath()) {
        _DeleteSpec(prim->GetPath());
    }
}

SdfNameOrderProxy SdfLayer::GetRootPrimOrder() const { return GetPseudoRoot()->GetNameChildrenOrder(); }

void SdfLayer::SetRootPrimOrder(const std::vector<TfToken>& names)
{
    GetPseudoRoot()->SetNameChildrenOrder(names);
}

void SdfLayer::ApplyRootPrimOrder(std::vector<TfToken>* names) const
{
    GetPseudoRoot()->ApplyNameChildrenOrder(names);
}

void SdfLayer::SetSubLayerPaths(const std::vector<std::string>& newPaths)
{
    const SdfPath& root = SdfPath::AbsoluteRootPath();
    const std::vector<std::string> oldPaths = GetSubLayerPaths();
    const SdfLayerOffsetVector oldOffsets = GetSubLayerOffsets();
    // A path keeps its offset, wherever it moves to.
    SdfLayerOffsetVector offsets(newPaths.size());
    for (size_t i = 0; i < newPaths.size(); ++i) {
        if (std::find(newPaths.begin(), newPaths.begin() + static_cast<std::ptrdiff_t>(i), newPaths[i]) !=
            newPaths.begin() + static_cast<std::ptrdiff_t>(i)) {
            TF_CODING_ERROR("Duplicate sublayer path '%s' in layer @%s@", newPaths[i].c_str(),
                            _identifier.c_str());
            return;
        }
        const auto it = std::find(oldPaths.begin(), oldPaths.end(), newPaths[i]);
        const size_t index = static_cast<size_t>(it - oldPaths.begin());
        if (index < oldOffsets.size()) {
            offsets[i] = oldOffsets[index];
        }
    }
    SdfChangeBlock block;
    SetField(root, SdfFieldKeys->SubLayers, newPaths.empty() ? VtValue() : VtValue(newPaths));
    SetField(root, SdfFieldKeys->SubLayerOffsets, newPaths.empty() ? VtValue() : VtValue(offsets));
}

size_t SdfLayer::GetNumSubLayerPaths() const
{
    return GetFieldAs<std::vector<std::string>>(SdfPath::AbsoluteRootPath(), SdfFieldKeys->SubLayers).size();
}

void SdfLayer::InsertSubLayerPath(const std::string& path, int index)
{
    GetSubLayerPaths().Insert(index, path);
}

void SdfLayer::RemoveSubLayerPath(int index)
{
    if (index >= 0) {
        GetSubLayerPaths().Erase(static_cast<size_t>(index));
    }
}

SdfLayerOffsetVector SdfLayer::GetSubLayerOffsets() const
{
    const SdfPath& root = SdfPath::AbsoluteRootPath();
    SdfLayerOffsetVector offsets = GetFieldAs<SdfLayerOffsetVector>(root, SdfFieldKeys->SubLayerOffsets);
    offsets.resize(GetNumSubLayerPaths());
    return offsets;
}

SdfLayerOffset SdfLayer::GetSubLayerOffset(int index) const
{
    const SdfLayerOffsetVector offsets = GetSubLayerOffsets();
    const bool there = index >= 0 && static_cast<size_t>(index) < offsets.size();
    if (!there) {
        TF_CODING_ERROR("Invalid sublayer index %d in layer @%s@", index, _identifier.c_str());
    }
    return there ? offsets[static_cast<size_t>(index)] : SdfLayerOffset();
}

void SdfLayer::SetSubLayerOffset(const SdfLayerOffset& offset, int index)
{
    SdfLayerOffsetVector offsets = GetSubLayerOffsets();
    if (index < 0 || static_cast<size_t>(index) >= offsets.size()) {
        TF_CODING_ERROR("Invalid sublayer index %d in layer @%s@", index, _identifier.c_str());
        return;
    }
    offsets[static_cast<size_t>(index)] = offset;
    SetField(SdfPath::AbsoluteRootPath(), SdfFieldKeys->SubLayerOffsets, VtValue(offsets));
}

SdfRelocates SdfLayer::GetRelocates() const
{
    return GetFieldAs<SdfRelocates>(SdfPath::AbsoluteRootPath(), SdfFieldKeys->LayerRelocates);
}

void SdfLayer::SetRelocates(const SdfRelocates& relocates)
{
    _SetInfo(SdfFieldKeys->LayerRelocates, relocates);
}

bool SdfLayer::HasRelocates() const { return _HasInfo(SdfFieldKeys->LayerRelocates); }

void SdfLayer::ClearRelocates() { _ClearInfo(SdfFieldKeys->LayerRelocates); }

namespace {

template <class ListOp, class Change>
void changeAssets(SdfLayer* layer, const SdfPath& path, const TfToken& field, const Change& change)
{
    ListOp op = layer->GetFieldAs<ListOp>(path, field);
    typedef typename ListOp::ItemType Item;
    op.ModifyOperations([&change](const Item& item) -> std::optional<Item> { return change(item); });
    if (layer->HasField(path, field)) {
        layer->SetField(path, field, op.HasKeys() ? VtValue(op) : VtValue());
    }
}

} // namespace

std::set<std::string> SdfLayer::GetExternalReferences() const { return GetCompositionAssetDependencies(); }

std::set<std::string> SdfLayer::GetCompositionAssetDependencies() const
{
    const std::vector<std::string> sublayers = GetSubLayerPaths();
    std::set<std::string> paths(sublayers.begin(), sublayers.end());
    Traverse(SdfPath::AbsoluteRootPath(), [&](const SdfPath& path) {
        if (path.IsPropertyPath() || path.IsTargetPath()) {
            return;
        }
        for (const SdfReference& item :
             GetFieldAs<SdfReferenceListOp>(path, SdfFieldKeys->References).GetAppliedItems()) {
            paths.insert(item.GetAssetPath());
        }
        for (const SdfPayload& item :
             GetFieldAs<SdfPayloadListOp>(path, SdfFieldKeys->Payload).GetAppliedItems()) {
            paths.insert(item.GetAssetPath());
        }
    });
    return paths;
}

bool SdfLayer::UpdateExternalReference(const std::string& oldAssetPath, const std::string& newAssetPath)
{
    return UpdateCompositionAssetDependency(oldAssetPath, newAssetPath);
}

bool SdfLayer::UpdateCompositionAssetDependency(const std::string& oldAssetPath,
                                                const std::string& newAssetPath)
{
    if (oldAssetPath.empty()) {
        return false;
    }
    SdfChangeBlock block;
    SdfSubLayerProxy sublayers = GetSubLayerPaths();
    if (sublayers.Count(oldAssetPath) > 0) {
        const size_t index = sublayers.Find(oldAssetPath);
        sublayers.Erase(index);
        if (!newAssetPath.empty()) {
            sublayers.Insert(static_cast<int>(index), newAssetPath);
        }
        return true;
    }
    const auto change = [&](auto item) {
        if (item.GetAssetPath() != oldAssetPath) {
            return std::optional<decltype(item)>(item);
        }
        item.SetAssetPath(newAssetPath);
        return newAssetPath.empty() ? std::optional<decltype(item)>() : std::optional<decltype(item)>(item);
    };
    SdfPathVector prims;
    Traverse(SdfPath::AbsoluteRootPath(), [&prims](const SdfPath& path) {
        if (!path.IsPropertyPath()) {
            prims.push_back(path);
        }
    });
    for (const SdfPath& path : prims) {
        changeAssets<SdfReferenceListOp>(this, path, SdfFieldKeys->References, change);
        changeAssets<SdfPayloadListOp>(this, path, SdfFieldKeys->Payload, change);
    }
    return true;
}

PXR_NAMESPACE_CLOSE_SCOPE
