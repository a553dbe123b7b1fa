#pragma once

#include <vesk/base/error_handling.h>
#include <vesk/framework/usd_viewport/export.h>

#include <string>
#include <system_error>

namespace vesk::framework::usd_viewport {

/// What can go wrong in a viewport model. Code 0 is never an error.
enum class ErrEnum : int
{
    InvalidDocument = 1, ///< the model's document is gone
    EmptyFrame = 2,      ///< a frame without a picture
    InvalidCamera = 3,   ///< a path that names no camera prim
    FileSystemError = 4, ///< a file could not be read or written
};

} // namespace vesk::framework::usd_viewport

namespace vesk::base::error_handling {

/// The category of `vesk::framework::usd_viewport::ErrEnum`; one instance per process.
class VESK_FRAMEWORK_USD_VIEWPORT_EXPORT ErrEnum_ErrorCategory : public std::error_category
{
public:
    ~ErrEnum_ErrorCategory() override;

    /// Returns "ErrEnum".
    const char* name() const noexcept override;

    /// Returns the text of a code, "Unknown ErrEnum error" for any other number.
    /// Thread: any.
    std::string message(int code) const override;
};

/// Returns the category of `ErrEnum`, always the same object.
/// Thread: any.
template <>
VESK_FRAMEWORK_USD_VIEWPORT_EXPORT const std::error_category&
getErrorCategory<vesk::framework::usd_viewport::ErrEnum>();

} // namespace vesk::base::error_handling
