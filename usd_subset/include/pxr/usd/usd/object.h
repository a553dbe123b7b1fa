#pragma once

#include <pxr/base/tf/hash.h>
#include <pxr/base/vt/dictionary.h>
#include <pxr/base/vt/value.h>
#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/attributeSpec.h>
#include <pxr/usd/sdf/notice.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/primSpec.h>
#include <pxr/usd/sdf/relationshipSpec.h>
#include <pxr/usd/sdf/types.h>
#include <pxr/usd/usd/common.h>
#include <pxr/usd/usd/primData.h>
#include <pxr/usd/usd/stage.h>

#include <string>
#include <type_traits>

PXR_NAMESPACE_OPEN_SCOPE

class Usd_StageImpl;

/// The classes of objects.
enum UsdObjType
{
    UsdTypeObject,
    UsdTypePrim,
    UsdTypeProperty,
    UsdTypeAttribute,
    UsdTypeRelationship,
    Usd_NumObjTypes
};

template <class T>
struct Usd_ObjTypeOf;
template <>
struct Usd_ObjTypeOf<UsdObject> : std::integral_constant<UsdObjType, UsdTypeObject>
{};
template <>
struct Usd_ObjTypeOf<UsdPrim> : std::integral_constant<UsdObjType, UsdTypePrim>
{};
template <>
struct Usd_ObjTypeOf<UsdProperty> : std::integral_constant<UsdObjType, UsdTypeProperty>
{};
template <>
struct Usd_ObjTypeOf<UsdAttribute> : std::integral_constant<UsdObjType, UsdTypeAttribute>
{};
template <>
struct Usd_ObjTypeOf<UsdRelationship> : std::integral_constant<UsdObjType, UsdTypeRelationship>
{};

/// Whether subType is baseType or derives from it.
inline bool UsdIsSubtype(UsdObjType baseType, UsdObjType subType)
{
    return baseType == UsdTypeObject || baseType == subType ||
           (baseType == UsdTypeProperty && subType > UsdTypeProperty);
}
inline bool UsdIsConvertible(UsdObjType from, UsdObjType to) { return UsdIsSubtype(to, from); }
inline bool UsdIsConcrete(UsdObjType type)
{
    return type == UsdTypePrim || type == UsdTypeAttribute || type == UsdTypeRelationship;
}

/// A light handle on a prim or property of a stage, and its metadata.
class VESK_USD_API UsdObject
{
public:
    UsdObject() = default;

    /// Whether the object is there: a prim that has not gone; a property that its prim has.
    bool IsValid() const;
    explicit operator bool() const { return IsValid(); }

    friend bool operator==(const UsdObject& lhs, const UsdObject& rhs)
    {
        return lhs._type == rhs._type && lhs._prim == rhs._prim && lhs._proxyPrimPath == rhs._proxyPrimPath &&
               lhs._propName == rhs._propName;
    }
    friend bool operator!=(const UsdObject& lhs, const UsdObject& rhs) { return !(lhs == rhs); }
    friend bool operator<(const UsdObject& lhs, const UsdObject& rhs)
    {
        return lhs.GetPath() < rhs.GetPath();
    }
    friend size_t hash_value(const UsdObject& obj) { return TfHash()(obj); }
    template <class HashState>
    friend void TfHashAppend(HashState& h, const UsdObject& obj)
    {
        h.Append(static_cast<int>(obj._type), obj._prim, obj._proxyPrimPath, obj._propName);
    }

    UsdStageWeakPtr GetStage() const;
    SdfPath GetPath() const;
    const SdfPath& GetPrimPath() const;
    inline UsdPrim GetPrim() const;
    const TfToken& GetName() const { return _type == UsdTypePrim ? GetPrimPath().GetNameToken() : _propName; }

    /// The object as a T, or an invalid T when it is none.
    template <class T>
    T As() const
    {
        return Is<T>() ? T(_type, _prim, _proxyPrimPath, _propName) : T();
    }
    template <class T>
    bool Is() const
    {
        return UsdIsConvertible(_type, Usd_ObjTypeOf<T>::value);
    }

    std::string GetDescription() const;

    // Metadata: the strongest opinion; dictionaries are merged, list edits applied over each other.
    template <typename T>
    bool GetMetadata(const TfToken& key, T* value) const
    {
        VtValue found;
        return GetMetadata(key, &found) && _Take(found, value);
    }
    bool GetMetadata(const TfToken& key, VtValue* value) const;
    template <typename T>
    bool SetMetadata(const TfToken& key, const T& value) const
    {
        return SetMetadata(key, VtValue(value));
    }
    bool SetMetadata(const TfToken& key, const VtValue& value) const;
    bool ClearMetadata(const TfToken& key) const;
    bool HasMetadata(const TfToken& key) const;
    bool HasAuthoredMetadata(const TfToken& key) const;

    template <class T>
    bool GetMetadataByDictKey(const TfToken& key, const TfToken& keyPath, T* value) const
    {
        VtValue found;
        return GetMetadataByDictKey(key, keyPath, &found) && _Take(found, value);
    }
    bool GetMetadataByDictKey(const TfToken& key, const TfToken& keyPath, VtValue* value) const;
    template <typename T>
    bool SetMetadataByDictKey(const TfToken& key, const TfToken& keyPath, const T& value) const
    {
        return SetMetadataByDictKey(key, keyPath, VtValue(value));
    }
    bool SetMetadataByDictKey(const TfToken& key, const TfToken& keyPath, const VtValue& value) const;
    bool ClearMetadataByDictKey(const TfToken& key, const TfToken& keyPath) const;
    bool HasMetadataDictKey(const TfToken& key, const TfToken& keyPath) const;
    bool HasAuthoredMetadataDictKey(const TfToken& key, const TfToken& keyPath) const;

    UsdMetadataValueMap GetAllMetadata() const;
    UsdMetadataValueMap GetAllAuthoredMetadata() const;

    bool IsHidden() const;
    bool SetHidden(bool hidden) const;
    bool ClearHidden() const;
    bool HasAuthoredHidden() const;

    VtDictionary GetCustomData() const;
    VtValue GetCustomDataByKey(const TfToken& keyPath) const;
    void SetCustomData(const VtDictionary& customData) const;
    void SetCustomDataByKey(const TfToken& keyPath, const VtValue& value) const;
    void ClearCustomData() const;
    void ClearCustomDataByKey(const TfToken& keyPath) const;
    bool HasCustomData() const;
    bool HasCustomDataKey(const TfToken& keyPath) const;
    bool HasAuthoredCustomData() const;
    bool HasAuthoredCustomDataKey(const TfToken& keyPath) const;

    VtDictionary GetAssetInfo() const;
    VtValue GetAssetInfoByKey(const TfToken& keyPath) const;
    void SetAssetInfo(const VtDictionary& assetInfo) const;
    void SetAssetInfoByKey(const TfToken& keyPath, const VtValue& value) const;
    void ClearAssetInfo() const;
    void ClearAssetInfoByKey(const TfToken& keyPath) const;
    bool HasAssetInfo() const;
    bool HasAssetInfoKey(const TfToken& keyPath) const;
    bool HasAuthoredAssetInfo() const;
    bool HasAuthoredAssetInfoKey(const TfToken& keyPath) const;

    std::string GetDocumentation() const;
    bool SetDocumentation(const std::string& doc) const;
    bool ClearDocumentation() const;
    bool HasAuthoredDocumentation() const;

    std::string GetDisplayName() const;
    bool SetDisplayName(const std::string& name) const;
    bool ClearDisplayName() const;
    bool HasAuthoredDisplayName() const;

    static char GetNamespaceDelimiter() { return ':'; }

protected:
    explicit UsdObject(UsdObjType type) : _type(type) {}
    UsdObject(const Usd_PrimDataHandle& prim, const SdfPath& proxyPrimPath)
        : _type(UsdTypePrim), _prim(prim), _proxyPrimPath(proxyPrimPath)
    {}
    UsdObject(UsdObjType objType, const Usd_PrimDataHandle& prim, const SdfPath& proxyPrimPath,
              const TfToken& propName)
        : _type(objType), _prim(prim), _proxyPrimPath(proxyPrimPath), _propName(propName)
    {}

    UsdStage* _GetStage() const { return _prim->GetStage(); }
    Usd_StageImpl& _Impl() const;
    SdfSpecType _GetDefiningSpecType() const;
    const Usd_PrimDataHandle& _Prim() const { return _prim; }
    const TfToken& _PropName() const { return _propName; }
    const SdfPath& _ProxyPrimPath() const { return _proxyPrimPath; }

private:
    friend class Usd_ObjectAccess;

    template <class T>
    static bool _Take(const VtValue& found, T* value)
    {
        if (!found.IsHolding<T>()) {
            return false;
        }
        *value = found.UncheckedGet<T>();
        return true;
    }
    VtDictionary _GetDictionary(const TfToken& key) const;

    UsdObjType _type = UsdTypeObject;
    Usd_PrimDataHandle _prim;
    SdfPath _proxyPrimPath;
    TfToken _propName;
};

PXR_NAMESPACE_CLOSE_SCOPE
