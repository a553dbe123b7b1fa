#pragma once

#include <cstddef>
#include <string_view>
#include <system_error>
#include <utility>

#include <vesk/base/export.h>

namespace vesk::base::error_handling {

/// The exception that every library of vesk throws: an error code of the library that failed, and where there
/// is more to say a detail text, which is part of what().
class VESK_BASE_EXPORT Exception : public std::system_error
{
public:
    /// what() is the message of the code.
    explicit Exception(std::error_code code);

    /// what() is "detail: message of the code".
    Exception(std::error_code code, const char* detail);

    Exception(const Exception&) = default;
    Exception& operator=(const Exception&) = default;
    ~Exception() override;
};

/// The category that names the codes of the enumeration E, one object per process. Each library specialises
/// and exports it for its own enumeration; 0 is never an error.
template <class E>
const std::error_category& getErrorCategory();

/// Makes the error code of an enumerator whose category is getErrorCategory<E>().
template <class E>
std::error_code makeErrorCode(E error)
{
    return std::error_code(static_cast<int>(error), getErrorCategory<E>());
}

/// Failures that belong to no library in particular.
enum class GenericError : int
{
    Unknown = 1,         ///< "Unknown error"
    InvalidArgument = 2, ///< "Invalid argument"
    ConsumedResult = 3,  ///< "Result already consumed"
};

/// Named "GenericError".
template <>
VESK_BASE_EXPORT const std::error_category& getErrorCategory<GenericError>();

/// Tells whether a table of messages fits its enumeration: the codes are unique and lie between 1 and
/// endValue - 1. An exported check that says nothing by itself; categories call it when they build their
/// store. Thread: any.
VESK_BASE_EXPORT bool _verifyErrorEnumMapping(const char* enumName,
                                              const std::pair<int, std::string_view>* mapping,
                                              std::size_t count, int endValue);

} // namespace vesk::base::error_handling
