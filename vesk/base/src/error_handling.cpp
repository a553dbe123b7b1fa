#include <vesk/base/error_handling.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace vesk::base::error_handling {

Exception::Exception(std::error_code code) : std::system_error(code) {}
Exception::Exception(std::error_code code, const char* detail) : std::system_error(code, detail ? detail : "")
{}
Exception::~Exception() = default;

namespace {

constexpr std::array<std::pair<int, std::string_view>, 3> kGenericMessages{{
    {static_cast<int>(GenericError::Unknown), "Unknown error"},
    {static_cast<int>(GenericError::InvalidArgument), "Invalid argument"},
    {static_cast<int>(GenericError::ConsumedResult), "Result already consumed"},
}};

class GenericErrorCategory final : public std::error_category
{
public:
    const char* name() const noexcept override { return "GenericError"; }
    std::string message(int code) const override
    {
        const auto found = std::find_if(kGenericMessages.begin(), kGenericMessages.end(),
                                        [code](const auto& row) { return row.first == code; });
        return found == kGenericMessages.end() ? "Unknown GenericError error" : std::string(found->second);
    }
};

} // namespace

template <>
const std::error_category& getErrorCategory<GenericError>()
{
    // Never destroyed: error codes outlive everything.
    static const GenericErrorCategory& category = *new GenericErrorCategory;
    return category;
}

bool _verifyErrorEnumMapping(const char* enumName, const std::pair<int, std::string_view>* mapping,
                             std::size_t count, int endValue)
{
    if (!enumName || (!mapping && count != 0)) return false;
    std::vector<int> codes;
    codes.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
        codes.push_back(mapping[i].first);
    std::sort(codes.begin(), codes.end());
    const bool unique = std::adjacent_find(codes.begin(), codes.end()) == codes.end();
    const bool inRange = codes.empty() || (codes.front() >= 1 && codes.back() < endValue);
    return unique && inRange;
}

} // namespace vesk::base::error_handling
