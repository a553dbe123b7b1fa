#include <string_view>
#include <unordered_map>
#include <utility>
#include <vesk/framework/usd_viewport/errors.h>

namespace vesk::base::error_handling {

namespace {

using vesk::framework::usd_viewport::ErrEnum;

constexpr std::pair<int, std::string_view> kMessages[] = {
    {static_cast<int>(ErrEnum::InvalidDocument), "Invalid document"},
    {static_cast<int>(ErrEnum::EmptyFrame), "Empty frame"},
    {static_cast<int>(ErrEnum::InvalidCamera), "Invalid camera"},
    {static_cast<int>(ErrEnum::FileSystemError), "File system error"},
};
constexpr int kEndValue = 5;

std::unordered_map<int, std::string> buildMessages()
{
    _verifyErrorEnumMapping("ErrEnum", kMessages, std::size(kMessages), kEndValue);
    std::unordered_map<int, std::string> messages;
    for (const auto& [code, text] : kMessages)
        messages.emplace(code, text);
    return messages;
}

} // namespace

ErrEnum_ErrorCategory::~ErrEnum_ErrorCategory() = default;

const char* ErrEnum_ErrorCategory::name() const noexcept { return "ErrEnum"; }

std::string ErrEnum_ErrorCategory::message(int code) const
{
    static const std::unordered_map<int, std::string> messages = buildMessages();
    const auto found = messages.find(code);
    return found == messages.end() ? "Unknown ErrEnum error" : found->second;
}

template <>
const std::error_category& getErrorCategory<ErrEnum>()
{
    static const ErrEnum_ErrorCategory category;
    return category;
}

} // namespace vesk::base::error_handling
