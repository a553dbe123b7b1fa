#pragma once

#include <optional>
#include <stdexcept>
#include <system_error>
#include <typeinfo>
#include <utility>

#include <vesk/base/error_handling.h>
#include <vesk/base/logging.h>

namespace vesk::base::result {

/// The code value of a result whose value was taken out: 0xFFFFBEEF.
inline constexpr int kConsumedResultCode = -16657;

/// Either a value or an error code: what functions return that can fail and do not throw.
///
///     Result<GfCamera> camera = getGfCameraFromCameraPath(stage, path, time);
///     if (!camera.hasValue()) return Result<bool>(camera.takeError());
///     use(camera.takeValue());
///
/// The value can be taken once. A result belongs to one thread at a time.
template <class T>
class Result
{
public:
    /// A success.
    Result(T value) : m_value(std::move(value)) {}

    /// A failure. A code of value 0 would be a success without a value and becomes GenericError::Unknown.
    Result(std::error_code error)
        : m_code(error ? error : error_handling::makeErrorCode(error_handling::GenericError::Unknown))
    {}

    /// True until the value was taken, false for a failure.
    bool hasValue() const { return m_code.value() == 0; }
    /// The same as hasValue().
    explicit operator bool() const { return hasValue(); }

    /// The stored code as it is: value 0 while there is a value, kConsumedResultCode once it was taken.
    const std::error_code& code() const { return m_code; }

    /// Moves the value out and marks the result consumed. Throws: std::runtime_error "Result without value"
    /// for a failed or consumed result.
    T takeValue()
    {
        if (!hasValue()) throw std::runtime_error("Result without value");
        m_code.assign(kConsumedResultCode, m_code.category());
        return std::move(*m_value);
    }

    /// The error; GenericError::ConsumedResult for a consumed result. Throws: std::runtime_error "Result
    /// without error" while there is a value.
    std::error_code takeError() const
    {
        if (hasValue()) throw std::runtime_error("Result without error");
        if (m_code.value() == kConsumedResultCode)
            return error_handling::makeErrorCode(error_handling::GenericError::ConsumedResult);
        return m_code;
    }

private:
    std::error_code m_code;
    std::optional<T> m_value;
};

/// Takes the value out of a result, or raises its error. Throws: Exception with the stored code. Logs: the
/// error, before it is thrown, under the module tag of the library that calls it.
template <class T>
T checkResult(Result<T>&& result)
{
    if (!result.hasValue()) {
        const std::error_code& code = result.code();
        VESK_LOG_ERROR("CheckResult: error {} (category: {}, code: {}) in result of type {}", code.message(),
                       code.category().name(), code.value(), typeid(T).name());
        throw error_handling::Exception(code);
    }
    return result.takeValue();
}

} // namespace vesk::base::result
