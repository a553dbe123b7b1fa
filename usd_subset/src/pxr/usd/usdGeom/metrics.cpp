#include <pxr/usd/usdGeom/metrics.h>

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/usd/stage.h>
#include <pxr/usd/usdGeom/tokens.h>

#include <cmath>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

bool _IsValid(const UsdStageWeakPtr& stage)
{
    if (!stage) {
        TF_CODING_ERROR("There is no stage to ask for its metrics, or to set them on.");
    }
    return bool(stage);
}

} // namespace

TfToken UsdGeomGetStageUpAxis(const UsdStageWeakPtr& stage)
{
    if (!_IsValid(stage)) {
        return TfToken();
    }
    if (!stage->HasAuthoredMetadata(UsdGeomTokens->upAxis)) {
        return UsdGeomGetFallbackUpAxis();
    }
    TfToken axis;
    stage->GetMetadata(UsdGeomTokens->upAxis, &axis);
    return axis;
}

bool UsdGeomSetStageUpAxis(const UsdStageWeakPtr& stage, const TfToken& axis)
{
    if (!_IsValid(stage)) {
        return false;
    }
    if (axis != UsdGeomTokens->y && axis != UsdGeomTokens->z) {
        TF_CODING_ERROR("The up axis of %s can be Y or Z, not '%s'.",
                        stage->GetRootLayer()->GetIdentifier().c_str(), axis.GetText());
        return false;
    }
    return stage->SetMetadata(UsdGeomTokens->upAxis, VtValue(axis));
}

TfToken UsdGeomGetFallbackUpAxis() { return UsdGeomTokens->y; }

double UsdGeomGetStageMetersPerUnit(const UsdStageWeakPtr& stage)
{
    double units = UsdGeomLinearUnits::centimeters;
    if (_IsValid(stage)) {
        stage->GetMetadata(UsdGeomTokens->metersPerUnit, &units);
    }
    return units;
}

bool UsdGeomStageHasAuthoredMetersPerUnit(const UsdStageWeakPtr& stage)
{
    return _IsValid(stage) && stage->HasAuthoredMetadata(UsdGeomTokens->metersPerUnit);
}

bool UsdGeomSetStageMetersPerUnit(const UsdStageWeakPtr& stage, double metersPerUnit)
{
    return _IsValid(stage) && stage->SetMetadata(UsdGeomTokens->metersPerUnit, metersPerUnit);
}

bool UsdGeomLinearUnitsAre(double authoredUnits, double standardUnits, double epsilon)
{
    if (authoredUnits <= 0 || standardUnits <= 0) {
        return false;
    }
    const double difference = std::abs(authoredUnits - standardUnits);
    return difference / authoredUnits < epsilon && difference / standardUnits < epsilon;
}

PXR_NAMESPACE_CLOSE_SCOPE
