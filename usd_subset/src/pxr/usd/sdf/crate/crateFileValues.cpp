#include "pxr/usd/sdf/crate/crateFile.h"
#include "pxr/usd/sdf/crate/valueReader.h"
#include "pxr/usd/sdf/fileFormatRegistry.h"

#include <new>

PXR_NAMESPACE_OPEN_SCOPE

VtValue Sdf_CrateFile::UnpackOrThrow(Sdf_CrateRep rep) const { return Sdf_CrateValueReader(*this).Read(rep); }

VtValue Sdf_CrateFile::Unpack(Sdf_CrateRep rep) const
{
    try {
        return UnpackOrThrow(rep);
    } catch (const Sdf_CrateError& error) {
        _PostOnce(error.what());
    } catch (const std::exception& error) {
        _PostOnce(error.what());
    }
    return VtValue();
}

VtValue Sdf_CrateFile::UnpackSample(const Sdf_CrateFileSamples& samples, size_t index) const
{
    uint64_t bits = 0;
    try {
        _source.Copy(&bits, samples.reps + index * sizeof bits, sizeof bits);
    } catch (const Sdf_CrateError& error) {
        _PostOnce(error.what());
        return VtValue();
    }
    return Unpack(Sdf_CrateRep(bits));
}

void Sdf_CrateFile::_PostOnce(const std::string& text) const
{
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        if (!_reported.insert(text).second) {
            return;
        }
    }
    Sdf_PostReadError(_name, "the crate file is damaged: " + text);
}

Sdf_CrateFileSamples Sdf_CrateFile::ReadSamples(Sdf_CrateRep rep)
{
    Sdf_CrateValueReader reader(*this);
    const Sdf_CrateRep timesRep = reader.ReadSampleTimes(rep);
    Sdf_CrateTimes& times = _times[timesRep.GetBits()];
    if (!times) {
        VtValue value = Sdf_CrateValueReader(*this).Read(timesRep);
        if (!value.IsHolding<std::vector<double>>()) {
            throw Sdf_CrateError("value", rep.GetPayload(), "the times of samples are not a list of numbers");
        }
        auto read = std::make_shared<std::vector<double>>(value.UncheckedRemove<std::vector<double>>());
        for (size_t i = 0; i < read->size(); ++i) {
            if (!(i == 0 ? (*read)[0] == (*read)[0] : (*read)[i - 1] < (*read)[i])) {
                throw Sdf_CrateError("value", rep.GetPayload(), "the times of samples do not ascend");
            }
        }
        times = std::move(read);
    }
    return {times, reader.ReadSampleReps(times->size())};
}

const std::type_info& Sdf_CrateFile::GetTypeid(Sdf_CrateRep rep)
{
    switch (rep.GetType()) {
#define SDF_CRATE_CASE(Name, number, type)                                                                   \
    case Sdf_CrateType::Name:                                                                                \
        return rep.IsArray() ? typeid(VtArray<type>) : typeid(type);
        SDF_CRATE_ARRAY_TYPES(SDF_CRATE_CASE)
#undef SDF_CRATE_CASE
#define SDF_CRATE_CASE(Name, number, type)                                                                   \
    case Sdf_CrateType::Name:                                                                                \
        return typeid(type);
        SDF_CRATE_SINGLE_TYPES(SDF_CRATE_CASE)
#undef SDF_CRATE_CASE
    default:
        return typeid(void);
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
