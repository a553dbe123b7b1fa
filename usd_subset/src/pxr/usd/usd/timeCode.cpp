#include <pxr/usd/usd/timeCode.h>

#include <pxr/base/tf/diagnostic.h>

#include <cstdlib>
#include <istream>
#include <ostream>
#include <string>

PXR_NAMESPACE_OPEN_SCOPE

TF_DEFINE_PUBLIC_TOKENS(UsdTimeCodeTokens, USD_TIME_CODE_TOKENS);

void UsdTimeCode::_IssueGetValueOnDefaultError() const
{
    TF_CODING_ERROR("Called GetValue() on default UsdTimeCode");
}

std::ostream& operator<<(std::ostream& os, const UsdTimeCode& time)
{
    if (time.IsDefault()) {
        return os << UsdTimeCodeTokens->DEFAULT;
    }
    if (time.IsEarliestTime()) {
        return os << UsdTimeCodeTokens->EARLIEST;
    }
    return os << time.GetValue();
}

std::istream& operator>>(std::istream& is, UsdTimeCode& time)
{
    std::string text;
    is >> text;
    if (text == UsdTimeCodeTokens->DEFAULT.GetString()) {
        time = UsdTimeCode::Default();
    } else if (text == UsdTimeCodeTokens->EARLIEST.GetString()) {
        time = UsdTimeCode::EarliestTime();
    } else {
        char* end = nullptr;
        const double value = std::strtod(text.c_str(), &end);
        if (end != text.c_str()) {
            time = UsdTimeCode(value);
        }
    }
    return is;
}

PXR_NAMESPACE_CLOSE_SCOPE
