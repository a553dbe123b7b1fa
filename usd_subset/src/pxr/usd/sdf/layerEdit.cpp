#include "pxr/usd/sdf/changeManager.h"
#include "pxr/usd/sdf/childPaths.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/schema.h>

#include <sstream>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

std::string describe(const VtValue& value)
{
    std::ostringstream text;
    text << value;
    return text.str();
}

VtValue toValue(const SdfAbstractDataConstValue& value)
{
    VtValue result;
    value.GetValue(&result);
    return result;
}

} // namespace

bool SdfLayer::_CanEdit(const std::string& what, const SdfPath& path) const
{
    if (!_permissionToEdit) {
        TF_CODING_ERROR("Cannot %s <%s>. Layer @%s@ is not editable.", what.c_str(), path.GetText(),
                        _identifier.c_str());
    }
    return _permissionToEdit;
}

void SdfLayer::SetField(const SdfPath& path, const TfToken& fieldName, const VtValue& value)
{
    if (value.IsEmpty()) {
        EraseField(path, fieldName);
        return;
    }
    if (!_CanEdit("set " + fieldName.GetString() + " on", path)) {
        return;
    }
    if (!HasSpec(path)) {
        TF_CODING_ERROR("Cannot set %s on <%s> in layer @%s@: no spec is there.", fieldName.GetText(),
                        path.GetText(), _identifier.c_str());
        return;
    }
    VtValue oldValue = GetField(path, fieldName);
    if (value != oldValue) {
        _PrimSetField(path, fieldName, value, &oldValue, true);
    }
}

void SdfLayer::SetField(const SdfPath& path, const TfToken& fieldName, const SdfAbstractDataConstValue& value)
{
    SetField(path, fieldName, toValue(value));
}

void SdfLayer::EraseField(const SdfPath& path, const TfToken& fieldName)
{
    if (!_CanEdit("erase " + fieldName.GetString() + " on", path) || !_data->Has(path, fieldName)) {
        return;
    }
    // A required field always has a value: erasing it means falling back.
    const VtValue* fallback = _RequiredFallback(fieldName, GetSpecType(path));
    if (!fallback || GetField(path, fieldName) != *fallback) {
        _PrimSetField(path, fieldName, VtValue(), nullptr, true);
    }
}

void SdfLayer::SetFieldDictValueByKey(const SdfPath& path, const TfToken& fieldName, const TfToken& keyPath,
                                      const VtValue& value)
{
    if (value.IsEmpty()) {
        EraseFieldDictValueByKey(path, fieldName, keyPath);
        return;
    }
    const bool allowed = _CanEdit("set " + fieldName.GetString() + ":" + keyPath.GetString() + " on", path);
    if (allowed && GetFieldDictValueByKey(path, fieldName, keyPath) != value) {
        _PrimSetFieldDictValueByKey(path, fieldName, keyPath, value, true);
    }
}

void SdfLayer::SetFieldDictValueByKey(const SdfPath& path, const TfToken& fieldName, const TfToken& keyPath,
                                      const SdfAbstractDataConstValue& value)
{
    SetFieldDictValueByKey(path, fieldName, keyPath, toValue(value));
}

void SdfLayer::EraseFieldDictValueByKey(const SdfPath& path, const TfToken& fieldName, const TfToken& keyPath)
{
    const bool allowed = _CanEdit("erase " + fieldName.GetString() + ":" + keyPath.GetString() + " on", path);
    if (allowed && _data->HasDictKey(path, fieldName, keyPath, static_cast<VtValue*>(nullptr))) {
        _PrimSetFieldDictValueByKey(path, fieldName, keyPath, VtValue(), true);
    }
}

// Fills `cast` with the value in the type of the attribute.
bool SdfLayer::_CastForAttribute(const SdfPath& path, const VtValue& value, VtValue* cast) const
{
    const SdfSpecType specType = GetSpecType(path);
    if (specType != SdfSpecTypeAttribute) {
        TF_CODING_ERROR("Cannot set time sample at <%s> %s", path.GetText(),
                        specType == SdfSpecTypeUnknown ? "since spec does not exist"
                                                       : "because spec is not an attribute");
        return false;
    }
    *cast = value;
    if (value.IsHolding<SdfValueBlock>()) {
        return true;
    }
    const TfToken typeName = GetFieldAs<TfToken>(path, SdfFieldKeys->TypeName);
    const VtValue& fallback = SdfSchema::GetInstance().FindType(typeName).GetDefaultValue();
    if (fallback.IsEmpty()) {
        TF_CODING_ERROR("Cannot determine value type for <%s>", path.GetText());
        return false;
    }
    if (value.GetTypeid() != fallback.GetTypeid()) {
        *cast = VtValue::CastToTypeOf(value, fallback);
    }
    if (cast->IsEmpty()) {
        TF_CODING_ERROR("Can't set time sample on <%s> to %s: expected a value of type \"%s\"",
                        path.GetText(), describe(value).c_str(), typeName.GetText());
    }
    return !cast->IsEmpty();
}

void SdfLayer::SetTimeSample(const SdfPath& path, double time, const VtValue& value)
{
    VtValue cast;
    if (!_CanEdit("set time sample on", path) || !_CastForAttribute(path, value, &cast)) {
        return;
    }
    VtValue oldValue;
    if (!QueryTimeSample(path, time, &oldValue) || oldValue != cast) {
        _PrimSetTimeSample(path, time, cast, true);
    }
}

void SdfLayer::SetTimeSample(const SdfPath& path, double time, const SdfAbstractDataConstValue& value)
{
    SetTimeSample(path, time, toValue(value));
}

void SdfLayer::EraseTimeSample(const SdfPath& path, double time)
{
    if (!_CanEdit("erase time sample on", path)) {
        return;
    }
    if (!HasSpec(path)) {
        TF_CODING_ERROR("Cannot erase time sample at <%s> since spec does not exist", path.GetText());
    } else if (QueryTimeSample(path, time)) {
        _PrimSetTimeSample(path, time, VtValue(), true);
    }
}

bool SdfLayer::_CreateSpec(const SdfPath& path, SdfSpecType specType, bool inert)
{
    if (specType == SdfSpecTypeUnknown || path.IsEmpty() || !path.IsAbsolutePath() ||
        !_CanEdit("create spec at", path)) {
        return false;
    }
    if (HasSpec(path)) {
        TF_CODING_ERROR("Cannot create spec <%s> because it already exists in @%s@", path.GetText(),
                        _identifier.c_str());
        return false;
    }
    SdfChangeBlock block;
    _PrimCreateSpec(path, specType, inert, true);
    _PrimPushChild(Sdf_ListingParentOf(path), Sdf_ChildrenFieldOf(path), Sdf_ChildNameOf(path), true);
    return true;
}

bool SdfLayer::_DeleteSpec(const SdfPath& path)
{
    if (!_CanEdit("delete", path) || !HasSpec(path)) {
        return false;
    }
    SdfChangeBlock block;
    // A notice about an inert spec says nothing of what lies below it, hence each is told of.
    const bool inert = _IsInertSubtree(path);
    if (inert) {
        Traverse(path, [&](const SdfPath& below) { Sdf_ChangeManager::DidRemoveSpec(_Self(), below, true); });
    }
    _PrimDeleteSpec(path, inert, true);

    const SdfPath parent = Sdf_ListingParentOf(path);
    const TfToken& field = Sdf_ChildrenFieldOf(path);
    const TfToken name = Sdf_ChildNameOf(path);
    std::vector<TfToken> names = GetFieldAs<std::vector<TfToken>>(parent, field);
    const auto it = std::find(names.begin(), names.end(), name);
    if (it == names.end()) {
        return true;
    }
    names.erase(it);
    _PrimSetField(parent, field, names.empty() ? VtValue() : VtValue(names), nullptr, true);
    return true;
}

bool SdfLayer::_MoveSpec(const SdfPath& oldPath, const SdfPath& newPath)
{
    const std::string what = "move to <" + newPath.GetString() + "> the spec";
    const bool overlap = oldPath.HasPrefix(newPath) || newPath.HasPrefix(oldPath);
    if (!_CanEdit(what, oldPath) || overlap || !HasSpec(oldPath) || HasSpec(newPath)) {
        return false;
    }
    SdfChangeBlock block;
    _PrimMoveSpec(oldPath, newPath, true);
    return true;
}

void SdfLayer::_PrimSetField(const SdfPath& path, const TfToken& fieldName, const VtValue& value,
                             VtValue* oldValue, bool useDelegate)
{
    if (useDelegate) {
        _stateDelegate->SetField(path, fieldName, value, oldValue);
        return;
    }
    SdfChangeBlock block;
    VtValue before = oldValue ? std::move(*oldValue) : GetField(path, fieldName);
    _data->Set(path, fieldName, value);
    Sdf_ChangeManager::DidChangeField(_Self(), path, fieldName, std::move(before),
                                      value.IsEmpty() ? GetField(path, fieldName) : value);
}

void SdfLayer::_PrimSetFieldDictValueByKey(const SdfPath& path, const TfToken& fieldName,
                                           const TfToken& keyPath, const VtValue& value, bool useDelegate)
{
    if (useDelegate) {
        _stateDelegate->SetFieldDictValueByKey(path, fieldName, keyPath, value);
        return;
    }
    SdfChangeBlock block;
    VtValue before = GetField(path, fieldName);
    _data->SetDictValueByKey(path, fieldName, keyPath, value);
    Sdf_ChangeManager::DidChangeField(_Self(), path, fieldName, std::move(before), GetField(path, fieldName));
}

void SdfLayer::_PrimSetTimeSample(const SdfPath& path, double time, const VtValue& value, bool useDelegate)
{
    if (useDelegate) {
        _stateDelegate->SetTimeSample(path, time, value);
        return;
    }
    SdfChangeBlock block;
    Sdf_ChangeManager::DidChangeAttributeTimeSamples(_Self(), path);
    _data->SetTimeSample(path, time, value);
}

void SdfLayer::_PrimCreateSpec(const SdfPath& path, SdfSpecType specType, bool inert, bool useDelegate)
{
    if (useDelegate) {
        _stateDelegate->CreateSpec(path, specType, inert);
        return;
    }
    SdfChangeBlock block;
    Sdf_ChangeManager::DidAddSpec(_Self(), path, inert);
    _data->CreateSpec(path, specType);
}

void SdfLayer::_PrimDeleteSpec(const SdfPath& path, bool inert, bool useDelegate)
{
    if (useDelegate) {
        _stateDelegate->DeleteSpec(path, inert);
        return;
    }
    SdfChangeBlock block;
    Sdf_ChangeManager::DidRemoveSpec(_Self(), path, inert);
    Traverse(path, [this](const SdfPath& below) { _data->EraseSpec(below); });
}

void SdfLayer::_PrimMoveSpec(const SdfPath& oldPath, const SdfPath& newPath, bool useDelegate)
{
    if (useDelegate) {
        _stateDelegate->MoveSpec(oldPath, newPath);
        return;
    }
    SdfChangeBlock block;
    Sdf_ChangeManager::DidMoveSpec(_Self(), oldPath, newPath);
    SdfPathVector below;
    Traverse(oldPath, [&below](const SdfPath& path) { below.push_back(path); });
    for (const SdfPath& path : below) {
        const SdfPath moved = path.ReplacePrefix(oldPath, newPath, /* fixTargetPaths = */ false);
        _data->MoveSpec(path, moved);
        _identities.MoveIdentity(path, moved);
    }
}

template <class T>
void SdfLayer::_PrimPushChild(const SdfPath& parentPath, const TfToken& fieldName, const T& value,
                              bool useDelegate)
{
    if (useDelegate) {
        _stateDelegate->PushChild(parentPath, fieldName, value);
        return;
    }
    // Taking the field out first leaves its vector with one owner, so that it grows in place.
    VtValue field = _data->Get(parentPath, fieldName);
    std::vector<T> children;
    if (field.IsHolding<std::vector<T>>()) {
        _data->Set(parentPath, fieldName, VtValue(std::vector<T>()));
        field.UncheckedSwap(children);
    }
    children.push_back(value);
    _data->Set(parentPath, fieldName, VtValue::Take(children));
}

template <class T>
void SdfLayer::_PrimPopChild(const SdfPath& parentPath, const TfToken& fieldName, bool useDelegate)
{
    std::vector<T> children = GetFieldAs<std::vector<T>>(parentPath, fieldName);
    if (children.empty()) {
        TF_CODING_ERROR("Cannot take a child out of the empty field %s on <%s>", fieldName.GetText(),
                        parentPath.GetText());
        return;
    }
    if (useDelegate) {
        _stateDelegate->PopChild(parentPath, fieldName, T(children.back()));
        return;
    }
    children.pop_back();
    _data->Set(parentPath, fieldName, VtValue::Take(children));
}

template void SdfLayer::_PrimPushChild(const SdfPath&, const TfToken&, const TfToken&, bool);
template void SdfLayer::_PrimPushChild(const SdfPath&, const TfToken&, const SdfPath&, bool);
template void SdfLayer::_PrimPopChild<TfToken>(const SdfPath&, const TfToken&, bool);
template void SdfLayer::_PrimPopChild<SdfPath>(const SdfPath&, const TfToken&, bool);

void SdfLayer::Traverse(const SdfPath& path, const TraversalFunction& func) const
{
    // Each path waits on the stack with a mark that tells whether its children were pushed already.
    std::vector<std::pair<SdfPath, bool>> stack = {{path, false}};
    while (!stack.empty()) {
        const SdfPath current = stack.back().first;
        if (stack.back().second) {
            stack.pop_back();
            func(current);
            continue;
        }
        stack.back().second = true;
        SdfPathVector children;
        for (const TfToken& field : _data->List(current)) {
            if (GetSchema().HoldsChildren(field)) {
                Sdf_AppendChildPaths(current, field, _data->Get(current, field), &children);
            }
        }
        for (auto it = children.rbegin(); it != children.rend(); ++it) {
            stack.emplace_back(*it, false);
        }
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
