#pragma once

#include <exception>
#include <system_error>

#include <vesk/base/error_handling.h>

namespace vesk::base {

/// What can be wrong with a future itself; errors of the work travel in the future as they were thrown.
enum class FutureErrorCode : int
{
    BrokenPromise = 1, ///< "broken promise": the producer died without a result
    NoState = 2,       ///< "no state": the future is empty
};

/// Carries a FutureErrorCode; what() is the message of the code.
class VESK_BASE_EXPORT FutureError : public std::system_error
{
public:
    /// Makes the error of a code.
    explicit FutureError(FutureErrorCode code);
    FutureError(const FutureError&) = default;
    FutureError& operator=(const FutureError&) = default;
    ~FutureError() override;
};

namespace error_handling {
/// Named "FutureErrorCode".
template <>
VESK_BASE_EXPORT const std::error_category& getErrorCategory<FutureErrorCode>();
} // namespace error_handling

namespace detail {
/// One exception object for all broken promises, made when the library is loaded: ending a future allocates
/// nothing.
VESK_BASE_EXPORT const std::exception_ptr& brokenPromise() noexcept;
[[noreturn]] VESK_BASE_EXPORT void throwNoState();
} // namespace detail

} // namespace vesk::base
