#pragma once

/// The base of all specs.

#include <pxr/base/tf/errorMark.h>
#include <pxr/base/tf/notice.h>
#include <pxr/base/tf/status.h>
#include <pxr/base/tf/token.h>
#include <pxr/base/tf/warning.h>
#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/abstractData.h>
#include <pxr/usd/sdf/allowed.h>
#include <pxr/usd/sdf/api.h>
#include <pxr/usd/sdf/declareSpec.h>
#include <pxr/usd/sdf/identity.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/sdf/types.h>

#include <iosfwd>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

class SdfSchemaBase;

/// A place in a layer that holds fields. A spec object is light: it refers to the layer and keeps nothing
/// itself. On a spec that is gone every query answers with nothing and every edit posts an error and does
/// nothing. Thread: any number of readers of a layer, or one writer.
class SDF_API SdfSpec
{
public:
    SdfSpec() {}
    explicit SdfSpec(const Sdf_IdentityRefPtr& id) : _id(id) {}
    SdfSpec(const SdfSpec& other) = default;
    SdfSpec& operator=(const SdfSpec& other) = default;
    ~SdfSpec();

    const SdfSchemaBase& GetSchema() const;
    SdfSpecType GetSpecType() const;
    /// Says whether the spec or its layer is gone.
    bool IsDormant() const;
    SdfLayerHandle GetLayer() const;
    SdfPath GetPath() const;
    bool PermissionToEdit() const;

    /// Returns the fields that can be set by SetInfo().
    std::vector<TfToken> ListInfoKeys() const;
    /// Returns the fields that count as metadata.
    std::vector<TfToken> GetMetaDataInfoKeys() const;
    TfToken GetMetaDataDisplayGroup(TfToken const& key) const;
    /// Returns a field's value, or its fallback where none is authored.
    VtValue GetInfo(const TfToken& key) const;
    void SetInfo(const TfToken& key, const VtValue& value);
    void SetInfoDictionaryValue(const TfToken& dictionaryKey, const TfToken& entryKey, const VtValue& value);
    bool HasInfo(const TfToken& key) const;
    void ClearInfo(const TfToken& key);
    const VtValue& GetFallbackForInfo(const TfToken& key) const;

    /// Writes the spec as text.
    bool WriteToStream(std::ostream& out, size_t indent = 0) const;
    /// Says whether the spec has no effect on a scene.
    bool IsInert(bool ignoreChildren = false) const;

    std::vector<TfToken> ListFields() const;
    bool HasField(const TfToken& name) const;
    template <class T>
    bool HasField(const TfToken& name, T* value) const
    {
        const VtValue field = GetField(name);
        if (!value || !field.IsHolding<T>()) {
            return !value && !field.IsEmpty();
        }
        *value = field.UncheckedGet<T>();
        return true;
    }
    VtValue GetField(const TfToken& name) const;
    template <typename T>
    T GetFieldAs(const TfToken& name, const T& defaultValue = T()) const
    {
        const VtValue value = GetField(name);
        return value.IsHolding<T>() ? value.UncheckedGet<T>() : defaultValue;
    }
    bool SetField(const TfToken& name, const VtValue& value);
    template <typename T>
    bool SetField(const TfToken& name, const T& value)
    {
        return SetField(name, VtValue(value));
    }
    bool ClearField(const TfToken& name);

    bool operator==(const SdfSpec& rhs) const { return _id == rhs._id; }
    bool operator!=(const SdfSpec& rhs) const { return !(*this == rhs); }
    bool operator<(const SdfSpec& rhs) const { return _id < rhs._id; }

    friend size_t hash_value(const SdfSpec& x) { return std::hash<const void*>()(x._id.get()); }
    template <class HashState>
    friend void TfHashAppend(HashState& h, const SdfSpec& x)
    {
        h.Append(static_cast<const void*>(x._id.get()));
    }

protected:
    friend struct Sdf_CastAccess;

private:
    Sdf_IdentityRefPtr _id;
};

PXR_NAMESPACE_CLOSE_SCOPE
