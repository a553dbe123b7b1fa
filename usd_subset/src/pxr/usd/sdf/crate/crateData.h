#pragma once

/// The specs of a crate file.

#include "pxr/usd/sdf/crate/crateFile.h"

#include <pxr/pxr.h>
#include <pxr/usd/sdf/abstractData.h>
#include <pxr/usd/sdf/specTable.h>

#include <memory>
#include <utility>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

TF_DECLARE_WEAK_AND_REF_PTRS(Sdf_CrateData);

/// The samples of an attribute: as they lie in the file until one is edited, then in memory. A value in
/// memory may still be a reference into the file.
struct Sdf_CrateSamples
{
    Sdf_CrateTimes times;
    uint64_t reps = 0;
    std::shared_ptr<std::vector<VtValue>> values; // null while they are in the file

    bool operator==(const Sdf_CrateSamples& o) const
    {
        return times == o.times && reps == o.reps && values == o.values;
    }
    friend size_t hash_value(const Sdf_CrateSamples& samples) { return samples.reps; }
};

/// Specs whose values are decoded from the file when they are asked for. Specs with the same fields share
/// them until one is edited. Targets of relationships and connections of attributes have no specs of their
/// own: they are there where the list of targets or connections has them. Thread: as SdfAbstractData.
class SDF_API Sdf_CrateData : public SdfAbstractData
{
public:
    Sdf_CrateData();
    ~Sdf_CrateData() override;

    using SdfAbstractData::Has;
    using SdfAbstractData::HasSpecAndField;
    using SdfAbstractData::QueryTimeSample;
    using SdfAbstractData::Set;

    /// Reads the tables of a file; on an error the content is empty, and the error says why. Throws nothing.
    bool Open(const std::string& name, const std::shared_ptr<ArAsset>& asset, const Sdf_CrateLimits& limits,
              std::string* error);

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

protected:
    void _VisitSpecs(SdfAbstractDataSpecVisitor* visitor) const override;

private:
    typedef std::pair<TfToken, VtValue> _Field;
    typedef std::vector<_Field> _Fields;
    struct _Spec
    {
        SdfPath path;
        std::shared_ptr<_Fields> fields; // null where there are none
        SdfSpecType type = SdfSpecTypeUnknown;
    };
    void _Populate(const Sdf_CrateFile::Tables& tables);
    VtValue _InitialValue(const Sdf_CrateFile::Field& field);

    const _Spec* _FindSpec(const SdfPath& path) const;
    static const VtValue* _FindField(const _Spec& spec, const TfToken& fieldName);
    const VtValue* _Find(const SdfPath& path, const TfToken& fieldName) const;
    /// Returns the fields for editing, alone; null where there is no such spec.
    _Fields* _Edit(const SdfPath& path);
    VtValue* _EditField(const SdfPath& path, const TfToken& fieldName, bool add);
    VtValue _Decode(const VtValue& stored) const;
    VtValue _DecodeField(const TfToken& fieldName, const VtValue& stored) const;

    SdfPathVector _Targets(const SdfPath& property, const _Spec& spec, bool applied) const;
    bool _HasTarget(const SdfPath& path) const;
    bool _HasTargetChildren(const SdfPath& path, const _Spec& spec, const TfToken& fieldName,
                            VtValue* value) const;

    const Sdf_CrateSamples* _FindSamples(const SdfPath& path) const;
    VtValue _Sample(const Sdf_CrateSamples& samples, size_t index) const;
    template <class Edit>
    void _EditSamples(VtValue* field, const Edit& edit);
    std::vector<VtValue> _SampleValues(const Sdf_CrateSamples& samples) const;

    Sdf_SpecTableOf<_Spec> _specs;
    std::shared_ptr<Sdf_CrateFile> _file; // null where the content was never in a file
};

PXR_NAMESPACE_CLOSE_SCOPE
