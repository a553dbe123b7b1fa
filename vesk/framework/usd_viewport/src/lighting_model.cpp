#include <vesk/framework/usd_viewport/lighting_model.h>

namespace vesk::framework::usd_viewport {

// Before every other initialiser, so that a host may read it from one of its own.
[[gnu::init_priority(101)]] std::string LightingModel::m_defaultDomeLightTexture;

LightingModel::LightingModel() : m_domeLightTexturePath(m_defaultDomeLightTexture) {}

LightingModel::LightingModel(const LightingModel&) = default;

LightingModel& LightingModel::operator=(const LightingModel&) = default;

LightingModel::~LightingModel() = default;

bool LightingModel::defaultLightingEnabled() const { return m_defaultLightingEnabled; }

void LightingModel::setDefaultLightingEnabled(bool enabled) { m_defaultLightingEnabled = enabled; }

bool LightingModel::sceneLightingEnabled() const { return m_sceneLightingEnabled; }

void LightingModel::setSceneLightingEnabled(bool enabled) { m_sceneLightingEnabled = enabled; }

const std::string& LightingModel::domeLightTexturePath() const { return m_domeLightTexturePath; }

void LightingModel::setDomeLightTexturePath(const std::string& path) { m_domeLightTexturePath = path; }

float LightingModel::lightingExposure() const { return m_lightingExposure; }

void LightingModel::setLightingExposure(float exposure) { m_lightingExposure = exposure; }

float LightingModel::lightingRotationDegrees() const { return m_lightingRotationDegrees; }

void LightingModel::setLightingRotationDegrees(float degrees) { m_lightingRotationDegrees = degrees; }

void LightingModel::resetLighting()
{
    m_domeLightTexturePath = m_defaultDomeLightTexture;
    m_defaultLightingEnabled = false;
    m_sceneLightingEnabled = true;
    m_lightingRotationDegrees = 0.0f;
    m_lightingExposure = 0.0f;
}

const std::string& LightingModel::defaultDomeLightTexture() { return m_defaultDomeLightTexture; }

void LightingModel::setDefaultDomeLightTexture(const std::string& path) { m_defaultDomeLightTexture = path; }

} // namespace vesk::framework::usd_viewport
