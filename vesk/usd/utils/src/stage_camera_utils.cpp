#include "camera_bits.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <pxr/base/tf/errorMark.h>
#include <pxr/usd/usd/timeCode.h>
#include <pxr/usd/usdGeom/camera.h>
#include <pxr/usd/usdGeom/metrics.h>
#include <pxr/usd/usdGeom/tokens.h>
#include <string>
#include <vesk/usd/utils/stage_camera_utils.h>
#include <vesk/usd/utils/utils_error.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::usd::utils {

namespace {

using vesk::base::error_handling::Exception;
using vesk::base::error_handling::makeErrorCode;
using vesk::base::result::Result;

[[noreturn]] void fail(UtilsError error, const SdfPath& path, const std::string& reason)
{
    const std::string detail = "Cannot write the camera <" + path.GetString() + ">: " + reason;
    throw Exception(makeErrorCode(error), detail.c_str());
}

UsdGeomCamera cameraAt(const UsdStageRefPtr& stage, const SdfPath& path)
{
    if (!path.IsPrimPath()) return UsdGeomCamera();
    const UsdPrim prim = stage->GetPrimAtPath(path);
    return prim && prim.IsA<UsdGeomCamera>() ? UsdGeomCamera(prim) : UsdGeomCamera();
}

bool isFinite(const GfMatrix4d& matrix)
{
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            if (!std::isfinite(matrix[row][column])) return false;
        }
    }
    return true;
}

// Compares the volume that the axes span with the one they would span at right angles: a length alone says
// nothing, a parent may well be tiny or huge.
bool isInvertible(const GfMatrix4d& matrix, const GfMatrix4d& inverse)
{
    if (!isFinite(matrix) || !isFinite(inverse)) return false;
    double box = 1.0;
    for (int row = 0; row < 3; ++row)
        box *= GfVec3d(matrix[row][0], matrix[row][1], matrix[row][2]).GetLength();
    return box > 0.0 && std::abs(matrix.GetDeterminant3()) > 1e-12 * box;
}

// What lies above a camera: a world transform becomes a local one and back.
struct Parent
{
    GfMatrix4d toWorld;
    GfMatrix4d fromWorld;

    GfMatrix4d thereAndBack(const GfMatrix4d& world) const { return world * fromWorld * toWorld; }

    // The most that rounding may be multiplied by on that way, for one number of the matrix.
    double magnitude(const GfMatrix4d& world, int row, int column) const
    {
        double sum = 0.0;
        for (int outer = 0; outer < 4; ++outer) {
            for (int inner = 0; inner < 4; ++inner)
                sum += std::abs(world[row][outer] * fromWorld[outer][inner] * toWorld[inner][column]);
        }
        return sum;
    }
};

Parent parentOf(const UsdGeomCamera& prim, UsdTimeCode time)
{
    Parent parent;
    double determinant = 0.0;
    parent.toWorld = prim.ComputeParentToWorldTransform(time);
    parent.fromWorld = parent.toWorld.GetInverse(&determinant);
    if (determinant == 0.0 || !isInvertible(parent.toWorld, parent.fromWorld))
        fail(
            UtilsError::SingularParentTransform, prim.GetPath(),
            "the transform of its parent cannot be inverted; give every prim above it a scale that is not 0");
    return parent;
}

// Whether two world transforms differ by no more than what being authored and read back does to them. A
// viewport cleans the camera that it reads: if it were written for that, each rounding would be answered by
// another one without end. Nothing is rounded on the way through a parent that is the world itself.
bool differByRounding(const Parent& parent, const GfMatrix4d& left, const GfMatrix4d& right)
{
    constexpr double kMargin = 8.0;
    if (parent.toWorld == GfMatrix4d(1.0)) return false;
    const GfMatrix4d leftAgain = parent.thereAndBack(left);
    const GfMatrix4d rightAgain = parent.thereAndBack(right);
    for (int row = 0; row < 4; ++row) {
        double difference = 0.0;
        double rounding = 0.0;
        for (int column = 0; column < 4; ++column) {
            const double floor = std::numeric_limits<double>::epsilon() * parent.magnitude(left, row, column);
            const double moved = std::max(std::abs(leftAgain[row][column] - left[row][column]),
                                          std::abs(rightAgain[row][column] - right[row][column]));
            rounding = std::max({rounding, floor, moved});
            difference = std::max(difference, std::abs(left[row][column] - right[row][column]));
        }
        if (!(difference <= kMargin * rounding)) return false;
    }
    return true;
}

// Raises what the scene description had to say, and leaves no diagnostic behind.
void raiseErrors(TfErrorMark& mark, const SdfPath& path)
{
    if (mark.IsClean()) return;
    const std::string reason = mark.GetBegin()->GetCommentary();
    mark.Clear();
    fail(UtilsError::AuthoringFailed, path, reason);
}

// What was authored has to be what the stage now shows.
void checkAuthored(const UsdGeomCamera& prim, const GfCamera& camera, const GfMatrix4d& local,
                   UsdTimeCode time)
{
    GfMatrix4d authored(1.0);
    bool resetsStack = false;
    const bool readable = prim.GetLocalTransformation(&authored, &resetsStack, time);
    if (readable && haveSameBits(authored, local) && haveSameLens(prim.GetCamera(time), camera)) return;
    fail(UtilsError::AuthoringFailed, prim.GetPath(),
         "a stronger layer or value hides the new one; edit that layer or choose another edit target");
}

} // namespace

Result<GfCamera> getGfCameraFromCameraPath(const TfWeakPtr<UsdStage>& stage, const SdfPath& path, double time)
{
    const UsdStageRefPtr strong = TfCreateRefPtrFromProtectedWeakPtr(stage);
    if (!strong) return makeErrorCode(UtilsError::InvalidStage);
    const UsdGeomCamera prim = cameraAt(strong, path);
    if (!prim) return makeErrorCode(UtilsError::InvalidCameraPrim);
    return prim.GetCamera(UsdTimeCode(time));
}

void setGfCameraForCameraPath(const TfWeakPtr<UsdStage>& stage, const SdfPath& path, const GfCamera& camera,
                              double time)
{
    const UsdStageRefPtr strong = TfCreateRefPtrFromProtectedWeakPtr(stage);
    if (!strong) fail(UtilsError::InvalidStage, path, "the stage is gone; open it again");
    UsdGeomCamera prim = cameraAt(strong, path);
    if (!prim)
        fail(UtilsError::InvalidCameraPrim, path,
             "no camera prim is there; give the path of a UsdGeomCamera of this stage");

    const UsdTimeCode timeCode(time);
    const GfCamera current = prim.GetCamera(timeCode);
    const GfMatrix4d world = camera.GetTransform();
    const bool sameLens = haveSameLens(current, camera);
    if (sameLens && haveSameBits(current.GetTransform(), world)) return;
    const Parent parent = parentOf(prim, timeCode);
    if (sameLens && isFinite(world) && differByRounding(parent, current.GetTransform(), world)) return;

    TfErrorMark mark;
    prim.SetFromCamera(camera, timeCode);
    raiseErrors(mark, path);
    checkAuthored(prim, camera, world * parent.fromWorld, timeCode);
}

Result<bool> stageIsZUp(const TfWeakPtr<UsdStage>& stage)
{
    const UsdStageRefPtr strong = TfCreateRefPtrFromProtectedWeakPtr(stage);
    if (!strong) return makeErrorCode(UtilsError::InvalidStage);
    return UsdGeomGetStageUpAxis(strong) == UsdGeomTokens->z;
}

} // namespace vesk::usd::utils
