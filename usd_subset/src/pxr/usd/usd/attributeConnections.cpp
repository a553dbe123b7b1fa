#include "pxr/usd/usd/listEdits.h"
#include "pxr/usd/usd/specEditor.h"
#include "pxr/usd/usd/stageImpl.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/usd/attribute.h>

PXR_NAMESPACE_OPEN_SCOPE

bool UsdAttribute::AddConnection(const SdfPath& source, UsdListPosition position) const
{
    std::string why;
    const SdfPath path = _GetPathForAuthoring(source, &why);
    if (path.IsEmpty()) {
        TF_CODING_ERROR("Cannot append connection <%s> to attribute <%s>: %s", source.GetText(),
                        GetPath().GetText(), why.c_str());
        return false;
    }
    SdfChangeBlock block;
    const SdfAttributeSpecHandle spec = Usd_SpecEditor(_Impl()).CreateAttributeSpec(*this);
    if (!spec) {
        return false;
    }
    Usd_InsertListItem(spec->GetConnectionPathList(), path, position);
    return true;
}

bool UsdAttribute::RemoveConnection(const SdfPath& source) const
{
    std::string why;
    const SdfPath path = _GetPathForAuthoring(source, &why);
    if (path.IsEmpty()) {
        TF_CODING_ERROR("Cannot remove connection <%s> from attribute <%s>: %s", source.GetText(),
                        GetPath().GetText(), why.c_str());
        return false;
    }
    SdfChangeBlock block;
    const SdfAttributeSpecHandle spec = Usd_SpecEditor(_Impl()).CreateAttributeSpec(*this);
    if (!spec) {
        return false;
    }
    spec->GetConnectionPathList().Remove(path);
    return true;
}

bool UsdAttribute::SetConnections(const SdfPathVector& sources) const
{
    SdfPathVector paths;
    for (const SdfPath& source : sources) {
        std::string why;
        paths.push_back(_GetPathForAuthoring(source, &why));
        if (paths.back().IsEmpty()) {
            TF_CODING_ERROR("Cannot set connection <%s> on attribute <%s>: %s", source.GetText(),
                            GetPath().GetText(), why.c_str());
            return false;
        }
    }
    SdfChangeBlock block;
    const SdfAttributeSpecHandle spec = Usd_SpecEditor(_Impl()).CreateAttributeSpec(*this);
    if (!spec) {
        return false;
    }
    auto list = spec->GetConnectionPathList();
    list.ClearEditsAndMakeExplicit();
    list.GetExplicitItems() = paths;
    return true;
}

bool UsdAttribute::ClearConnections() const
{
    SdfChangeBlock block;
    const SdfAttributeSpecHandle spec = Usd_SpecEditor(_Impl()).CreateAttributeSpec(*this);
    if (!spec) {
        return false;
    }
    spec->GetConnectionPathList().ClearEdits();
    return true;
}

bool UsdAttribute::GetConnections(SdfPathVector* sources) const
{
    return _GetTargets(SdfSpecTypeAttribute, sources);
}

bool UsdAttribute::HasAuthoredConnections() const
{
    return HasAuthoredMetadata(SdfFieldKeys->ConnectionPaths);
}

PXR_NAMESPACE_CLOSE_SCOPE
