#pragma once

#include <vesk/framework/usd_viewport/export.h>

#include <string>

namespace vesk::framework::usd_viewport {

/// The lighting settings of a viewport, as a value.
///
/// The setters store what they are given: nothing is checked and nobody is told. A changed copy is given to
/// `ViewportModel::setLighting` to be shown.
///
/// Thread: as a plain value. The class-wide default texture has no lock: set it before viewports are made.
class VESK_FRAMEWORK_USD_VIEWPORT_EXPORT LightingModel
{
public:
    /// Starts with the class-wide default texture, no rotation, no exposure, default lights off, scene lights
    /// on.
    LightingModel();
    LightingModel(const LightingModel&);
    LightingModel& operator=(const LightingModel&);
    ~LightingModel();

    /// Whether the default light rig is built.
    bool defaultLightingEnabled() const;
    /// Turns the default light rig on or off.
    void setDefaultLightingEnabled(bool enabled);

    /// Whether the scene's own lights are used.
    bool sceneLightingEnabled() const;
    /// Turns the scene's own lights on or off.
    void setSceneLightingEnabled(bool enabled);

    /// Path of the image of the dome light; empty for none.
    const std::string& domeLightTexturePath() const;
    /// Sets the image of the dome light; empty for none. It is read when the lighting is shown.
    void setDomeLightTexturePath(const std::string& path);

    /// Exposure that the host keeps with the lighting and applies itself; the renderer never sees it.
    float lightingExposure() const;
    /// Sets the exposure that the host keeps, in stops; any number.
    void setLightingExposure(float exposure);

    /// Rotation of the default light rig in degrees.
    float lightingRotationDegrees() const;
    /// Turns the default light rig, in degrees.
    void setLightingRotationDegrees(float degrees);

    /// Puts every setting back to what a new object would have now.
    void resetLighting();

    /// The dome light image of new and reset objects; empty until the host sets it.
    static const std::string& defaultDomeLightTexture();
    /// Sets the dome light image of objects that are made or reset from now on.
    static void setDefaultDomeLightTexture(const std::string& path);

    /// What defaultDomeLightTexture() returns.
    static std::string m_defaultDomeLightTexture;

private:
    std::string m_domeLightTexturePath;
    float m_lightingRotationDegrees = 0.0f;
    float m_lightingExposure = 0.0f;
    bool m_defaultLightingEnabled = false;
    bool m_sceneLightingEnabled = true;
};

} // namespace vesk::framework::usd_viewport
