#pragma once

#include <vesk/base/error_handling.h>
#include <vesk/usd/utils/export.h>

namespace vesk::usd::utils {

/// What can be wrong with a stage that the functions of this library are given.
enum class UtilsError : int
{
    InvalidStage = 1,            ///< there is no stage, or it is gone
    InvalidPrim = 2,             ///< no prim at the path
    InvalidCameraPrim = 3,       ///< no camera prim at the path
    SingularParentTransform = 4, ///< a transform above the camera prim cannot be inverted
    AuthoringFailed = 5,         ///< the scene description refused or hides an opinion
};

} // namespace vesk::usd::utils

namespace vesk::base::error_handling {

/// The category of `UtilsError`, named "UtilsError".
template <>
VESK_USD_UTILS_EXPORT const std::error_category& getErrorCategory<vesk::usd::utils::UtilsError>();

} // namespace vesk::base::error_handling
