#pragma once

/// GlfSimpleLight: a positional, spot or dome light.

#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/base/gf/vec4f.h>
#include <pxr/base/tf/token.h>
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>
#include <pxr/imaging/glf/api.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/base/vt/dictionary.h>

#include <iosfwd>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// What a simple lighting shader knows of one light. Colours are linear RGBA; a position with w 0 is a
/// direction.
class VESK_USD_API GlfSimpleLight final
{
public:
    /// Makes a white light at the position's x, y and z: ambient 0.2, cutoff 180 degrees, no shadow.
    GlfSimpleLight(GfVec4f const& position = GfVec4f(0.0, 0.0, 0.0, 1.0));
    ~GlfSimpleLight();

    GfMatrix4d const& GetTransform() const;
    void SetTransform(GfMatrix4d const& mat);

    /// \name Colour and place
    /// @{
    GfVec4f const& GetAmbient() const;
    void SetAmbient(GfVec4f const& ambient);
    GfVec4f const& GetDiffuse() const;
    void SetDiffuse(GfVec4f const& diffuse);
    GfVec4f const& GetSpecular() const;
    void SetSpecular(GfVec4f const& specular);
    GfVec4f const& GetPosition() const;
    void SetPosition(GfVec4f const& position);
    GfVec3f const& GetSpotDirection() const;
    void SetSpotDirection(GfVec3f const& spotDirection);
    /// The half angle of the cone in degrees, 180 for no cone.
    float const& GetSpotCutoff() const;
    void SetSpotCutoff(float const& spotCutoff);
    float const& GetSpotFalloff() const;
    void SetSpotFalloff(float const& spotFalloff);
    /// The constant, linear and quadratic factors.
    GfVec3f const& GetAttenuation() const;
    void SetAttenuation(GfVec3f const& attenuation);
    bool HasIntensity() const;
    void SetHasIntensity(bool hasIntensity);
    /// Whether position and direction are in camera, not in world space.
    bool IsCameraSpaceLight() const;
    void SetIsCameraSpaceLight(bool isCameraSpaceLight);
    /// @}

    /// \name Shadow
    /// @{
    std::vector<GfMatrix4d> const& GetShadowMatrices() const;
    void SetShadowMatrices(std::vector<GfMatrix4d> const& matrix);
    int GetShadowResolution() const;
    void SetShadowResolution(int resolution);
    float GetShadowBias() const;
    void SetShadowBias(float bias);
    float GetShadowBlur() const;
    void SetShadowBlur(float blur);
    int GetShadowIndexStart() const;
    void SetShadowIndexStart(int shadowStart);
    int GetShadowIndexEnd() const;
    void SetShadowIndexEnd(int shadowEnd);
    bool HasShadow() const;
    void SetHasShadow(bool hasShadow);
    /// @}

    /// The prim that the light comes from.
    SdfPath const& GetID() const;
    void SetID(SdfPath const& id);

    /// \name Dome light
    /// @{
    bool IsDomeLight() const;
    void SetIsDomeLight(bool isDomeLight);
    const SdfAssetPath& GetDomeLightTextureFile() const;
    void SetDomeLightTextureFile(const SdfAssetPath& path);
    /// @}

    /// \name Shading after the surface's own, for fog and the like
    /// @{
    TfToken const& GetPostSurfaceIdentifier() const;
    std::string const& GetPostSurfaceShaderSource() const;
    VtUCharArray const& GetPostSurfaceShaderParams() const;
    void SetPostSurfaceParams(TfToken const& identifier, std::string const& shaderSource,
                              VtUCharArray const& shaderParams);
    /// @}

    bool operator==(GlfSimpleLight const& other) const;
    bool operator!=(GlfSimpleLight const& other) const;

private:
    friend VESK_USD_API std::ostream& operator<<(std::ostream& out, const GlfSimpleLight& v);

    GfVec4f _ambient;
    GfVec4f _diffuse;
    GfVec4f _specular;
    GfVec4f _position;
    GfVec3f _spotDirection;
    float _spotCutoff;
    float _spotFalloff;
    GfVec3f _attenuation;
    bool _isCameraSpaceLight;
    bool _hasIntensity;
    bool _hasShadow;
    int _shadowResolution;
    float _shadowBias;
    float _shadowBlur;
    int _shadowIndexStart;
    int _shadowIndexEnd;
    GfMatrix4d _transform;
    std::vector<GfMatrix4d> _shadowMatrices;
    bool _isDomeLight;
    SdfAssetPath _domeLightTextureFile;
    TfToken _postSurfaceIdentifier;
    std::string _postSurfaceShaderSource;
    VtUCharArray _postSurfaceShaderParams;
    SdfPath _id;
};

typedef std::vector<class GlfSimpleLight> GlfSimpleLightVector;

/// Writes all values one after the other.
VESK_USD_API std::ostream& operator<<(std::ostream& out, const GlfSimpleLight& v);
/// Writes nothing, which is enough for code that asks for the operator.
VESK_USD_API std::ostream& operator<<(std::ostream& out, const GlfSimpleLightVector& pv);

PXR_NAMESPACE_CLOSE_SCOPE
