#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/registryManager.h>
#include <pxr/base/tf/token.h>
#include <pxr/base/vt/value.h>

#include "pxr/base/vt/castRegistry.h"

#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

static_assert(std::is_nothrow_move_constructible_v<VtValue> && std::is_nothrow_move_assignable_v<VtValue>);

TF_REGISTRY_FUNCTION(TfType) { TfType::Define<VtValue>(); }

TfType VtValue::GetType() const
{
    const TfType type = TfType::Find(GetTypeid());
    if (type.IsUnknown()) {
        TF_WARN("Returning unknown type for VtValue with unregistered C++ type %s",
                TfType::GetCanonicalTypeName(GetTypeid()).c_str());
    }
    return type;
}

std::string VtValue::GetTypeName() const { return TfType::GetCanonicalTypeName(GetTypeid()); }

void VtValue::_PostGetFailed(std::type_info const& queried) const
{
    const std::string wanted = TfType::GetCanonicalTypeName(queried);
    if (IsEmpty()) {
        TF_CODING_ERROR("Attempted to get value of type '%s' from empty VtValue.", wanted.c_str());
    } else {
        TF_CODING_ERROR("Attempted to get value of type '%s' from VtValue holding '%s'", wanted.c_str(),
                        GetTypeName().c_str());
    }
}

void VtValue::_RegisterCast(std::type_info const& from, std::type_info const& to, CastFunction cast)
{
    Vt_CastRegistry::GetInstance().Register(from, to, cast);
}

bool VtValue::CanCastFromTypeidToTypeid(std::type_info const& from, std::type_info const& to)
{
    return from == to || Vt_CastRegistry::GetInstance().Find(from, to);
}

VtValue VtValue::_Cast(std::type_info const& to, VtValue const& value)
{
    if (value.IsEmpty() || value.GetTypeid() == to) {
        return value;
    }
    const CastFunction cast = Vt_CastRegistry::GetInstance().Find(value.GetTypeid(), to);
    return cast ? cast(value) : VtValue();
}

std::ostream& operator<<(std::ostream& out, VtValue const& value)
{
    return value.IsEmpty() ? out : value._info->stream(value._Object(), out);
}

void Vt_PostUnhashable(std::type_info const& type)
{
    TF_CODING_ERROR(
        "Invoked VtHashValue on an object of type <%s>, which has no hash; give it an overload of "
        "TfHashAppend() or hash_value().",
        TfType::GetCanonicalTypeName(type).c_str());
}

PXR_NAMESPACE_CLOSE_SCOPE
