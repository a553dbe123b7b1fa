#pragma once

#include <pxr/base/tf/token.h>
#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/usd/common.h>

PXR_NAMESPACE_OPEN_SCOPE

/// The stage's up axis: Y or Z; the fallback where nothing is authored.
VESK_USD_API TfToken UsdGeomGetStageUpAxis(const UsdStageWeakPtr& stage);
/// Authors the up axis; any other than Y and Z is an error.
VESK_USD_API bool UsdGeomSetStageUpAxis(const UsdStageWeakPtr& stage, const TfToken& axis);
VESK_USD_API TfToken UsdGeomGetFallbackUpAxis();

/// The length of the stage's unit; 0.01 (centimetres) where nothing is authored.
VESK_USD_API double UsdGeomGetStageMetersPerUnit(const UsdStageWeakPtr& stage);
VESK_USD_API bool UsdGeomStageHasAuthoredMetersPerUnit(const UsdStageWeakPtr& stage);
VESK_USD_API bool UsdGeomSetStageMetersPerUnit(const UsdStageWeakPtr& stage, double metersPerUnit);
/// Whether two units differ relatively by less than `epsilon`; false for units that are not above zero.
VESK_USD_API bool UsdGeomLinearUnitsAre(double authoredUnits, double standardUnits, double epsilon = 1e-5);

/// Usual units in metres.
class UsdGeomLinearUnits
{
public:
    static constexpr double nanometers = 1e-9;
    static constexpr double micrometers = 1e-6;
    static constexpr double millimeters = 0.001;
    static constexpr double centimeters = 0.01;
    static constexpr double meters = 1.0;
    static constexpr double kilometers = 1000;
    static constexpr double lightYears = 9.4607304725808e15;
    static constexpr double inches = 0.0254;
    static constexpr double feet = 0.3048;
    static constexpr double yards = 0.9144;
    static constexpr double miles = 1609.344;
};

PXR_NAMESPACE_CLOSE_SCOPE
