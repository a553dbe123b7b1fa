#pragma once

/// The spec of an attribute.

#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/propertySpec.h>

#include <set>
#include <string>

PXR_NAMESPACE_OPEN_SCOPE

/// An attribute as one layer describes it.
class SDF_API SdfAttributeSpec : public SdfPropertySpec
{
    SDF_DECLARE_SPEC(SdfAttributeSpec, SdfPropertySpec)

public:
    typedef SdfAttributeSpec This;
    typedef SdfPropertySpec Parent;

    /// Creates an attribute; null, with an error, where the owner, the name or the type is bad or the name is
    /// taken.
    static SdfAttributeSpecHandle New(const SdfPrimSpecHandle& owner, const std::string& name,
                                      const SdfValueTypeName& typeName,
                                      SdfVariability variability = SdfVariabilityVarying,
                                      bool custom = false);

    SdfConnectionsProxy GetConnectionPathList() const;
    bool HasConnectionPaths() const;
    void ClearConnectionPaths();
    VtTokenArray GetAllowedTokens() const;
    void SetAllowedTokens(const VtTokenArray& allowedTokens);
    bool HasAllowedTokens() const;
    void ClearAllowedTokens();
    TfToken GetColorSpace() const;
    void SetColorSpace(const TfToken& colorSpace);
    bool HasColorSpace() const;
    void ClearColorSpace();
    TfToken GetRoleName() const;

    SdfTimeSampleMap GetTimeSampleMap() const;
    std::set<double> ListTimeSamples() const;
    size_t GetNumTimeSamples() const;
    bool GetBracketingTimeSamples(double time, double* tLower, double* tUpper) const;
    bool QueryTimeSample(double time, VtValue* value = nullptr) const;
    bool QueryTimeSample(double time, SdfAbstractDataValue* value) const;
    template <class T>
    bool QueryTimeSample(double time, T* data) const
    {
        if (!data) {
            return QueryTimeSample(time);
        }
        SdfAbstractDataTypedValue<T> out(data);
        const bool found = QueryTimeSample(time, static_cast<SdfAbstractDataValue*>(&out));
        return found && out.isValueBlock == std::is_same_v<T, SdfValueBlock>;
    }
    void SetTimeSample(double time, const VtValue& value);
    void SetTimeSample(double time, const SdfAbstractDataConstValue& value);
    template <class T>
    void SetTimeSample(double time, const T& value)
    {
        SetTimeSample(time, VtValue(value));
    }
    void EraseTimeSample(double time);
};

/// Makes an attribute, with missing owner prims as `over`s; where it is there already only its type,
/// variability and custom flag are set.
SDF_API bool SdfJustCreatePrimAttributeInLayer(const SdfLayerHandle& layer, const SdfPath& attrPath,
                                               const SdfValueTypeName& typeName,
                                               SdfVariability variability = SdfVariabilityVarying,
                                               bool isCustom = false);

PXR_NAMESPACE_CLOSE_SCOPE
