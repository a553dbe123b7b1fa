#include "pxr/usd/usd/arcEdits.h"
#include "pxr/usd/usd/propertySites.h"

#include <pxr/usd/sdf/listOp.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/usd/inherits.h>
#include <pxr/usd/usd/payloads.h>
#include <pxr/usd/usd/references.h>
#include <pxr/usd/usd/specializes.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

template <class AssetArc>
struct AssetArcs
{
    using Item = AssetArc;
    static SdfPath GetLocalPath(const Item& item)
    {
        return item.GetAssetPath().empty() ? item.GetPrimPath() : SdfPath();
    }
    static void SetLocalPath(Item* item, const SdfPath& path) { item->SetPrimPath(path); }
};

struct References : AssetArcs<SdfReference>
{
    static auto GetList(const SdfPrimSpecHandle& spec) { return spec->GetReferenceList(); }
};

struct Payloads : AssetArcs<SdfPayload>
{
    static auto GetList(const SdfPrimSpecHandle& spec) { return spec->GetPayloadList(); }
};

struct PathArcs
{
    using Item = SdfPath;
    static SdfPath GetLocalPath(const Item& item) { return item; }
    static void SetLocalPath(Item* item, const SdfPath& path) { *item = path; }
};

struct Inherits : PathArcs
{
    static auto GetList(const SdfPrimSpecHandle& spec) { return spec->GetInheritPathList(); }
};

struct Specializes : PathArcs
{
    static auto GetList(const SdfPrimSpecHandle& spec) { return spec->GetSpecializesList(); }
};

} // namespace

bool UsdReferences::AddReference(const SdfReference& item, UsdListPosition position)
{
    return Usd_ArcEdits<References>(_prim).Add(item, position);
}

bool UsdReferences::AddReference(const std::string& identifier, const SdfPath& primPath,
                                 const SdfLayerOffset& layerOffset, UsdListPosition position)
{
    return AddReference(SdfReference(identifier, primPath, layerOffset), position);
}

bool UsdReferences::AddReference(const std::string& identifier, const SdfLayerOffset& layerOffset,
                                 UsdListPosition position)
{
    return AddReference(SdfReference(identifier, SdfPath(), layerOffset), position);
}

bool UsdReferences::AddInternalReference(const SdfPath& primPath, const SdfLayerOffset& layerOffset,
                                         UsdListPosition position)
{
    return AddReference(SdfReference(std::string(), primPath, layerOffset), position);
}

bool UsdReferences::RemoveReference(const SdfReference& item)
{
    return Usd_ArcEdits<References>(_prim).Remove(item);
}

bool UsdReferences::ClearReferences() { return Usd_ArcEdits<References>(_prim).Clear(); }

bool UsdReferences::SetReferences(const SdfReferenceVector& items)
{
    return Usd_ArcEdits<References>(_prim).Set(items);
}

bool UsdPayloads::AddPayload(const SdfPayload& item, UsdListPosition position)
{
    return Usd_ArcEdits<Payloads>(_prim).Add(item, position);
}

bool UsdPayloads::AddPayload(const std::string& identifier, const SdfPath& primPath,
                             const SdfLayerOffset& layerOffset, UsdListPosition position)
{
    return AddPayload(SdfPayload(identifier, primPath, layerOffset), position);
}

bool UsdPayloads::AddPayload(const std::string& identifier, const SdfLayerOffset& layerOffset,
                             UsdListPosition position)
{
    return AddPayload(SdfPayload(identifier, SdfPath(), layerOffset), position);
}

bool UsdPayloads::AddInternalPayload(const SdfPath& primPath, const SdfLayerOffset& layerOffset,
                                     UsdListPosition position)
{
    return AddPayload(SdfPayload(std::string(), primPath, layerOffset), position);
}

bool UsdPayloads::RemovePayload(const SdfPayload& item) { return Usd_ArcEdits<Payloads>(_prim).Remove(item); }

bool UsdPayloads::ClearPayloads() { return Usd_ArcEdits<Payloads>(_prim).Clear(); }

bool UsdPayloads::SetPayloads(const SdfPayloadVector& items)
{
    return Usd_ArcEdits<Payloads>(_prim).Set(items);
}

bool UsdInherits::AddInherit(const SdfPath& primPath, UsdListPosition position)
{
    return Usd_ArcEdits<Inherits>(_prim).Add(primPath, position);
}

bool UsdInherits::RemoveInherit(const SdfPath& item) { return Usd_ArcEdits<Inherits>(_prim).Remove(item); }

bool UsdInherits::ClearInherits() { return Usd_ArcEdits<Inherits>(_prim).Clear(); }

bool UsdInherits::SetInherits(const SdfPathVector& items) { return Usd_ArcEdits<Inherits>(_prim).Set(items); }

SdfPathVector UsdInherits::GetAllDirectInherits() const
{
    SdfPathVector paths;
    if (!_prim) {
        return paths;
    }
    for (Usd_PropertySites sites(*Usd_ObjectAccess::GetData(_prim), TfToken()); sites; ++sites) {
        SdfPathListOp edits;
        SdfPathVector found;
        if (sites.GetLayer().HasField(sites.GetPath(), SdfFieldKeys->InheritPaths, &edits)) {
            edits.ApplyOperations(&found);
        }
        for (const SdfPath& path : found) {
            const SdfPath mapped =
                sites.GetNode().toStage.MapSourceToTarget(path.MakeAbsolutePath(sites.GetPath()));
            if (!mapped.IsEmpty() && std::find(paths.begin(), paths.end(), mapped) == paths.end()) {
                paths.push_back(mapped);
            }
        }
    }
    return paths;
}

bool UsdSpecializes::AddSpecialize(const SdfPath& primPath, UsdListPosition position)
{
    return Usd_ArcEdits<Specializes>(_prim).Add(primPath, position);
}

bool UsdSpecializes::RemoveSpecialize(const SdfPath& item)
{
    return Usd_ArcEdits<Specializes>(_prim).Remove(item);
}

bool UsdSpecializes::ClearSpecializes() { return Usd_ArcEdits<Specializes>(_prim).Clear(); }

bool UsdSpecializes::SetSpecializes(const SdfPathVector& items)
{
    return Usd_ArcEdits<Specializes>(_prim).Set(items);
}

PXR_NAMESPACE_CLOSE_SCOPE
