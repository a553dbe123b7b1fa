#pragma once

#include <pxr/base/gf/vec3f.h>
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>
#include <pxr/pxr.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/timeCode.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Where a value read at a base time comes from: its sample, and the samples around the base time.
struct UsdGeom_Sample
{
    UsdTimeCode time = UsdTimeCode::Default();
    double lower = 0.0;
    double upper = 0.0;
    bool hasSamples = false;
};

/// Finds the sample at or before a base time, from which values are moved on by their rates of change.
bool UsdGeom_FindSample(const UsdAttribute& attribute, UsdTimeCode baseTime, UsdGeom_Sample* sample);

/// Reads the value at that sample; false where there is none.
template <class T>
bool UsdGeom_ReadSample(const UsdAttribute& attribute, UsdTimeCode baseTime, UsdGeom_Sample* sample, T* value)
{
    return UsdGeom_FindSample(attribute, baseTime, sample) && attribute.Get(value, sample->time);
}

/// Reads rates of change that belong to the values of a sample. They count only where their samples lie at
/// the same times and there is one for each value; else the array stays empty, with a warning where there
/// were some.
void UsdGeom_ReadRates(const UsdAttribute& attribute, UsdTimeCode baseTime, const UsdGeom_Sample& valueSample,
                       size_t count, UsdGeom_Sample* rateSample, VtVec3fArray* rates);

/// Seconds from a sample to a time; 0 where either is the default time.
double UsdGeom_SecondsSince(const UsdGeom_Sample& sample, UsdTimeCode time, double timeCodesPerSecond);

/// A value moved on by its velocity and acceleration.
inline GfVec3f UsdGeom_MoveOn(const GfVec3f& position, const VtVec3fArray& velocities,
                              const VtVec3fArray& accelerations, size_t index, double seconds)
{
    if (velocities.empty()) {
        return position;
    }
    GfVec3f velocity = velocities[index];
    if (!accelerations.empty()) {
        velocity += static_cast<float>(seconds) * accelerations[index] * 0.5f;
    }
    return position + static_cast<float>(seconds) * velocity;
}

PXR_NAMESPACE_CLOSE_SCOPE
