#pragma once

#include <pxr/pxr.h>

#include <algorithm>

#if defined(__SSE__)
#include <xmmintrin.h>
#endif

PXR_NAMESPACE_OPEN_SCOPE

/// Four floats that are computed with at once. Min() and Max() take the first of the two where it is less or
/// greater, hence the second where the first is not a number.
class UsdGeom_FourFloats
{
public:
#if defined(__SSE__)
    explicit UsdGeom_FourFloats(float all) : _values(_mm_set1_ps(all)) {}
    explicit UsdGeom_FourFloats(const float* four) : _values(_mm_loadu_ps(four)) {}
    void Store(float* four) const { _mm_storeu_ps(four, _values); }

    void Min(const UsdGeom_FourFloats& other) { _values = _mm_min_ps(other._values, _values); }
    void Max(const UsdGeom_FourFloats& other) { _values = _mm_max_ps(other._values, _values); }

private:
    __m128 _values;
#else
    explicit UsdGeom_FourFloats(float all) { std::fill_n(_values, 4, all); }
    explicit UsdGeom_FourFloats(const float* four) { std::copy_n(four, 4, _values); }
    void Store(float* four) const { std::copy_n(_values, 4, four); }

    void Min(const UsdGeom_FourFloats& other)
    {
        for (int i = 0; i != 4; ++i) {
            _values[i] = other._values[i] < _values[i] ? other._values[i] : _values[i];
        }
    }
    void Max(const UsdGeom_FourFloats& other)
    {
        for (int i = 0; i != 4; ++i) {
            _values[i] = other._values[i] > _values[i] ? other._values[i] : _values[i];
        }
    }

private:
    float _values[4];
#endif
};

PXR_NAMESPACE_CLOSE_SCOPE
