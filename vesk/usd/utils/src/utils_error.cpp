#include <string>
#include <vesk/usd/utils/utils_error.h>

namespace vesk::base::error_handling {

namespace {

using vesk::usd::utils::UtilsError;

class UtilsErrorCategory final : public std::error_category
{
public:
    const char* name() const noexcept override { return "UtilsError"; }

    std::string message(int code) const override
    {
        switch (static_cast<UtilsError>(code)) {
        case UtilsError::InvalidStage:
            return "There is no stage";
        case UtilsError::InvalidPrim:
            return "There is no prim at the path";
        case UtilsError::InvalidCameraPrim:
            return "There is no camera prim at the path";
        case UtilsError::SingularParentTransform:
            return "A transform above the camera prim cannot be inverted";
        case UtilsError::AuthoringFailed:
            return "The camera could not be authored";
        }
        return "Unknown UtilsError error";
    }
};

} // namespace

template <>
const std::error_category& getErrorCategory<UtilsError>()
{
    static const UtilsErrorCategory category;
    return category;
}

} // namespace vesk::base::error_handling
