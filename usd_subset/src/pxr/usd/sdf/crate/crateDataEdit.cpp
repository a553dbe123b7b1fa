#include "pxr/usd/sdf/crate/crateData.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/sdf/schema.h>

#include <algorithm>
#include <iterator>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

bool bracket(const std::vector<double>& times, double time, double* lower, double* upper)
{
    if (times.empty()) {
        return false;
    }
    const auto it = std::lower_bound(times.begin(), times.end(), time);
    if (it == times.end()) {
        *lower = *upper = times.back();
    } else if (it == times.begin() || *it == time) {
        *lower = *upper = *it;
    } else {
        *upper = *it;
        *lower = *std::prev(it);
    }
    return true;
}

// The index of a time, and whether it is there.
std::pair<size_t, bool> findTime(const std::vector<double>& times, double time)
{
    const auto it = std::lower_bound(times.begin(), times.end(), time);
    return {static_cast<size_t>(it - times.begin()), it != times.end() && *it == time};
}

} // namespace

Sdf_CrateData::_Fields* Sdf_CrateData::_Edit(const SdfPath& path)
{
    _Spec* spec = _specs.Find(path);
    if (!spec) {
        return nullptr;
    }
    std::shared_ptr<_Fields>& fields = spec->fields;
    if (!fields || fields.use_count() != 1) {
        fields = fields ? std::make_shared<_Fields>(*fields) : std::make_shared<_Fields>();
    }
    return fields.get();
}

VtValue* Sdf_CrateData::_EditField(const SdfPath& path, const TfToken& fieldName, bool add)
{
    _Fields* fields = _Edit(path);
    if (!fields) {
        return nullptr;
    }
    for (_Field& field : *fields) {
        if (field.first == fieldName) {
            return &field.second;
        }
    }
    if (!add) {
        return nullptr;
    }
    fields->emplace_back(fieldName, VtValue());
    return &fields->back().second;
}

void Sdf_CrateData::Set(const SdfPath& path, const TfToken& fieldName, const VtValue& value)
{
    if (value.IsEmpty()) {
        Erase(path, fieldName);
        return;
    }
    if (path.IsTargetPath()) {
        TF_CODING_ERROR("Cannot set the field %s of the target <%s>: targets have no fields of their own in "
                        "crate files",
                        fieldName.GetText(), path.GetAsString().c_str());
        return;
    }
    if (fieldName == SdfChildrenKeys->ConnectionChildren ||
        fieldName == SdfChildrenKeys->RelationshipTargetChildren) {
        return; // they follow from the list of targets
    }
    VtValue* field = _EditField(path, fieldName, true);
    if (!field) {
        return;
    }
    if (!value.IsHolding<SdfTimeSampleMap>()) {
        *field = value;
        return;
    }
    auto times = std::make_shared<std::vector<double>>();
    auto values = std::make_shared<std::vector<VtValue>>();
    for (const auto& sample : value.UncheckedGet<SdfTimeSampleMap>()) {
        times->push_back(sample.first);
        values->push_back(sample.second);
    }
    *field = VtValue(Sdf_CrateSamples{times, 0, values});
}

void Sdf_CrateData::Erase(const SdfPath& path, const TfToken& fieldName)
{
    if (!_Find(path, fieldName)) {
        return;
    }
    _Fields& fields = *_Edit(path);
    fields.erase(std::find_if(fields.begin(), fields.end(),
                              [&](const _Field& field) { return field.first == fieldName; }));
}

const Sdf_CrateSamples* Sdf_CrateData::_FindSamples(const SdfPath& path) const
{
    const VtValue* field = _Find(path, SdfFieldKeys->TimeSamples);
    return field && field->IsHolding<Sdf_CrateSamples>() ? &field->UncheckedGet<Sdf_CrateSamples>() : nullptr;
}

VtValue Sdf_CrateData::_Sample(const Sdf_CrateSamples& samples, size_t index) const
{
    return samples.values ? _Decode((*samples.values)[index])
                          : _file->UnpackSample({samples.times, samples.reps}, index);
}

std::vector<VtValue> Sdf_CrateData::_SampleValues(const Sdf_CrateSamples& samples) const
{
    if (samples.values || !samples.times) {
        return samples.values ? *samples.values : std::vector<VtValue>();
    }
    std::vector<VtValue> values(samples.times->size());
    for (size_t i = 0; i < values.size(); ++i) {
        values[i] = _Sample(samples, i);
    }
    return values;
}

std::set<double> Sdf_CrateData::ListAllTimeSamples() const
{
    std::set<double> all;
    std::set<const std::vector<double>*> seen;
    _specs.ForEach([&](const _Spec& spec) {
        const VtValue* field = _FindField(spec, SdfFieldKeys->TimeSamples);
        if (field && field->IsHolding<Sdf_CrateSamples>()) {
            const Sdf_CrateTimes& times = field->UncheckedGet<Sdf_CrateSamples>().times;
            if (seen.insert(times.get()).second) {
                all.insert(times->begin(), times->end());
            }
        }
        return true;
    });
    return all;
}

std::set<double> Sdf_CrateData::ListTimeSamplesForPath(const SdfPath& path) const
{
    const Sdf_CrateSamples* samples = _FindSamples(path);
    return samples ? std::set<double>(samples->times->begin(), samples->times->end()) : std::set<double>();
}

bool Sdf_CrateData::GetBracketingTimeSamples(double time, double* tLower, double* tUpper) const
{
    const std::set<double> all = ListAllTimeSamples();
    return bracket(std::vector<double>(all.begin(), all.end()), time, tLower, tUpper);
}

size_t Sdf_CrateData::GetNumTimeSamplesForPath(const SdfPath& path) const
{
    const Sdf_CrateSamples* samples = _FindSamples(path);
    return samples ? samples->times->size() : 0;
}

bool Sdf_CrateData::GetBracketingTimeSamplesForPath(const SdfPath& path, double time, double* tLower,
                                                    double* tUpper) const
{
    const Sdf_CrateSamples* samples = _FindSamples(path);
    return samples && bracket(*samples->times, time, tLower, tUpper);
}

bool Sdf_CrateData::QueryTimeSample(const SdfPath& path, double time, VtValue* value) const
{
    const Sdf_CrateSamples* samples = _FindSamples(path);
    if (!samples) {
        return false;
    }
    const std::pair<size_t, bool> found = findTime(*samples->times, time);
    if (found.second && value) {
        *value = _Sample(*samples, found.first);
        return !value->IsEmpty();
    }
    return found.second;
}

void Sdf_CrateData::SetTimeSample(const SdfPath& path, double time, const VtValue& value)
{
    if (value.IsEmpty()) {
        EraseTimeSample(path, time);
        return;
    }
    VtValue* field = _EditField(path, SdfFieldKeys->TimeSamples, true);
    if (!field) {
        return;
    }
    if (!field->IsHolding<Sdf_CrateSamples>()) {
        *field = VtValue(Sdf_CrateSamples());
    }
    _EditSamples(field, [&](std::vector<double>& times, std::vector<VtValue>& values) {
        const std::pair<size_t, bool> found = findTime(times, time);
        const auto at = static_cast<std::ptrdiff_t>(found.first);
        if (found.second) {
            values[found.first] = value;
        } else {
            times.insert(times.begin() + at, time);
            values.insert(values.begin() + at, value);
        }
    });
}

void Sdf_CrateData::EraseTimeSample(const SdfPath& path, double time)
{
    const Sdf_CrateSamples* samples = _FindSamples(path);
    if (!samples || !findTime(*samples->times, time).second) {
        return;
    }
    if (samples->times->size() == 1) {
        Erase(path, SdfFieldKeys->TimeSamples);
        return;
    }
    _EditSamples(_EditField(path, SdfFieldKeys->TimeSamples, false),
                 [&](std::vector<double>& times, std::vector<VtValue>& values) {
                     const auto at = static_cast<std::ptrdiff_t>(findTime(times, time).first);
                     times.erase(times.begin() + at);
                     values.erase(values.begin() + at);
                 });
}

template <class Edit>
void Sdf_CrateData::_EditSamples(VtValue* field, const Edit& edit)
{
    field->UncheckedMutate<Sdf_CrateSamples>([&](Sdf_CrateSamples& samples) {
        // Lists that nobody shares are edited in place, so that adding many samples does not copy them all.
        if (!samples.values || samples.values.use_count() != 1) {
            samples.values = std::make_shared<std::vector<VtValue>>(_SampleValues(samples));
        }
        if (!samples.times || samples.times.use_count() != 1) {
            samples.times = samples.times ? std::make_shared<std::vector<double>>(*samples.times)
                                          : std::make_shared<std::vector<double>>();
        }
        samples.reps = 0;
        edit(const_cast<std::vector<double>&>(*samples.times), *samples.values);
    });
}

PXR_NAMESPACE_CLOSE_SCOPE
