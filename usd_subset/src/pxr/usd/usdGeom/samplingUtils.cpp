#include "pxr/usd/usdGeom/samplingUtils.h"

#include <pxr/base/tf/diagnostic.h>

#include <cmath>
#include <limits>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

bool _IsSame(double a, double b) { return std::abs(a - b) < std::numeric_limits<double>::epsilon(); }

} // namespace

bool UsdGeom_FindSample(const UsdAttribute& attribute, UsdTimeCode baseTime, UsdGeom_Sample* sample)
{
    *sample = UsdGeom_Sample();
    if (!baseTime.IsNumeric()) {
        return true;
    }
    if (!attribute.GetBracketingTimeSamples(baseTime.GetValue(), &sample->lower, &sample->upper,
                                            &sample->hasSamples)) {
        return false;
    }
    if (sample->hasSamples) {
        sample->time = UsdTimeCode(sample->lower);
    }
    // At a sample the interval after it counts.
    return !_IsSame(sample->lower, sample->upper) ||
           attribute.GetBracketingTimeSamples(baseTime.GetValue() + UsdTimeCode::SafeStep(), &sample->lower,
                                              &sample->upper, &sample->hasSamples);
}

void UsdGeom_ReadRates(const UsdAttribute& attribute, UsdTimeCode baseTime, const UsdGeom_Sample& valueSample,
                       size_t count, UsdGeom_Sample* rateSample, VtVec3fArray* rates)
{
    rates->clear();
    if (!valueSample.hasSamples || !UsdGeom_ReadSample(attribute, baseTime, rateSample, rates)) {
        rates->clear();
        return;
    }
    const bool isAligned = rateSample->hasSamples && _IsSame(valueSample.lower, rateSample->lower) &&
                           _IsSame(valueSample.upper, rateSample->upper) &&
                           _IsSame(valueSample.time.GetValue(), rateSample->time.GetValue());
    if (isAligned && rates->size() == count) {
        return;
    }
    if (!rates->empty()) {
        TF_WARN(isAligned ? "<%s> is ignored: it has not one entry for each value."
                          : "<%s> is ignored: its samples are not at the times of the values'.",
                attribute.GetPath().GetText());
    }
    rates->clear();
}

double UsdGeom_SecondsSince(const UsdGeom_Sample& sample, UsdTimeCode time, double timeCodesPerSecond)
{
    if (!time.IsNumeric() || !sample.time.IsNumeric()) {
        return 0.0;
    }
    return (time.GetValue() - sample.time.GetValue()) / timeCodesPerSecond;
}

PXR_NAMESPACE_CLOSE_SCOPE
