#pragma once

namespace vesk::usd::utils {

/// The projection that a framed camera gets.
enum class ProjectionType : int
{
    Perspective = 0,  ///< perspective with the field of view that the caller gives
    Orthographic = 1, ///< orthographic; the vertical size of the view is the distance to the pivot
    Keep = 2,         ///< the projection of the camera that is framed; other values mean the same
};

} // namespace vesk::usd::utils
