#include <pxr/usd/sdf/data.h>
#include <pxr/usd/sdf/schema.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// The two times around a time; both are the nearest where it lies outside.
template <class Times, class Key>
bool bracket(const Times& times, double time, double* lower, double* upper, Key key)
{
    if (times.empty()) {
        return false;
    }
    auto it = times.lower_bound(time);
    if (it == times.end()) {
        *lower = *upper = key(*times.rbegin());
    } else if (it == times.begin() || key(*it) == time) {
        *lower = *upper = key(*it);
    } else {
        *upper = key(*it);
        *lower = key(*std::prev(it));
    }
    return true;
}

} // namespace

SdfData::SdfData() = default;
SdfData::~SdfData() = default;

bool SdfData::StreamsData() const { return false; }

const SdfData::_Spec* SdfData::_FindSpec(const SdfPath& path) const { return _specs.Find(path); }

const VtValue* SdfData::_FindField(const _Spec& spec, const TfToken& fieldName)
{
    for (const _Field& field : spec.fields) {
        if (field.first == fieldName) {
            return &field.second;
        }
    }
    return nullptr;
}

const VtValue* SdfData::_Find(const SdfPath& path, const TfToken& fieldName) const
{
    const _Spec* spec = _FindSpec(path);
    return spec ? _FindField(*spec, fieldName) : nullptr;
}

VtValue* SdfData::_FindOrAdd(const SdfPath& path, const TfToken& fieldName)
{
    _Spec* const spec = _specs.Find(path);
    if (!spec) {
        return nullptr;
    }
    for (_Field& field : spec->fields) {
        if (field.first == fieldName) {
            return &field.second;
        }
    }
    spec->fields.emplace_back(fieldName, VtValue());
    return &spec->fields.back().second;
}

void SdfData::CreateSpec(const SdfPath& path, SdfSpecType specType)
{
    if (specType != SdfSpecTypeUnknown) {
        _specs.FindOrAdd(path).type = specType;
    }
}

bool SdfData::HasSpec(const SdfPath& path) const { return _FindSpec(path) != nullptr; }

void SdfData::EraseSpec(const SdfPath& path) { _specs.Erase(path); }

void SdfData::MoveSpec(const SdfPath& oldPath, const SdfPath& newPath)
{
    _Spec* const old = _specs.Find(oldPath);
    if (old && !_specs.Find(newPath)) {
        _Spec moved = std::move(*old);
        old->path = oldPath; // by which it is found once more
        _specs.Erase(oldPath);
        moved.path = newPath;
        _specs.FindOrAdd(newPath) = std::move(moved);
    }
}

SdfSpecType SdfData::GetSpecType(const SdfPath& path) const
{
    const _Spec* spec = _FindSpec(path);
    return spec ? spec->type : SdfSpecTypeUnknown;
}

SdfPath SdfData::FindProperty(const SdfPath& primPath, const TfToken& name, SdfSpecType* specType) const
{
    const _Spec* spec = _specs.FindProperty(primPath, name);
    if (specType) {
        *specType = spec ? spec->type : SdfSpecTypeUnknown;
    }
    return spec ? spec->path : SdfPath();
}

bool SdfData::Has(const SdfPath& path, const TfToken& fieldName, VtValue* value) const
{
    const VtValue* field = _Find(path, fieldName);
    if (field && value) {
        *value = *field;
    }
    return field != nullptr;
}

bool SdfData::HasSpecAndField(const SdfPath& path, const TfToken& fieldName, VtValue* value,
                              SdfSpecType* specType) const
{
    const _Spec* spec = _FindSpec(path);
    *specType = spec ? spec->type : SdfSpecTypeUnknown;
    const VtValue* field = spec ? _FindField(*spec, fieldName) : nullptr;
    if (field && value) {
        *value = *field;
    }
    return field != nullptr;
}

bool SdfData::HasSpecAndField(const SdfPath& path, const TfToken& fieldName, SdfAbstractDataValue* value,
                              SdfSpecType* specType) const
{
    const _Spec* spec = _FindSpec(path);
    *specType = spec ? spec->type : SdfSpecTypeUnknown;
    const VtValue* field = spec ? _FindField(*spec, fieldName) : nullptr;
    return field && (!value || value->StoreValue(*field));
}

VtValue SdfData::Get(const SdfPath& path, const TfToken& fieldName) const
{
    const VtValue* field = _Find(path, fieldName);
    return field ? *field : VtValue();
}

const std::type_info& SdfData::GetTypeid(const SdfPath& path, const TfToken& fieldName) const
{
    const VtValue* field = _Find(path, fieldName);
    return field ? field->GetTypeid() : typeid(void);
}

void SdfData::Set(const SdfPath& path, const TfToken& fieldName, const VtValue& value)
{
    if (value.IsEmpty()) {
        Erase(path, fieldName);
    } else if (VtValue* field = _FindOrAdd(path, fieldName)) {
        *field = value;
    }
}

void SdfData::Adopt(const SdfPath& path, const TfToken& fieldName, VtValue&& value)
{
    if (VtValue* field = _FindOrAdd(path, fieldName)) {
        *field = std::move(value);
    }
}

SdfData::Fields SdfData::GetFields(const SdfPath& path)
{
    _Spec* const spec = _specs.Find(path);
    return spec ? Fields(spec) : Fields();
}

SdfData::Fields SdfData::CreateFields(const SdfPath& path, SdfSpecType specType)
{
    _Spec& spec = _specs.FindOrAdd(path);
    spec.type = specType;
    return Fields(&spec);
}

void SdfData::Fields::Set(const TfToken& name, VtValue&& value) const
{
    for (_Field& field : _spec->fields) {
        if (field.first == name) {
            field.second = std::move(value);
            return;
        }
    }
    _spec->fields.emplace_back(name, std::move(value));
}

void SdfData::Erase(const SdfPath& path, const TfToken& fieldName)
{
    _Spec* const spec = _specs.Find(path);
    if (!spec) {
        return;
    }
    std::vector<_Field>& fields = spec->fields;
    const auto field =
        std::find_if(fields.begin(), fields.end(), [&](const _Field& f) { return f.first == fieldName; });
    if (field != fields.end()) {
        fields.erase(field);
    }
}

std::vector<TfToken> SdfData::List(const SdfPath& path) const
{
    std::vector<TfToken> names;
    if (const _Spec* spec = _FindSpec(path)) {
        names.reserve(spec->fields.size());
        for (const _Field& field : spec->fields) {
            names.push_back(field.first);
        }
    }
    return names;
}

const SdfTimeSampleMap* SdfData::_FindSamples(const SdfPath& path) const
{
    const VtValue* field = _Find(path, SdfFieldKeys->TimeSamples);
    return field && field->IsHolding<SdfTimeSampleMap>() ? &field->UncheckedGet<SdfTimeSampleMap>() : nullptr;
}

std::set<double> SdfData::ListAllTimeSamples() const
{
    std::set<double> times;
    _specs.ForEach([&times](const _Spec& spec) {
        const VtValue* field = _FindField(spec, SdfFieldKeys->TimeSamples);
        if (field && field->IsHolding<SdfTimeSampleMap>()) {
            for (const auto& sample : field->UncheckedGet<SdfTimeSampleMap>()) {
                times.insert(sample.first);
            }
        }
        return true;
    });
    return times;
}

std::set<double> SdfData::ListTimeSamplesForPath(const SdfPath& path) const
{
    std::set<double> times;
    if (const SdfTimeSampleMap* samples = _FindSamples(path)) {
        for (const auto& sample : *samples) {
            times.insert(times.end(), sample.first);
        }
    }
    return times;
}

bool SdfData::GetBracketingTimeSamples(double time, double* tLower, double* tUpper) const
{
    return bracket(ListAllTimeSamples(), time, tLower, tUpper, [](double t) { return t; });
}

size_t SdfData::GetNumTimeSamplesForPath(const SdfPath& path) const
{
    const SdfTimeSampleMap* samples = _FindSamples(path);
    return samples ? samples->size() : 0;
}

bool SdfData::GetBracketingTimeSamplesForPath(const SdfPath& path, double time, double* tLower,
                                              double* tUpper) const
{
    const SdfTimeSampleMap* samples = _FindSamples(path);
    return samples &&
           bracket(*samples, time, tLower, tUpper, [](const auto& sample) { return sample.first; });
}

bool SdfData::QueryTimeSample(const SdfPath& path, double time, VtValue* value) const
{
    const SdfTimeSampleMap* samples = _FindSamples(path);
    const auto it = samples ? samples->find(time) : SdfTimeSampleMap::const_iterator();
    if (!samples || it == samples->end()) {
        return false;
    }
    if (value) {
        *value = it->second;
    }
    return true;
}

void SdfData::SetTimeSample(const SdfPath& path, double time, const VtValue& value)
{
    if (value.IsEmpty()) {
        EraseTimeSample(path, time);
        return;
    }
    VtValue* field = _FindOrAdd(path, SdfFieldKeys->TimeSamples);
    if (!field) {
        return;
    }
    if (!field->IsHolding<SdfTimeSampleMap>()) {
        *field = VtValue(SdfTimeSampleMap());
    }
    field->UncheckedMutate<SdfTimeSampleMap>([&](SdfTimeSampleMap& samples) { samples[time] = value; });
}

void SdfData::EraseTimeSample(const SdfPath& path, double time)
{
    const SdfTimeSampleMap* samples = _FindSamples(path);
    if (!samples || samples->count(time) == 0) {
        return;
    }
    if (samples->size() == 1) {
        Erase(path, SdfFieldKeys->TimeSamples);
        return;
    }
    _FindOrAdd(path, SdfFieldKeys->TimeSamples)
        ->UncheckedMutate<SdfTimeSampleMap>([&](SdfTimeSampleMap& map) { map.erase(time); });
}

void SdfData::_VisitSpecs(SdfAbstractDataSpecVisitor* visitor) const
{
    _specs.ForEach([&](const _Spec& spec) { return visitor->VisitSpec(*this, spec.path); });
}

PXR_NAMESPACE_CLOSE_SCOPE
