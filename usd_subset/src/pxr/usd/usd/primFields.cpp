#include "pxr/usd/usd/primFields.h"

#include <pxr/usd/sdf/listOp.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/usd/tokens.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

template <class T>
bool strongest(const Usd_PrimIndex& index, const TfToken& field, T* value)
{
    for (const Usd_SpecSite& site : index.GetSites()) {
        if (site.layer->HasField(site.path, field, value)) {
            return true;
        }
    }
    return false;
}

// The name that says of a spec: of whatever type the weaker ones are.
const TfToken& anyType()
{
    static const TfToken name("__AnyType__", TfToken::Immortal);
    return name;
}

bool isInheritedDirectly(const Usd_PrimIndex& index, const Usd_SpecSite& site)
{
    const auto& nodes = index.GetNodes();
    for (std::int32_t i = static_cast<std::int32_t>(site.node); i >= 0; i = nodes[i].parent) {
        if (nodes[i].arc == Usd_ArcType::Inherit && index.IsDirect(nodes[i])) {
            return true;
        }
    }
    return false;
}

} // namespace

bool Usd_PrimFields::IsActive(const Usd_PrimIndex& index)
{
    bool active = true;
    strongest(index, SdfFieldKeys->Active, &active);
    return active;
}

TfToken Usd_PrimFields::GetKind(const Usd_PrimIndex& index)
{
    TfToken kind;
    strongest(index, SdfFieldKeys->Kind, &kind);
    return kind;
}

TfToken Usd_PrimFields::GetTypeName(const Usd_PrimIndex& index)
{
    for (const Usd_SpecSite& site : index.GetSites()) {
        TfToken name;
        if (site.layer->HasField(site.path, SdfFieldKeys->TypeName, &name) && !name.IsEmpty() &&
            name != anyType()) {
            return name;
        }
    }
    return TfToken();
}

TfTokenVector Usd_PrimFields::GetAppliedSchemas(const Usd_PrimIndex& index)
{
    TfTokenVector names;
    for (auto site = index.GetSites().rbegin(); site != index.GetSites().rend(); ++site) {
        SdfTokenListOp edits;
        if (site->layer->HasField(site->path, UsdTokens->apiSchemas, &edits)) {
            edits.ApplyOperations(&names);
        }
    }
    return names;
}

SdfSpecifier Usd_PrimFields::GetSpecifier(const Usd_PrimIndex& index)
{
    SdfSpecifier result = SdfSpecifierOver;
    for (const Usd_SpecSite& site : index.GetSites()) {
        SdfSpecifier specifier = SdfSpecifierOver;
        if (!site.layer->HasField(site.path, SdfFieldKeys->Specifier, &specifier) ||
            specifier == SdfSpecifierOver) {
            continue;
        }
        if (specifier == SdfSpecifierDef || !isInheritedDirectly(index, site)) {
            return specifier;
        }
        result = specifier;
    }
    return result;
}

PXR_NAMESPACE_CLOSE_SCOPE
