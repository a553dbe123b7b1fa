#pragma once

#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/path.h>

#include <typeinfo>

PXR_NAMESPACE_OPEN_SCOPE

class UsdAttribute;
class Usd_Interpolator;

/// Something that has values at sample times.
class Usd_SampleSource
{
public:
    /// Reads the value at a time that has a sample; false when there is none of the type asked for.
    /// @param takesBlocks whether a block is an answer to who asks for a type
    virtual bool Query(double time, const Usd_Interpolator& interpolator, bool takesBlocks,
                       VtValue* value) const = 0;

protected:
    ~Usd_SampleSource() = default;
};

/// The samples that a layer has of an attribute.
class Usd_LayerSamples final : public Usd_SampleSource
{
public:
    /// @param path of the attribute's spec; kept by reference, as is the layer
    Usd_LayerSamples(const SdfLayer& layer, const SdfPath& path) : _layer(layer), _path(path) {}

    bool Query(double time, const Usd_Interpolator& interpolator, bool takesBlocks,
               VtValue* value) const override;

private:
    const SdfLayer& _layer;
    const SdfPath& _path;
};

/// Makes values of an attribute at and between samples, as its stage and the type of the value want it.
class Usd_Interpolator
{
public:
    /// @param type the type that the caller takes; null when any
    Usd_Interpolator(const UsdAttribute& attribute, const std::type_info* type)
        : _attribute(&attribute), _type(type)
    {}

    const std::type_info* GetType() const { return _type; }

    /// The value at a time between two samples, or of the one sample where both are the same.
    bool GetValue(const Usd_SampleSource& source, double time, double lower, double upper,
                  VtValue* value) const;

private:
    explicit Usd_Interpolator(const std::type_info& linearType) : _type(&linearType) {}
    const std::type_info* _FindLinearType() const;

    const UsdAttribute* _attribute = nullptr; // null where values of the type are surely interpolated
    const std::type_info* _type;
};

/// Interpolates linearly between two values of the same type that is interpolated: component by component,
/// rotations on the arc, arrays element by element where both have the same size, else the lower one holds.
/// @param fraction 0 is lower, 1 is upper
VtValue Usd_Interpolate(const VtValue& lower, const VtValue& upper, double fraction);

PXR_NAMESPACE_CLOSE_SCOPE
