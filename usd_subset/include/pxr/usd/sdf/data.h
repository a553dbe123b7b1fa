#pragma once

/// Specs held in memory.

#include <pxr/pxr.h>
#include <pxr/usd/sdf/abstractData.h>
#include <pxr/usd/sdf/specTable.h>

#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

TF_DECLARE_WEAK_AND_REF_PTRS(SdfData);

/// A hash table from path to spec; each spec keeps its few fields in a list. Thread: as SdfAbstractData.
class SDF_API SdfData : public SdfAbstractData
{
public:
    SdfData();
    ~SdfData() override;

    using SdfAbstractData::Has;
    using SdfAbstractData::HasSpecAndField;
    using SdfAbstractData::QueryTimeSample;
    using SdfAbstractData::Set;

    bool StreamsData() const override;
    void CreateSpec(const SdfPath& path, SdfSpecType specType) override;
    bool HasSpec(const SdfPath& path) const override;
    void EraseSpec(const SdfPath& path) override;
    void MoveSpec(const SdfPath& oldPath, const SdfPath& newPath) override;
    SdfSpecType GetSpecType(const SdfPath& path) const override;
    SdfPath FindProperty(const SdfPath& primPath, const TfToken& name,
                         SdfSpecType* specType = nullptr) const override;

    bool Has(const SdfPath& path, const TfToken& fieldName, VtValue* value = nullptr) const override;
    bool HasSpecAndField(const SdfPath& path, const TfToken& fieldName, VtValue* value,
                         SdfSpecType* specType) const override;
    bool HasSpecAndField(const SdfPath& path, const TfToken& fieldName, SdfAbstractDataValue* value,
                         SdfSpecType* specType) const override;
    VtValue Get(const SdfPath& path, const TfToken& fieldName) const override;
    const std::type_info& GetTypeid(const SdfPath& path, const TfToken& fieldName) const override;
    void Set(const SdfPath& path, const TfToken& fieldName, const VtValue& value) override;
    void Erase(const SdfPath& path, const TfToken& fieldName) override;
    std::vector<TfToken> List(const SdfPath& path) const override;

    std::set<double> ListAllTimeSamples() const override;
    std::set<double> ListTimeSamplesForPath(const SdfPath& path) const override;
    bool GetBracketingTimeSamples(double time, double* tLower, double* tUpper) const override;
    size_t GetNumTimeSamplesForPath(const SdfPath& path) const override;
    bool GetBracketingTimeSamplesForPath(const SdfPath& path, double time, double* tLower,
                                         double* tUpper) const override;
    bool QueryTimeSample(const SdfPath& path, double time, VtValue* value = nullptr) const override;
    void SetTimeSample(const SdfPath& path, double time, const VtValue& value) override;
    void EraseTimeSample(const SdfPath& path, double time) override;

    /// One spec whose fields a reader sets, so that the spec is looked up once. Valid until it is erased or
    /// moved.
    class Fields;
    /// Returns a spec's fields, those of no spec where there is none.
    Fields GetFields(const SdfPath& path);
    /// Makes a spec and returns its fields.
    Fields CreateFields(const SdfPath& path, SdfSpecType specType);
    /// Moves a value into a field that is new to its spec; for readers, which know that each comes once.
    void Adopt(const SdfPath& path, const TfToken& fieldName, VtValue&& value);

protected:
    void _VisitSpecs(SdfAbstractDataSpecVisitor* visitor) const override;

private:
    using _Field = Sdf_SpecTable::Field;
    using _Spec = Sdf_SpecTable::Spec;
    const _Spec* _FindSpec(const SdfPath& path) const;
    static const VtValue* _FindField(const _Spec& spec, const TfToken& fieldName);
    const VtValue* _Find(const SdfPath& path, const TfToken& fieldName) const;
    const SdfTimeSampleMap* _FindSamples(const SdfPath& path) const;
    VtValue* _FindOrAdd(const SdfPath& path, const TfToken& fieldName);

    Sdf_SpecTable _specs;
};

class SdfData::Fields
{
public:
    Fields() = default;
    explicit operator bool() const { return _spec != nullptr; }
    SdfSpecType GetSpecType() const { return _spec ? _spec->type : SdfSpecTypeUnknown; }
    void Reserve(size_t count) const { _spec->fields.reserve(count); }
    /// Returns a field's value, null where it is not set.
    const VtValue* Find(const TfToken& name) const { return _FindField(*_spec, name); }
    /// Returns a field's value, a default-made one where it is not set or holds another type.
    template <class T>
    T GetAs(const TfToken& name) const
    {
        const VtValue* value = Find(name);
        return value && value->IsHolding<T>() ? value->UncheckedGet<T>() : T();
    }
    void Set(const TfToken& name, VtValue&& value) const;
    template <class T>
    void Set(const TfToken& name, T value) const
    {
        Set(name, VtValue::Take(value));
    }

private:
    friend class SdfData;
    explicit Fields(_Spec* spec) : _spec(spec) {}
    _Spec* _spec = nullptr;
};

PXR_NAMESPACE_CLOSE_SCOPE
