#pragma once

#include <pxr/usd/usdLux/lightAPI.h>

/// The accessors of the light controls that the two light bases forward to UsdLuxLightAPI.
#define VESK_USD_LIGHT_ATTR(Name)                                                                            \
    UsdAttribute Get##Name##Attr() const { return LightAPI().Get##Name##Attr(); }                            \
    UsdAttribute Create##Name##Attr(const VtValue& defaultValue = VtValue(), bool writeSparsely = false)     \
        const                                                                                                \
    {                                                                                                        \
        return LightAPI().Create##Name##Attr(defaultValue, writeSparsely);                                   \
    }

#define VESK_USD_LIGHT_ACCESSORS                                                                             \
    UsdLuxLightAPI LightAPI() const { return UsdLuxLightAPI(GetPrim()); }                                    \
    VESK_USD_LIGHT_ATTR(Intensity)                                                                           \
    VESK_USD_LIGHT_ATTR(Exposure)                                                                            \
    VESK_USD_LIGHT_ATTR(Diffuse)                                                                             \
    VESK_USD_LIGHT_ATTR(Specular)                                                                            \
    VESK_USD_LIGHT_ATTR(Normalize)                                                                           \
    VESK_USD_LIGHT_ATTR(Color)                                                                               \
    VESK_USD_LIGHT_ATTR(EnableColorTemperature)                                                              \
    VESK_USD_LIGHT_ATTR(ColorTemperature)                                                                    \
    UsdRelationship GetFiltersRel() const { return LightAPI().GetFiltersRel(); }                             \
    UsdRelationship CreateFiltersRel() const { return LightAPI().CreateFiltersRel(); }
