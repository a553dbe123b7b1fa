#pragma once

/// GlfSimpleMaterial: ambient, diffuse, specular and emissive colour.

#include <pxr/base/gf/vec4f.h>
#include <pxr/imaging/glf/api.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

/// The material of surfaces that have none. Colours are linear RGBA.
class VESK_USD_API GlfSimpleMaterial final
{
public:
    /// Makes ambient 0.2, diffuse 0.8, specular 0.5, no emission, shininess 32.
    GlfSimpleMaterial();
    ~GlfSimpleMaterial();

    GfVec4f const& GetAmbient() const;
    void SetAmbient(GfVec4f const& ambient);
    GfVec4f const& GetDiffuse() const;
    void SetDiffuse(GfVec4f const& diffuse);
    GfVec4f const& GetSpecular() const;
    void SetSpecular(GfVec4f const& specular);
    GfVec4f const& GetEmission() const;
    void SetEmission(GfVec4f const& emission);
    /// The specular exponent.
    double GetShininess() const;
    void SetShininess(double shininess);

    bool operator==(GlfSimpleMaterial const& other) const;
    bool operator!=(GlfSimpleMaterial const& other) const;

private:
    GfVec4f _ambient;
    GfVec4f _diffuse;
    GfVec4f _specular;
    GfVec4f _emission;
    double _shininess;
};

PXR_NAMESPACE_CLOSE_SCOPE
