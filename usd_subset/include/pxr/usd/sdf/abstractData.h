#pragma once

/// Where a layer keeps its specs and their fields.

#include <pxr/base/tf/declarePtrs.h>
#include <pxr/base/tf/refBase.h>
#include <pxr/base/tf/token.h>
#include <pxr/base/tf/weakBase.h>
#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/api.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/types.h>

#include <set>
#include <string>
#include <typeinfo>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

TF_DECLARE_WEAK_AND_REF_PTRS(SdfAbstractData);
class SdfAbstractDataSpecVisitor;

/// A typed place into which a field can be read without a VtValue in between.
class SdfAbstractDataValue
{
public:
    virtual ~SdfAbstractDataValue() = default;

    /// Stores a value and says whether it had the expected type; a value block sets isValueBlock.
    template <class T>
    bool StoreValue(const T& v)
    {
        if constexpr (std::is_same_v<T, VtValue>) {
            return _StoreVtValue(v);
        } else {
            return _StoreVtValue(VtValue(v));
        }
    }

    void* value;
    const std::type_info& valueType;
    bool isValueBlock = false;
    bool typeMismatch = false;

protected:
    SdfAbstractDataValue(void* value_, const std::type_info& valueType_)
        : value(value_), valueType(valueType_)
    {}

private:
    virtual bool _StoreVtValue(const VtValue& v) = 0;
};

/// Reads a field into a T.
template <class T>
class SdfAbstractDataTypedValue : public SdfAbstractDataValue
{
public:
    SdfAbstractDataTypedValue(T* place) : SdfAbstractDataValue(place, typeid(T)) {}

private:
    bool _StoreVtValue(const VtValue& v) override
    {
        isValueBlock = v.IsHolding<SdfValueBlock>();
        typeMismatch = false;
        if (v.IsHolding<T>()) {
            *static_cast<T*>(value) = v.UncheckedGet<T>();
            return true;
        }
        typeMismatch = !isValueBlock;
        return isValueBlock;
    }
};

/// A typed value that is only looked at.
class SdfAbstractDataConstValue
{
public:
    virtual ~SdfAbstractDataConstValue() = default;
    virtual bool GetValue(VtValue* v) const = 0;
    virtual bool IsEqual(const VtValue& v) const = 0;

    const void* value;
    const std::type_info& valueType;

protected:
    SdfAbstractDataConstValue(const void* value_, const std::type_info& valueType_)
        : value(value_), valueType(valueType_)
    {}
};

/// A T that is only looked at.
template <class T>
class SdfAbstractDataConstTypedValue : public SdfAbstractDataConstValue
{
public:
    SdfAbstractDataConstTypedValue(const T* place) : SdfAbstractDataConstValue(place, typeid(T)) {}

    bool GetValue(VtValue* v) const override
    {
        *v = VtValue(_Get());
        return true;
    }
    bool IsEqual(const VtValue& v) const override
    {
        return v.IsHolding<T>() && v.UncheckedGet<T>() == _Get();
    }

private:
    const T& _Get() const { return *static_cast<const T*>(value); }
};

/// A literal is a string.
template <int N>
class SdfAbstractDataConstTypedValue<char[N]> : public SdfAbstractDataConstTypedValue<std::string>
{
public:
    SdfAbstractDataConstTypedValue(const char (*place)[N])
        : SdfAbstractDataConstTypedValue<std::string>(&_str), _str(*place)
    {}

private:
    std::string _str;
};

/// Specs by path, each with its fields by name. An implementation may hold them in memory or read them on
/// demand. Thread: any number of readers, or one writer.
class SDF_API SdfAbstractData : public TfRefBase, public TfWeakBase
{
public:
    SdfAbstractData();
    ~SdfAbstractData() override;

    virtual void CopyFrom(const SdfAbstractDataConstPtr& source);
    virtual bool StreamsData() const = 0;
    virtual bool IsDetached() const;
    virtual bool IsEmpty() const;
    virtual bool Equals(const SdfAbstractDataRefPtr& rhs) const;

    virtual void CreateSpec(const SdfPath& path, SdfSpecType specType) = 0;
    virtual bool HasSpec(const SdfPath& path) const = 0;
    virtual void EraseSpec(const SdfPath& path) = 0;
    virtual void MoveSpec(const SdfPath& oldPath, const SdfPath& newPath) = 0;
    virtual SdfSpecType GetSpecType(const SdfPath& path) const = 0;
    /// The path of a prim's property, and on wish the type of its spec; empty where there is none. Makes no
    /// path of a property that is not there.
    virtual SdfPath FindProperty(const SdfPath& primPath, const TfToken& name,
                                 SdfSpecType* specType = nullptr) const;
    /// Visits every spec, in no particular order, until the visitor returns false.
    void VisitSpecs(SdfAbstractDataSpecVisitor* visitor) const;

    virtual bool Has(const SdfPath& path, const TfToken& fieldName, SdfAbstractDataValue* value) const;
    virtual bool Has(const SdfPath& path, const TfToken& fieldName, VtValue* value = nullptr) const = 0;
    /// Looks up the spec and one of its fields at once; `specType` is unknown where there is no spec.
    virtual bool HasSpecAndField(const SdfPath& path, const TfToken& fieldName, SdfAbstractDataValue* value,
                                 SdfSpecType* specType) const;
    virtual bool HasSpecAndField(const SdfPath& path, const TfToken& fieldName, VtValue* value,
                                 SdfSpecType* specType) const;
    virtual VtValue Get(const SdfPath& path, const TfToken& fieldName) const = 0;
    virtual const std::type_info& GetTypeid(const SdfPath& path, const TfToken& fieldName) const;
    virtual void Set(const SdfPath& path, const TfToken& fieldName, const VtValue& value) = 0;
    virtual void Set(const SdfPath& path, const TfToken& fieldName, const SdfAbstractDataConstValue& value);
    virtual void Erase(const SdfPath& path, const TfToken& fieldName) = 0;
    /// Returns the names of a spec's fields in the order in which they were set.
    virtual std::vector<TfToken> List(const SdfPath& path) const = 0;

    template <class T>
    T GetAs(const SdfPath& path, const TfToken& fieldName, const T& defaultValue = T()) const
    {
        VtValue value = Get(path, fieldName);
        return value.IsHolding<T>() ? value.UncheckedGet<T>() : defaultValue;
    }

    /// Entries of dictionary fields; a key path is a list of keys separated by colons.
    virtual bool HasDictKey(const SdfPath& path, const TfToken& fieldName, const TfToken& keyPath,
                            SdfAbstractDataValue* value) const;
    virtual bool HasDictKey(const SdfPath& path, const TfToken& fieldName, const TfToken& keyPath,
                            VtValue* value = nullptr) const;
    virtual VtValue GetDictValueByKey(const SdfPath& path, const TfToken& fieldName,
                                      const TfToken& keyPath) const;
    virtual void SetDictValueByKey(const SdfPath& path, const TfToken& fieldName, const TfToken& keyPath,
                                   const VtValue& value);
    virtual void EraseDictValueByKey(const SdfPath& path, const TfToken& fieldName, const TfToken& keyPath);
    virtual std::vector<TfToken> ListDictKeys(const SdfPath& path, const TfToken& fieldName,
                                              const TfToken& keyPath) const;

    virtual std::set<double> ListAllTimeSamples() const = 0;
    virtual std::set<double> ListTimeSamplesForPath(const SdfPath& path) const = 0;
    virtual bool GetBracketingTimeSamples(double time, double* tLower, double* tUpper) const = 0;
    virtual size_t GetNumTimeSamplesForPath(const SdfPath& path) const = 0;
    virtual bool GetBracketingTimeSamplesForPath(const SdfPath& path, double time, double* tLower,
                                                 double* tUpper) const = 0;
    virtual bool QueryTimeSample(const SdfPath& path, double time, VtValue* value = nullptr) const = 0;
    virtual bool QueryTimeSample(const SdfPath& path, double time, SdfAbstractDataValue* value) const;
    virtual void SetTimeSample(const SdfPath& path, double time, const VtValue& value) = 0;
    virtual void EraseTimeSample(const SdfPath& path, double time) = 0;

protected:
    virtual void _VisitSpecs(SdfAbstractDataSpecVisitor* visitor) const = 0;
};

/// Receives the specs of a data object.
class SDF_API SdfAbstractDataSpecVisitor
{
public:
    virtual ~SdfAbstractDataSpecVisitor();
    virtual bool VisitSpec(const SdfAbstractData& data, const SdfPath& path) = 0;
    virtual void Done(const SdfAbstractData& data) = 0;
};

PXR_NAMESPACE_CLOSE_SCOPE
