#include <vesk/base/future_error.h>

#include <string>

namespace vesk::base {

namespace {

class FutureErrorCategory final : public std::error_category
{
public:
    const char* name() const noexcept override { return "FutureErrorCode"; }
    std::string message(int code) const override
    {
        switch (static_cast<FutureErrorCode>(code)) {
        case FutureErrorCode::BrokenPromise:
            return "broken promise";
        case FutureErrorCode::NoState:
            return "no state";
        }
        return "Unknown FutureErrorCode error";
    }
};

} // namespace

FutureError::FutureError(FutureErrorCode code) : std::system_error(error_handling::makeErrorCode(code)) {}
FutureError::~FutureError() = default;

template <>
const std::error_category& error_handling::getErrorCategory<FutureErrorCode>()
{
    // Never destroyed: futures of detached work end while the process exits.
    static const FutureErrorCategory& category = *new FutureErrorCategory;
    return category;
}

namespace detail {

const std::exception_ptr& brokenPromise() noexcept
{
    static const std::exception_ptr& error =
        *new std::exception_ptr(std::make_exception_ptr(FutureError(FutureErrorCode::BrokenPromise)));
    return error;
}

void throwNoState() { throw FutureError(FutureErrorCode::NoState); }

namespace {
[[maybe_unused]] const std::exception_ptr& s_madeAtLoad = brokenPromise();
} // namespace

} // namespace detail
} // namespace vesk::base
